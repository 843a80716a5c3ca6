#include "ledger/db/sqlite/SqliteDatabase.h"

#include <algorithm>
#include <random>
#include <thread>
#include <utility>

#include "hosts/common/Utf8.h"

namespace ledger {

namespace {

using std::chrono::steady_clock;

constexpr int LongestBetweenLooks = 25; // milliseconds between two looks at a locked file

std::wstring ReplaceAll(std::wstring text, const std::wstring& part, const std::wstring& by) {
    for (std::size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at + by.size()))
        text.replace(at, part.size(), by);
    return text;
}

} // namespace

SqliteDatabase::SqliteDatabase(std::wstring file) : mvarFile(std::move(file)), mvarConnection(nullptr, sqlite3_close) {}

SqliteDatabase::~SqliteDatabase() {
    Rollback();
    mvarStatements.clear();
}

void SqliteDatabase::Connect() {
    mvarStatements.clear();
    mvarConnection.reset();
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(hosts::ToUtf8(mvarFile).c_str(), &connection,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXRESCODE, nullptr);
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> opened(connection, sqlite3_close);
    CheckSqlite(connection, code);
    sqlite3_busy_handler(connection, WaitWhileBusy, this);
    mvarConnection = std::move(opened);
    try {
        UseLog();
    } catch (...) {
        mvarStatements.clear();
        mvarConnection.reset();
        throw;
    }
    mvarIdentity = IdentityOf(mvarFile);
}

// Changes go to a log beside the file, so readers do not stop writers, and each commit reaches the disk before it is
// reported: a code that was printed is not lost with the power.
void SqliteDatabase::UseLog() {
    Execute("PRAGMA synchronous=FULL");
    if (Ask(L"PRAGMA journal_mode") == L"wal") return;
    try {
        Execute("PRAGMA journal_mode=WAL");
    } catch (const DbError& error) { // as safe without, and whoever only reads need not be able to
        if (error.Kind() != Fault::ReadOnly && error.Kind() != Fault::Lost && error.Kind() != Fault::Busy) throw;
    }
}

void SqliteDatabase::Execute(const char* sql) {
    CheckSqlite(mvarConnection.get(), sqlite3_exec(mvarConnection.get(), sql, nullptr, nullptr, nullptr));
}

std::wstring SqliteDatabase::Ask(const std::wstring& sql) {
    SqliteStatement statement(mvarConnection.get(), sql);
    statement.Execute();
    return statement.Fetch() ? statement.Text(1) : std::wstring();
}

// Somebody else has the file: looks again after a pause of random length, until the time is over.
int SqliteDatabase::WaitWhileBusy(void* self, int calls) noexcept {
    const auto now = steady_clock::now();
    if (now >= static_cast<const SqliteDatabase*>(self)->mvarEnd) return 0;
    thread_local std::minstd_rand generator(static_cast<unsigned>(now.time_since_epoch().count()));
    const int longest = std::min(LongestBetweenLooks, 2 + calls);
    std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution<int>(1, longest)(generator)));
    return 1;
}

Statement& SqliteDatabase::Prepare(const std::wstring& sql) {
    const auto known = mvarStatements.find(sql);
    if (known != mvarStatements.end()) return known->second;
    return mvarStatements.try_emplace(sql, mvarConnection.get(), sql).first->second;
}

// Whoever has read cannot get the right to write any more when another has written since: so it is taken first.
void SqliteDatabase::Begin(Access access) {
    mvarWrites = access != Access::Read;
    Run(mvarWrites ? L"BEGIN IMMEDIATE" : L"BEGIN");
}

void SqliteDatabase::Commit() {
    Run(L"COMMIT");
    if (mvarWrites) CheckFile();
}

// A file that was deleted lives on, nameless, for those that have it open, and swallows what they store.
void SqliteDatabase::CheckFile() const {
    if (mvarIdentity && IdentityOf(mvarFile) != mvarIdentity) throw DbError(Fault::Replaced, mvarFile);
}

void SqliteDatabase::Rollback() noexcept {
    for (auto& [sql, statement] : mvarStatements)
        statement.Close();
    if (mvarConnection && sqlite3_get_autocommit(mvarConnection.get()) == 0)
        sqlite3_exec(mvarConnection.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

bool SqliteDatabase::HasTable(const std::wstring& name) {
    Statement& tables = Prepare(L"SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?");
    return tables.Set(name).First([](const Statement&) { return true; }).has_value();
}

bool SqliteDatabase::IsForeign() {
    return Prepare(L"SELECT 1 FROM sqlite_schema LIMIT 1").First([](const Statement&) { return true; }).has_value();
}

std::wstring SqliteDatabase::TableText(std::wstring definition) const {
    return ReplaceAll(ReplaceAll(std::move(definition), L"LONGTEXT", L"TEXT"), L"TEXT(", L"VARCHAR(");
}

std::vector<EngineFact> SqliteDatabase::Facts() {
    const std::wstring mode = Ask(L"PRAGMA journal_mode");
    return {{L"engine", L"SQLite " + hosts::FromOwnUtf8(sqlite3_libversion()), {}, false},
            {L"file", mvarFile, {}, false},
            {L"journal", mode,
             mode == L"wal" ? L"" : L"readers and writers wait for each other; make the file and its folder writable",
             false},
            {L"durability", L"each commit is on the disk before it is reported", {}, false},
            {L"isolation", L"one transaction at a time writes", {}, false}};
}

} // namespace ledger
