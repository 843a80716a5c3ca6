// rule rename, rule copy, rule remove and rule restore.
#pragma once

#include "ledger/cli/Session.h"

namespace ledger {

struct RuleActOptions {
    std::wstring rule;
    std::wstring newName; // where there is one
};

// Each returns the exit code and fails with HostError as RuleActs.h says.
int RenameCommand(Session& session, const RuleActOptions& options);
int CopyCommand(Session& session, const RuleActOptions& options);
int RemoveCommand(Session& session, const RuleActOptions& options);
int RestoreCommand(Session& session, const RuleActOptions& options);

} // namespace ledger
