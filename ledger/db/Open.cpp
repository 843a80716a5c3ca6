#include "ledger/db/Open.h"

#include <filesystem>

#include "ledger/db/odbc/OdbcDatabase.h"
#include "ledger/db/sqlite/SqliteDatabase.h"

namespace ledger {

namespace {

using hosts::HostError;

std::wstring FilePath(const std::wstring& name, IfNone ifNone) {
    const std::filesystem::path file = std::filesystem::absolute(name);
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        throw HostError(L"\"" + name + L"\" is a folder; name a file for the database");
    if (!std::filesystem::is_directory(file.parent_path(), error))
        throw HostError(L"there is no folder \"" + file.parent_path().wstring() +
                        L"\" for the database; make it, or check --database");
    if (ifNone == IfNone::Refuse && !std::filesystem::exists(file, error))
        throw HostError(L"there is no ledger \"" + name + L"\"; " + HowToMakeOne);
    return file.wstring();
}

std::unique_ptr<Database> Make(const std::wstring& name, IfNone ifNone) {
    if (name.empty()) throw HostError(L"--database is empty; name a file or give a connection string");
    if (name.find(L'=') == std::wstring::npos) return std::make_unique<SqliteDatabase>(FilePath(name, ifNone));
    if (const OdbcEngine* engine = EngineOf(name)) return std::make_unique<OdbcDatabase>(name, *engine);
    throw HostError(
        L"\"" + name +
        L"\" names no driver for PostgreSQL or MariaDB; write Driver={...} or the DSN=... of one in it, or name a file "
        L"for SQLite");
}

} // namespace

const wchar_t* const HowToMakeOne =
    L"make one with \"kledger rule new\" or \"kledger rule import\", or name another with --database";

std::unique_ptr<Database> OpenDatabase(const std::wstring& name, Patience patience, IfNone ifNone) {
    std::unique_ptr<Database> database = Make(name, ifNone);
    patience.Begin();
    ConnectPatiently(*database, patience);
    return database;
}

} // namespace ledger
