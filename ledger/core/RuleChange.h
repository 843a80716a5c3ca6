// A rule's new definition or settings, where codes may have been issued by the old ones.
#pragma once

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

struct RuleChange {
    std::wstring name;
    std::wstring definition;
    std::optional<Policy> policy; // nothing: as it is, gapless for a new rule
    std::optional<std::int64_t> leaseSize;
    std::optional<RuleSettings> settings; // nothing: as they are
    // The one that the change is of, 0 for a rule that was not there; nothing: whichever it is.
    std::optional<std::int64_t> revision;
};

struct ChangeReport {
    StoredRule rule;
    bool changed = true;
    std::int64_t codes = 0;   // stored for the rule
    std::int64_t foreign = 0; // of them, those that the new definition could not have made; they keep their numbers
    std::int64_t shared = 0;  // of them, those whose number in a series of the new definition another one holds
};

// The settings that the rule will have.
[[nodiscard]] RuleSettings SettingsAfter(Database& database, Patience patience, const RuleChange& change);

// Stores the change, or the rule when there is none of that name, all at once; every code that is stored is counted in
// the series of the new definition as well. The maker was made of the definition and
// the settings that the rule is to have. Fails with HostError, and changes
// nothing, when the definition's formulas make no sense, codes of another length are stored, the rule has another
// revision, or a numbering over it would make no sense any more.
[[nodiscard]] ChangeReport ChangeRule(Database& database, Patience patience, const RuleChange& change,
                                      CodeMaker& maker);

// The same within the caller's transaction, which keeps the ticket when it is repeated.
[[nodiscard]] ChangeReport ChangeRuleWithin(Database& database, const RuleChange& change, CodeMaker& maker,
                                            const std::wstring& ticket);

} // namespace ledger
