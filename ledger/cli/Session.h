// What every command works with.
#pragma once

#include <optional>
#include <string>

#include "ledger/cli/Output.h"
#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

struct Session {
    Database& database;
    Patience patience;
    Output output = Output(false);
};

// In the order of their names.
[[nodiscard]] std::vector<StoredRule> AllRules(Session& session);

// The rule of that name; without a name the only rule that there is. Fails with HostError otherwise.
[[nodiscard]] StoredRule ResolveRule(Session& session, const std::wstring& name);

// The rule of that name; without a name the one that the code is stored for, or the only one that there is.
[[nodiscard]] StoredRule ResolveRuleOfCode(Session& session, const std::wstring& name, const std::wstring& code);

} // namespace ledger
