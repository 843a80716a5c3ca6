// The embedded engine's result codes.
#pragma once

#include <sqlite3.h>

#include "ledger/db/DbError.h"

namespace ledger {

// What an extended result code means.
[[nodiscard]] Fault FaultOfSqlite(int code) noexcept;

// Fails with DbError, in the words of the connection, unless the code is a success.
void CheckSqlite(sqlite3* connection, int code);

} // namespace ledger
