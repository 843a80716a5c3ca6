#include "ledger/db/sqlite/SqliteStatement.h"

#include "hosts/common/Utf8.h"

namespace ledger {

SqliteStatement::SqliteStatement(sqlite3* connection, const std::wstring& sql)
    : mvarConnection(connection), mvarStatement(nullptr, sqlite3_finalize) {
    const std::string text = hosts::ToUtf8(sql);
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(connection, text.c_str(), static_cast<int>(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    mvarStatement.reset(statement);
    CheckSqlite(connection, code);
}

Statement& SqliteStatement::Set(const std::wstring& text) {
    if (mvarSet == 0) Close();
    CheckSqlite(mvarConnection,
                sqlite3_bind_text16(mvarStatement.get(), ++mvarSet, text.data(),
                                    static_cast<int>(text.size() * sizeof(wchar_t)),
                                    SQLITE_TRANSIENT)); // NOLINT(performance-no-int-to-ptr): the engine's own constant
    return *this;
}

Statement& SqliteStatement::Set(std::int64_t number) {
    if (mvarSet == 0) Close();
    CheckSqlite(mvarConnection, sqlite3_bind_int64(mvarStatement.get(), ++mvarSet, number));
    return *this;
}

bool SqliteStatement::Step() {
    const int code = sqlite3_step(mvarStatement.get());
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) CheckSqlite(mvarConnection, code);
    Close();
    return false;
}

void SqliteStatement::Execute() {
    mvarSet = 0;
    sqlite3_reset(mvarStatement.get());
    mvarHasRow = Step();
}

bool SqliteStatement::Fetch() {
    if (mvarHasRow) {
        mvarHasRow = false;
        return true;
    }
    return sqlite3_stmt_busy(mvarStatement.get()) != 0 && Step();
}

std::wstring SqliteStatement::Text(unsigned column) const {
    const int index = static_cast<int>(column) - 1;
    const void* text = sqlite3_column_text16(mvarStatement.get(), index);
    const int bytes = sqlite3_column_bytes16(mvarStatement.get(), index);
    if (text == nullptr) return {};
    return {static_cast<const wchar_t*>(text), static_cast<std::size_t>(bytes) / sizeof(wchar_t)};
}

std::optional<std::int64_t> SqliteStatement::NumberIfAny(unsigned column) const {
    const int index = static_cast<int>(column) - 1;
    if (sqlite3_column_type(mvarStatement.get(), index) == SQLITE_NULL) return std::nullopt;
    return sqlite3_column_int64(mvarStatement.get(), index);
}

void SqliteStatement::Close() noexcept {
    mvarHasRow = false;
    sqlite3_reset(mvarStatement.get());
}

} // namespace ledger
