// A numbering whose numbers grow: a rule for each width, and the next one goes on where one is full.
#pragma once

#include "ledger/core/Numberings.h"
#include "ledger/core/RuleChange.h"

namespace ledger {

// The rule of a width, and what it is made by.
struct GrowingRule {
    RuleChange change;
    CodeMaker maker;

    explicit GrowingRule(RuleChange of) : change(std::move(of)), maker(change.definition, *change.settings) {}
};

// Stores the rules, which must be new, and the numbering of that name over them in their order, all at once or nothing.
// Fails with HostError as ChangeRule and StoreNumbering do, and when there is a numbering of that name.
[[nodiscard]] std::vector<ChangeReport> StoreGrowingRules(Database& database, Patience patience,
                                                          const std::wstring& name,
                                                          const std::vector<std::unique_ptr<GrowingRule>>& rules);

} // namespace ledger
