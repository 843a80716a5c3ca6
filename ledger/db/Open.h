// The database that a user names.
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

// A text with "=" in it is a connection string, for PostgreSQL or MariaDB; anything else names the file of an embedded
// database, made when it is not there. Connects, trying as long as the patience lasts. Fails with DbError, and with
// HostError when the text names nothing that could be a database.
[[nodiscard]] std::unique_ptr<Database> OpenDatabase(const std::wstring& name, Patience patience);

} // namespace ledger
