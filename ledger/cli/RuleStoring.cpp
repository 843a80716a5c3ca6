#include "ledger/cli/RuleStoring.h"

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/core/Json.h"
#include "ledger/core/definition/DefinitionText.h"

namespace ledger {

namespace {

using hosts::HostError;

constexpr std::size_t LongestName = 120;

} // namespace

void TellStored(const Session& session, const ChangeReport& report, std::size_t bands, const RuleReview& review) {
    const StoredRule& rule = report.rule;
    const Json json = {{"rule", ToJson(rule.name)},
                       {"policy", ToJson(NameOf(rule.policy))},
                       {"lease", rule.leaseSize},
                       {"bands", bands},
                       {"codeLength", rule.definition.codeLength},
                       {"definition", rule.definition.number},
                       {"changed", report.changed},
                       {"codes", report.codes},
                       {"otherCodes", report.foreign},
                       {"sharedNumbers", report.shared},
                       {"findings", ToJson(review.Lines())}};
    session.output.Line(L"rule \"" + hosts::Shown(rule.name) + L"\": " + hosts::Counted(bands, L"band") +
                            L", codes of " + hosts::Counted(rule.definition.codeLength, L"character") + L", policy " +
                            NameOf(rule.policy) + L", definition " + std::to_wstring(rule.definition.number) +
                            (report.changed ? L"" : L" (unchanged)"),
                        json);
    if (report.foreign > 0)
        session.output.Note(L"issued before, and not to be made by this definition: " +
                            std::to_wstring(report.foreign) + L" of " + hosts::Counted(report.codes, L"code") +
                            L"; numbers are kept");
    if (report.shared > 0)
        session.output.Note(L"issued before, with a number that another one has in the series of this definition: " +
                            std::to_wstring(report.shared) + L" of " + hosts::Counted(report.codes, L"code"));
}

void NoteFindings(const Session& session, const LookedOver& rule) {
    if (session.output.IsJson()) return;
    for (const std::wstring& line : rule.review.Lines())
        session.output.Note(line);
    if (rule.hadValues)
        session.output.Note(L"the values of fields and macros that came with the definition are not kept");
}

void CheckRuleName(const std::wstring& name) {
    if (name.empty() || name.size() > LongestName)
        throw HostError(L"a rule's name has 1 to " + std::to_wstring(LongestName) + L" characters; this one has " +
                        std::to_wstring(name.size()));
    if (name.find_first_not_of(L' ') == std::wstring::npos) throw HostError(L"a rule's name is not of blanks alone");
    if (hosts::HasControl(name) || !hosts::IsWhole(name))
        throw HostError(L"the name \"" + hosts::Shown(name) + L"\" has a control character in it; give one without");
}

LookedOver LookOver(RuleChange change, bool force) {
    LookedOver rule{std::move(change), {}, false};
    rule.review = ReviewDefinition(rule.change.definition);
    if (!rule.review.obstacles.empty() && !force) {
        for (const std::wstring& line : rule.review.Lines())
            hosts::ReportLine(line);
        throw HostError(
            L"rule \"" + rule.change.name +
            L"\" can issue no code and is not stored; put right what stands above, or store it with --force");
    }
    const std::wstring without = WithoutValues(rule.change.definition);
    rule.hadValues = without != rule.change.definition;
    rule.change.definition = without;
    return rule;
}

void StoreRule(Session& session, RuleChange change, bool force) {
    const LookedOver rule = LookOver(std::move(change), force);
    CodeMaker maker(rule.change.definition, SettingsAfter(session.database, session.patience, rule.change));
    const ChangeReport report = ChangeRule(session.database, session.patience, rule.change, maker);
    TellStored(session, report, maker.Bands().size(), rule.review);
    NoteFindings(session, rule);
}

} // namespace ledger
