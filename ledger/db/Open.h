// The database that a user names.
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

// What becomes of a database that is not there.
enum class IfNone { Make, Refuse };

// For the end of a message that there is none.
extern const wchar_t* const HowToMakeOne;

// A text with "=" in it is a connection string, for PostgreSQL or MariaDB; anything else names the file of an embedded
// database, made when it is not there and may be. Connects, trying as long as the patience lasts. Fails with DbError,
// and with HostError when the text names nothing that could be a database, or no file where none may be made.
[[nodiscard]] std::unique_ptr<Database> OpenDatabase(const std::wstring& name, Patience patience,
                                                     IfNone ifNone = IfNone::Make);

} // namespace ledger
