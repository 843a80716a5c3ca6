// What is done to a rule as a whole. Each act on a rule that stays is written into its journal, in which the audit sees
// it.
#pragma once

#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

// Numberings that issue by the rule go on doing so. Fails with HostError when another rule or a numbering has the name,
// or the rule was changed meanwhile.
void RenameRule(Database& database, Patience patience, const StoredRule& rule, const std::wstring& name);

// A rule that has issued nothing, with the newest definition and the settings of the other one. Fails with HostError
// when another rule or a numbering has the name.
void CopyRule(Database& database, Patience patience, const StoredRule& rule, const std::wstring& name);

// Removes a rule without codes; one with codes is retired, and keeps everything. Returns whether it is gone.
// Fails with HostError when a numbering issues by the rule.
[[nodiscard]] bool RemoveRule(Database& database, Patience patience, const StoredRule& rule);

// Fails with HostError on a rule that is not retired.
void RestoreRule(Database& database, Patience patience, const StoredRule& rule);

} // namespace ledger
