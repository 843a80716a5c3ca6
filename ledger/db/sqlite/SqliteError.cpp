#include "ledger/db/sqlite/SqliteError.h"

#include "hosts/common/Utf8.h"

namespace ledger {

namespace {

// The low byte of an extended code is the plain one.
constexpr int PlainCode = 0xFF;

bool HasNoRoomForItsIndex(int code) {
    // The shared index of the log lies in a file beside the database and cannot grow.
    return code == SQLITE_IOERR_SHMSIZE || code == SQLITE_IOERR_SHMMAP;
}

} // namespace

Fault FaultOfSqlite(int code) noexcept {
    if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY) return Fault::UniqueKey;
    if (HasNoRoomForItsIndex(code)) return Fault::Full;
    switch (code & PlainCode) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return Fault::Busy;
    case SQLITE_READONLY: return Fault::ReadOnly;
    case SQLITE_FULL: return Fault::Full;
    case SQLITE_CANTOPEN: return Fault::Lost;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB: return Fault::NoDatabase;
    default: return Fault::Other;
    }
}

void CheckSqlite(sqlite3* connection, int code) {
    if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) return;
    const std::wstring text = connection == nullptr ? L"out of memory" : hosts::FromOwnUtf8(sqlite3_errmsg(connection));
    throw DbError(FaultOfSqlite(code), text);
}

} // namespace ledger
