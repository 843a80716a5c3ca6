// rule new: rules from one line
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/GrowingRules.h"
#include "ledger/core/Json.h"
#include "ledger/core/pattern/CaretLines.h"
#include "ledger/core/pattern/GrowingPattern.h"
#include "ledger/core/pattern/PatternFormulas.h"
#include "ledger/core/pattern/PatternText.h"

namespace ledger {

namespace {

using hosts::HostError;

std::wstring DefinitionOf(const Pattern& pattern, const NewRuleOptions& options) {
    const CodeFiles files = [&options](const std::wstring& file) {
        try {
            return hosts::ParseCsv(hosts::ReadTextFile(file, options.codePage), options.separator);
        } catch (const HostError& error) {
            const bool isNamed = error.Message().find(file) != std::wstring::npos;
            throw HostError(isNamed ? error.Message() : file + L": " + error.Message());
        }
    };
    CheckFormulas(pattern);
    return BuildDefinition(pattern, options.settings, files);
}

void ShowPlace(const std::wstring& pattern, const PatternError& error) {
    hosts::ReportLine(L"kledger: position " + std::to_wstring(error.Position() + 1) + L" of the pattern: " +
                      error.Message());
    for (const std::wstring& line : CaretLines(pattern, error.Position()))
        hosts::ReportLine(line);
}

// Of a rule that is not there yet: one that somebody else makes meanwhile is not overwritten.
RuleChange NewChange(Session& session, const NewRuleOptions& options, const std::wstring& name) {
    RuleChange change;
    change.name = name;
    change.policy = PolicyOf(options.policy);
    change.leaseSize = options.leaseSize;
    change.revision = 0;
    change.settings = SettingsWith(session, name, options.numbering);
    return change;
}

bool Exists(Session& session, const std::wstring& name) {
    return InSnapshot(session.database, session.patience,
                      [&] { return Rules(session.database).Find(name).has_value(); });
}

void RefuseTaken(Session& session, const std::wstring& name, const wchar_t* instead) {
    if (Exists(session, name)) throw HostError(L"there is a rule \"" + name + L"\" already; " + instead);
    if (FindNumbering(session, name))
        throw HostError(L"there is a numbering \"" + name + L"\" already; take another name");
}

int NewFromPattern(Session& session, const NewRuleOptions& options) {
    RuleChange change = NewChange(session, options, options.name);
    if (options.replace) change.revision.reset();
    change.definition = DefinitionOf(ParsePattern(*options.pattern), options);
    StoreRule(session, change, options.force);
    return ExitDone;
}

// -------------------------------------------------------------------------------------------- numbers that grow

std::vector<LookedOver> GrowingRulesOf(Session& session, const NewRuleOptions& options) {
    const Growth growth = GrowthOf(options.grow);
    std::vector<LookedOver> rules;
    std::size_t digits = growth.least;
    for (const Pattern& pattern : GrowingPatterns(ParsePattern(*options.pattern), growth)) {
        RuleChange change = NewChange(session, options, options.name + L"-" + std::to_wstring(digits++));
        CheckRuleName(change.name);
        RefuseTaken(session, change.name, L"take another name for the numbering");
        if (!change.settings) change.settings.emplace();
        change.definition = DefinitionOf(pattern, options);
        rules.push_back(LookOver(std::move(change), options.force));
    }
    return rules;
}

int NewGrowing(Session& session, const NewRuleOptions& options) {
    const std::vector<LookedOver> looked = GrowingRulesOf(session, options);
    std::vector<std::unique_ptr<GrowingRule>> rules;
    rules.reserve(looked.size());
    for (const LookedOver& rule : looked)
        rules.push_back(std::make_unique<GrowingRule>(rule.change));
    const auto reports = StoreGrowingRules(session.database, session.patience, options.name, rules);
    for (std::size_t at = 0; at < rules.size(); ++at)
        TellStored(session, reports[at], rules[at]->maker.Bands().size(), looked[at].review);
    session.output.Line(L"numbering \"" + options.name + L"\": " + hosts::Counted(rules.size(), L"part"),
                        {{"numbering", ToJson(options.name)}, {"parts", rules.size()}});
    NoteFindings(session, looked.front()); // of all: they differ in the digits of the number
    return ExitDone;
}

} // namespace

int NewRule(Session& session, const NewRuleOptions& options) {
    CheckRuleName(options.name);
    if (options.replace && !options.grow.empty())
        throw HostError(L"--grow makes rules that are new, --replace changes one that there is; give one of them");
    if (!options.replace)
        RefuseTaken(session, options.name, L"change it with --replace or kledger rule design, or take another name");
    if (!options.pattern) {
        if (!options.grow.empty()) throw HostError(L"--grow wants a pattern, such as INV{####}");
        if (Exists(session, options.name))
            throw HostError(L"--replace wants a pattern; kledger rule design opens the rule that there is");
        return DesignNewRule(session, options);
    }
    if (options.pattern->empty()) throw HostError(L"the pattern is empty; write one such as INV-{Date:yyyy}-{####}");
    try {
        return options.grow.empty() ? NewFromPattern(session, options) : NewGrowing(session, options);
    } catch (const PatternError& error) {
        ShowPlace(*options.pattern, error);
        return ExitFailed;
    }
}

} // namespace ledger
