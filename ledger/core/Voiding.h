// Codes that are kept and never used again.
#pragma once

#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

// Marks a code as void and writes why into the journal. Fails with HostError on a code that is not in the ledger or is
// void already, and on a reason of blanks.
void VoidCodeOf(Database& database, Patience patience, const StoredRule& rule, const std::wstring& code,
                const std::wstring& reason);

} // namespace ledger
