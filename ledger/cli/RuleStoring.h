// A rule on its way into the ledger: looked over, stored and told of.
#pragma once

#include <string>

#include "ledger/cli/Commands.h"
#include "ledger/cli/Session.h"
#include "ledger/core/RuleChange.h"

namespace ledger {

// Fails with HostError on a name that the ledger does not keep.
void CheckRuleName(const std::wstring& name);

// The settings of the rule of that name, if there is one, with those that are given; nothing when none is.
[[nodiscard]] std::optional<RuleSettings> SettingsWith(Session& session, const std::wstring& rule,
                                                       const SettingOptions& options);

// Stores the change without the values of fields that came with its definition, and prints what was stored; what was
// found about the definition goes to standard error. Unless `force` is set, fails with HostError on a rule that can
// issue no code.
void StoreRule(Session& session, RuleChange change, bool force);

} // namespace ledger
