#include "ledger/core/Schema.h"

namespace ledger {

namespace {

const wchar_t* const Tables[] = {
    L"CREATE TABLE IF NOT EXISTS kestrel_rules (id BIGINT NOT NULL PRIMARY KEY, name TEXT(120) NOT NULL UNIQUE, "
    L"policy TEXT(8) NOT NULL, lease_size BIGINT NOT NULL, revision BIGINT NOT NULL, definition BIGINT NOT NULL, "
    L"turn BIGINT NOT NULL, settings LONGTEXT NOT NULL)",
    L"CREATE TABLE IF NOT EXISTS kestrel_definitions (rule_id BIGINT NOT NULL, number BIGINT NOT NULL, "
    L"code_length BIGINT NOT NULL, stored_at TEXT(20) NOT NULL, stored_by TEXT(80) NOT NULL, text LONGTEXT NOT NULL, "
    L"PRIMARY KEY (rule_id, number))",
    L"CREATE TABLE IF NOT EXISTS kestrel_codes (rule_id BIGINT NOT NULL, code TEXT(255) NOT NULL, "
    L"ticket TEXT(120) NOT NULL, definition BIGINT NOT NULL, origin TEXT(8) NOT NULL, void_act BIGINT NOT NULL, "
    L"stored_at TEXT(20) NOT NULL, fields LONGTEXT NOT NULL, PRIMARY KEY (rule_id, code), UNIQUE (rule_id, ticket))",
    L"CREATE TABLE IF NOT EXISTS kestrel_numbers (rule_id BIGINT NOT NULL, band TEXT(120) NOT NULL, "
    L"series TEXT(255) NOT NULL, number BIGINT NOT NULL, code TEXT(255) NOT NULL, lease BIGINT NOT NULL, "
    L"act BIGINT NOT NULL, seal TEXT(64) NOT NULL, PRIMARY KEY (rule_id, band, series, number))",
    L"CREATE TABLE IF NOT EXISTS kestrel_leases (rule_id BIGINT NOT NULL, band TEXT(120) NOT NULL, "
    L"series TEXT(255) NOT NULL, first_number BIGINT NOT NULL, last_number BIGINT NOT NULL, "
    L"granted_to BIGINT NOT NULL, owner TEXT(80) NOT NULL, taken_at TEXT(20) NOT NULL, ticket TEXT(120) NOT NULL, "
    L"state TEXT(8) NOT NULL, act BIGINT NOT NULL, seal TEXT(64) NOT NULL, "
    L"PRIMARY KEY (rule_id, band, series, first_number))",
    L"CREATE TABLE IF NOT EXISTS kestrel_journal (rule_id BIGINT NOT NULL, number BIGINT NOT NULL, act TEXT(8) NOT "
    L"NULL, "
    L"subject LONGTEXT NOT NULL, detail LONGTEXT NOT NULL, acted_at TEXT(20) NOT NULL, acted_by TEXT(80) NOT NULL, "
    L"ticket TEXT(120) NOT NULL, seal TEXT(64) NOT NULL, PRIMARY KEY (rule_id, number), UNIQUE (rule_id, ticket))",
    // Not the rule first: a server that has no statistics yet takes this index for as good as the key where only the
    // rule is named, and reads all numbers of the rule to find the highest one of a series.
    L"CREATE INDEX IF NOT EXISTS kestrel_numbers_of_codes ON kestrel_numbers (code, rule_id)",
    L"CREATE TABLE IF NOT EXISTS kestrel_reused (rule_id BIGINT NOT NULL, act BIGINT NOT NULL, code TEXT(255) NOT "
    L"NULL, "
    L"ticket TEXT(120) NOT NULL, definition BIGINT NOT NULL, origin TEXT(8) NOT NULL, void_act BIGINT NOT NULL, "
    L"stored_at TEXT(20) NOT NULL, fields LONGTEXT NOT NULL, PRIMARY KEY (rule_id, act), UNIQUE (rule_id, ticket))",
    L"CREATE INDEX IF NOT EXISTS kestrel_reused_by_code ON kestrel_reused (rule_id, code)",
    L"CREATE TABLE IF NOT EXISTS kestrel_free (rule_id BIGINT NOT NULL, band TEXT(120) NOT NULL, series TEXT(255) NOT "
    L"NULL, number BIGINT NOT NULL, code TEXT(255) NOT NULL, PRIMARY KEY (rule_id, band, series, number))",
    L"CREATE TABLE IF NOT EXISTS kestrel_numberings (id BIGINT NOT NULL PRIMARY KEY, name TEXT(120) NOT NULL UNIQUE, "
    L"revision BIGINT NOT NULL, text LONGTEXT NOT NULL)",
    L"CREATE TABLE IF NOT EXISTS kestrel_claims (numbering_id BIGINT NOT NULL, ticket TEXT(120) NOT NULL, "
    L"rule_id BIGINT NOT NULL, code TEXT(255) NOT NULL, PRIMARY KEY (numbering_id, ticket), "
    L"UNIQUE (numbering_id, code))",
    // The last one: where it is, all are.
    L"CREATE TABLE IF NOT EXISTS kestrel_schema (version BIGINT NOT NULL PRIMARY KEY)",
};

bool MakeTablesWhereNoneAre(Database& database, IfNone ifNone) {
    if (StoredVersion(database) > 0) return false;
    if (database.IsForeign())
        throw hosts::HostError(L"the file is a database of something else, not a ledger; name another with --database");
    if (ifNone == IfNone::Refuse)
        throw hosts::HostError(std::wstring(L"there is no ledger in this database; ") + HowToMakeOne);
    MakeTables(database);
    return true;
}

} // namespace

std::int64_t StoredVersion(Database& database) {
    if (!database.HasTable(L"kestrel_schema")) return 0;
    return database.Prepare(L"SELECT MAX(version) FROM kestrel_schema")
        .First([](const Statement& row) { return row.Number(1); })
        .value_or(0);
}

void MakeTables(Database& database) {
    for (const wchar_t* table : Tables)
        database.Run(database.TableText(table));
    database.Prepare(L"INSERT INTO kestrel_schema (version) VALUES (?)").Set(SchemaVersion).Execute();
}

void PrepareSchema(Database& database, Patience patience, IfNone ifNone) {
    const auto look = [&database] { return StoredVersion(database); };
    std::int64_t stored = InSnapshot(database, patience, look);
    if (stored == 0) {
        // Two programs that make the tables at once collide on a key of the catalogue or of the version.
        // Whoever only looks may be on a server that takes no changes.
        const Access access = ifNone == IfNone::Make ? Access::Define : Access::Read;
        InTransaction(database, patience, OnUniqueKey::Retry, access,
                      [&] { return MakeTablesWhereNoneAre(database, ifNone); });
        stored = InSnapshot(database, patience, look);
    }
    if (stored > SchemaVersion)
        throw hosts::HostError(L"the database was made by a newer kledger (schema " + std::to_wstring(stored) +
                               L", this one knows " + std::to_wstring(SchemaVersion) + L"); use that one");
    if (stored < SchemaVersion)
        throw hosts::HostError(L"the database was made by an older kledger (schema " + std::to_wstring(stored) +
                               L", this one needs " + std::to_wstring(SchemaVersion) +
                               L"); back it up and bring it up with: kledger upgrade");
}

} // namespace ledger
