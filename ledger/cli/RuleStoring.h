// A rule on its way into the ledger: looked over, stored and told of.
#pragma once

#include <string>

#include "ledger/cli/Commands.h"
#include "ledger/cli/Session.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/definition/RuleReview.h"

namespace ledger {

// Fails with HostError on a name that the ledger does not keep.
void CheckRuleName(const std::wstring& name);

// The settings of the rule of that name, if there is one, with those that are given; nothing when none is.
[[nodiscard]] std::optional<RuleSettings> SettingsWith(Session& session, const std::wstring& rule,
                                                       const SettingOptions& options);

// A change that may be stored.
struct LookedOver {
    RuleChange change; // without the values of fields that came with its definition
    RuleReview review;
    bool hadValues = false;
};

// Unless `force` is set, fails with HostError on a rule that can issue no code, and reports why.
[[nodiscard]] LookedOver LookOver(RuleChange change, bool force);

// Prints what was stored; what was found about the definition goes to standard error.
void TellStored(const Session& session, const ChangeReport& report, std::size_t bands, const RuleReview& review);
void NoteFindings(const Session& session, const LookedOver& rule);

// Stores the change without the values of fields that came with its definition, and prints what was stored; what was
// found about the definition goes to standard error. Unless `force` is set, fails with HostError on a rule that can
// issue no code.
void StoreRule(Session& session, RuleChange change, bool force);

} // namespace ledger
