// Where a ledger's database is.
#pragma once

#include <string>

namespace ledger {

// What the user names becomes a connection string: a text with "=" in it is one already, anything else is the file of
// an embedded database, made on first use. Fails with HostError when no driver for it is installed.
[[nodiscard]] std::wstring ConnectionStringFor(const std::wstring& database);

} // namespace ledger
