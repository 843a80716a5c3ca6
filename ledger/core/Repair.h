// What an audit finds and nobody has to guess about.
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

// Marks codes as void, and sets rules, as their journals say, with an act for each rule that needed it, all in one
// transaction. Returns how many rows were put right.
[[nodiscard]] std::int64_t RepairLedger(Database& database, Patience patience);

} // namespace ledger
