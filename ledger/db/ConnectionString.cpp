#include "ledger/db/ConnectionString.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <filesystem>
#include <string_view>

#include "hosts/common/Utf8.h"
#include "ledger/db/Handle.h"

namespace ledger {

namespace {

// Changes go to a log beside the file, so readers do not stop writers, and each commit reaches the disk before it is
// reported: a code that was printed is not lost with the power. Whoever finds the file locked waits up to two seconds
// inside the driver before the transaction is tried again as a whole.
constexpr const wchar_t* EmbeddedSettings = L";JournalMode=WAL;SyncPragma=FULL;Timeout=2000;";

// The PostgreSQL driver sets a savepoint before every statement, two more ways to the server each, so that one that
// fails undoes itself alone. Here a failure undoes its whole transaction anyway.
constexpr const wchar_t* WithoutSavepoints = L"Protocol=7.4-1";

// Names in connection strings are the same whatever their letter case.
bool Names(std::wstring_view text, std::wstring_view name) {
    const auto same = [](wchar_t left, wchar_t right) { return std::towlower(left) == std::towlower(right); };
    return std::search(text.begin(), text.end(), name.begin(), name.end(), same) != text.end();
}

std::wstring EmbeddedDriver() {
    const Handle environment(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    auto* const version = reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3); // a number in the place of a pointer
    environment.Check(SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, version, 0));
    std::array<SQLWCHAR, 128> name{};
    std::array<SQLWCHAR, 512> attributes{};
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (
        SQL_SUCCEEDED(SQLDriversW(environment.Get(), direction, name.data(), static_cast<SQLSMALLINT>(name.size()),
                                  nullptr, attributes.data(), static_cast<SQLSMALLINT>(attributes.size()), nullptr))) {
        std::wstring driver = name.data();
        if (driver.starts_with(L"SQLite3")) return driver;
        direction = SQL_FETCH_NEXT;
    }
    throw hosts::HostError(L"no ODBC driver for SQLite 3 is installed; install one, or name another database with "
                           L"--database \"Driver=...\"");
}

// Under Wine the driver runs outside and knows files by their names there.
std::wstring DriversPath(const std::filesystem::path& file) {
    using UnixName = char*(__cdecl*)(const wchar_t*);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
    if (found == nullptr) return file.wstring();
    char* name = reinterpret_cast<UnixName>(reinterpret_cast<void*>(found))(file.c_str());
    if (name == nullptr)
        throw hosts::HostError(L"\"" + file.wstring() + L"\" has no name outside Wine; name another file");
    std::wstring unixPath = hosts::FromOwnUtf8(name);
    HeapFree(GetProcessHeap(), 0, name);
    return unixPath;
}

// Checked here, because a driver makes a file of whatever name it does not understand.
std::filesystem::path ExistingPlace(const std::wstring& database) {
    std::filesystem::path file = std::filesystem::absolute(database);
    std::error_code error;
    if (!std::filesystem::is_directory(file.parent_path(), error))
        throw hosts::HostError(L"there is no folder \"" + file.parent_path().wstring() +
                               L"\" for the database; make it, or check --database");
    return file;
}

} // namespace

std::wstring ConnectionStringFor(const std::wstring& database) {
    if (database.find(L'=') != std::wstring::npos)
        return Names(database, L"PostgreSQL") && !Names(database, L"Protocol=")
                   ? database + (database.ends_with(L';') ? L"" : L";") + WithoutSavepoints
                   : database;
    return L"Driver={" + EmbeddedDriver() + L"};Database=" + DriversPath(ExistingPlace(database)) + EmbeddedSettings;
}

} // namespace ledger
