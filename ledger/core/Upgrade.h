// Ledgers of the schemas before.
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

struct UpgradeReport {
    std::int64_t from = 0; // the schema that was found
    std::int64_t rules = 0;
    std::int64_t codes = 0;
    std::int64_t tickets = 0; // codes whose ticket another one had, and that got one of their own
};

// Brings the tables up in one transaction; nothing happens to those that are up already. Fails with HostError where
// there is no ledger, or one of a newer version.
[[nodiscard]] UpgradeReport UpgradeLedger(Database& database, Patience patience);

} // namespace ledger
