// Numberings against their journals, and their claims against the codes.
#pragma once

#include <vector>

#include "ledger/core/Finding.h"
#include "ledger/db/Database.h"

namespace ledger {

// Runs in the caller's transaction, which may only read. Fails with DbError.
[[nodiscard]] std::vector<Finding> AuditNumberings(Database& database);

} // namespace ledger
