#include "ledger/cli/RuleActsCommand.h"

#include "hosts/common/Text.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/RuleActs.h"

namespace ledger {

namespace {

void Tell(const Session& session, const std::wstring& name, const wchar_t* done, const std::wstring& more = {}) {
    session.output.Line(L"rule \"" + hosts::Shown(name) + L"\": " + done + more,
                        {{"rule", ToJson(name)}, {"done", ToJson(done)}});
}

// Never the only rule that there is because none was named.
StoredRule NamedRule(Session& session, const std::wstring& name) {
    if (name.empty()) throw hosts::HostError(L"the name of the rule is empty; kledger rule list shows those there are");
    return ResolveRule(session, name);
}

} // namespace

int RenameCommand(Session& session, const RuleActOptions& options) {
    const StoredRule rule = NamedRule(session, options.rule);
    CheckRuleName(options.newName);
    RenameRule(session.database, session.patience, rule, options.newName);
    Tell(session, options.newName, L"renamed", L" from \"" + hosts::Shown(rule.name) + L"\"");
    return ExitDone;
}

int CopyCommand(Session& session, const RuleActOptions& options) {
    const StoredRule rule = NamedRule(session, options.rule);
    CheckRuleName(options.newName);
    CopyRule(session.database, session.patience, rule, options.newName);
    Tell(session, options.newName, L"copied", L" from \"" + hosts::Shown(rule.name) + L"\"");
    return ExitDone;
}

int RemoveCommand(Session& session, const RuleActOptions& options) {
    const StoredRule rule = NamedRule(session, options.rule);
    if (RemoveRule(session.database, session.patience, rule))
        Tell(session, rule.name, L"removed");
    else
        Tell(session, rule.name, L"retired", L"; it issues no more and keeps its codes (kledger rule restore)");
    return ExitDone;
}

int RestoreCommand(Session& session, const RuleActOptions& options) {
    const StoredRule rule = NamedRule(session, options.rule);
    RestoreRule(session.database, session.patience, rule);
    Tell(session, rule.name, L"restored");
    return ExitDone;
}

} // namespace ledger
