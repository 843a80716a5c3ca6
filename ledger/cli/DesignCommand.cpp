// design: the component's own designer on a stored rule
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/core/RuleChange.h"

namespace ledger {

namespace {

// Published with the component's event interface and fixed.
constexpr DISPID SaveEvent = 1;
constexpr DISPID GetSettingsEvent = 12;

// Stores the text as the rule's new definition; false, and tells why, where it cannot be.
bool Store(Session& session, StoredRule& rule, const std::wstring& definition) {
    try {
        CodeMaker maker(definition);
        RuleChange change;
        change.name = rule.name;
        change.definition = definition;
        change.revision = rule.revision;
        rule = ChangeRule(session.database, session.patience, change, maker).rule;
        return true;
    } catch (const hosts::HostError& error) {
        hosts::ReportLine(L"not saved: " + hosts::OneLine(error.Message()));
        return false;
    }
}

} // namespace

int DesignRule(Session& session, const std::wstring& name) {
    StoredRule rule = ResolveRule(session, name);
    CodeMaker maker(rule.definition.text);
    bool changed = false;
    bool refused = false; // the last time that something was to be saved
    const hosts::Rule& shown = maker.Rule();
    shown.Component().Put(L"Name", hosts::Variant(rule.name));
    // As the component writes it: a text from elsewhere says the same in other words, and nobody changed anything.
    std::wstring held = shown.Definition();
    shown.Events().On(GetSettingsEvent,
                      [&held](const hosts::EventArguments& arguments) { arguments.SetText(1, held); });
    shown.Events().On(SaveEvent, [&](const hosts::EventArguments& arguments) {
        refused = !Store(session, rule, arguments.Text(0));
        changed = changed || !refused;
        if (!refused) held = rule.definition.text;
        arguments.SetFlag(1, !refused);
    });
    const hosts::Variant title(L"Rule " + rule.name);
    const hosts::Variant allowSetup(true);
    shown.Component().Call(L"ShowDesigner", {&title, &allowSetup});
    shown.Events().RethrowFailure();
    session.output.Line(changed ? L"saved" : L"not changed", {{"rule", ToJson(rule.name)}, {"saved", changed}});
    return refused ? ExitFailed : ExitDone;
}

} // namespace ledger
