// Where a ledger's database is.
#pragma once

#include <string>

namespace ledger {

// What the user names becomes a connection string: a text with "=" in it is one already, and PostgreSQL's driver is
// told to set no savepoints unless it says something of its "Protocol"; anything else is the file of an embedded
// database, made on first use. Fails with HostError when no driver for it is installed.
[[nodiscard]] std::wstring ConnectionStringFor(const std::wstring& database);

} // namespace ledger
