#include "ledger/core/Schema.h"

namespace ledger {

namespace {

constexpr std::int64_t Version = 1;

const wchar_t* const Tables[] = {
    L"CREATE TABLE IF NOT EXISTS kestrel_rules (id INTEGER NOT NULL PRIMARY KEY, name TEXT(120) NOT NULL UNIQUE, "
    L"policy TEXT(8) NOT NULL, lease_size INTEGER NOT NULL, code_length INTEGER NOT NULL, "
    L"revision INTEGER NOT NULL, definition LONGTEXT NOT NULL)",
    L"CREATE TABLE IF NOT EXISTS kestrel_codes (rule_id INTEGER NOT NULL, code TEXT(255) NOT NULL, "
    L"state TEXT(8) NOT NULL, ticket TEXT(40) NOT NULL, stored_at TEXT(20) NOT NULL, fields LONGTEXT NOT NULL, "
    L"reason LONGTEXT NOT NULL, PRIMARY KEY (rule_id, code))",
    L"CREATE TABLE IF NOT EXISTS kestrel_numbers (rule_id INTEGER NOT NULL, band TEXT(120) NOT NULL, "
    L"series TEXT(255) NOT NULL, number BIGINT NOT NULL, code TEXT(255) NOT NULL, "
    L"PRIMARY KEY (rule_id, band, series, number))",
    L"CREATE TABLE IF NOT EXISTS kestrel_leases (rule_id INTEGER NOT NULL, band TEXT(120) NOT NULL, "
    L"series TEXT(255) NOT NULL, first_number BIGINT NOT NULL, last_number BIGINT NOT NULL, "
    L"granted_to BIGINT NOT NULL, owner TEXT(80) NOT NULL, taken_at TEXT(20) NOT NULL, "
    L"state TEXT(8) NOT NULL, PRIMARY KEY (rule_id, band, series, first_number))",
    // The last one: where it is, all are.
    L"CREATE TABLE IF NOT EXISTS kestrel_schema (version INTEGER NOT NULL PRIMARY KEY)",
};

std::int64_t StoredVersion(Database& database) {
    Statement& statement = database.Prepare(L"SELECT MAX(version) FROM kestrel_schema");
    statement.Execute();
    return statement.Fetch() ? statement.Number(1) : 0;
}

bool MakeTables(Database& database) {
    if (database.HasTable(L"kestrel_schema") && StoredVersion(database) > 0) return false;
    for (const wchar_t* table : Tables)
        database.Run(database.TableText(table));
    database.Prepare(L"INSERT INTO kestrel_schema (version) VALUES (?)").Set(Version).Execute();
    return true;
}

} // namespace

void PrepareSchema(Database& database, Patience patience) {
    // Two programs that make the tables at once collide on a key of the catalogue or of the version.
    InTransaction(database, patience, OnUniqueKey::Retry, [&database] { return MakeTables(database); });
    const std::int64_t stored =
        InTransaction(database, patience, OnUniqueKey::Fail, [&database] { return StoredVersion(database); });
    if (stored > Version)
        throw hosts::HostError(L"the database was made by a newer kledger (schema " + std::to_wstring(stored) +
                               L", this one knows " + std::to_wstring(Version) + L"); use that one");
}

} // namespace ledger
