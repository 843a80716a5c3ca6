// design: the component's own designer on a stored rule
#include "hosts/common/Console.h"
#include "hosts/ledger/cli/ExitCode.h"
#include "hosts/ledger/commands/Commands.h"
#include "hosts/ledger/commands/DefinitionChange.h"

namespace ledger {

namespace {

// Published with the component's event interface and fixed.
constexpr DISPID SaveEvent = 1;
constexpr DISPID GetSettingsEvent = 12;

enum class Saved { Nothing, Stored, Refused };

// Stores the text as the rule's new definition; tells why where it cannot be.
Saved Store(Session& session, StoredRule& rule, const std::wstring& definition) {
    try {
        CodeMaker maker(definition);
        StoredRule changed = rule;
        changed.definition = definition;
        ChangeDefinition(session, changed, maker);
        rule = changed;
        return Saved::Stored;
    } catch (const hosts::HostError& error) {
        hosts::ReportLine(L"not saved: " + hosts::OneLine(error.Message()));
        return Saved::Refused;
    }
}

} // namespace

int DesignRule(Session& session, const std::wstring& name) {
    StoredRule rule = ResolveRule(session, name);
    CodeMaker maker(rule.definition);
    Saved saved = Saved::Nothing;
    const hosts::Rule& shown = maker.Rule();
    shown.Component().Put(L"Name", hosts::Variant(rule.name));
    shown.Events().On(GetSettingsEvent,
                      [&rule](const hosts::EventArguments& arguments) { arguments.SetText(1, rule.definition); });
    shown.Events().On(SaveEvent, [&](const hosts::EventArguments& arguments) {
        saved = Store(session, rule, arguments.Text(0));
        arguments.SetFlag(1, saved == Saved::Stored);
    });
    const hosts::Variant title(L"Rule " + rule.name);
    const hosts::Variant allowSetup(true);
    shown.Component().Call(L"ShowDesigner", {&title, &allowSetup});
    shown.Events().RethrowFailure();
    session.output.Line(saved == Saved::Stored ? L"saved" : L"not changed",
                        {{"rule", ToJson(rule.name)}, {"saved", saved == Saved::Stored}});
    return saved == Saved::Refused ? ExitFailed : ExitDone;
}

} // namespace ledger
