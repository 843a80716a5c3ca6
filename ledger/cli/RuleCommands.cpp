// rule import, rule export, rule list
#include <algorithm>
#include <filesystem>

#include "hosts/common/Console.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/core/DefinitionChange.h"

namespace ledger {

namespace {

using hosts::HostError;

constexpr std::size_t LongestName = 120;

std::optional<StoredRule> FindRule(Session& session, const std::wstring& name) {
    Rules rules(session.database);
    return InTransaction(session.database, session.patience, OnUniqueKey::Fail,
                         [&rules, &name] { return rules.Find(name); });
}

StoredRule WithOptions(StoredRule rule, const ImportOptions& options) {
    if (!options.policy.empty()) rule.policy = PolicyOf(options.policy).value_or(rule.policy);
    rule.leaseSize = options.leaseSize.value_or(rule.leaseSize);
    return rule;
}

void AddRule(Session& session, StoredRule& rule) {
    Rules rules(session.database);
    InTransaction(session.database, session.patience, OnUniqueKey::Fail, [&rules, &rule] {
        rules.Add(rule);
        return true;
    });
}

std::wstring NameFor(const ImportOptions& options) {
    std::wstring name = options.name.empty() ? std::filesystem::path(options.file).stem().wstring() : options.name;
    if (name.empty() || name.size() > LongestName)
        throw HostError(L"a rule's name has 1 to " + std::to_wstring(LongestName) +
                        L" characters; give one with --name");
    return name;
}

void Report(const Session& session, const StoredRule& rule, const ChangeReport& change, std::size_t bands) {
    const Json json = {{"rule", ToJson(rule.name)},     {"policy", ToJson(NameOf(rule.policy))},
                       {"lease", rule.leaseSize},       {"bands", bands},
                       {"codeLength", rule.codeLength}, {"codes", change.codes},
                       {"otherCodes", change.foreign}};
    session.output.Line(L"rule \"" + rule.name + L"\": " + std::to_wstring(bands) + L" bands, codes of " +
                            std::to_wstring(rule.codeLength) + L" characters, policy " + NameOf(rule.policy),
                        json);
    if (change.foreign > 0)
        session.output.Note(std::to_wstring(change.foreign) + L" of " + std::to_wstring(change.codes) +
                            L" codes issued before could not be made by this definition; they keep their numbers");
}

// How many bands the definition has, beside its codes' length the thing to look at after an import.
Json RuleJson(const StoredRule& rule, std::int64_t codes) {
    return {{"rule", ToJson(rule.name)},
            {"policy", ToJson(NameOf(rule.policy))},
            {"lease", rule.leaseSize},
            {"codeLength", rule.codeLength},
            {"codes", codes}};
}

} // namespace

int ImportRule(Session& session, const ImportOptions& options) {
    StoredRule rule;
    rule.name = NameFor(options);
    const auto stored = FindRule(session, rule.name);
    rule = WithOptions(stored.value_or(rule), options);
    rule.definition = hosts::ReadDefinitionFile(options.file);
    CodeMaker maker(rule.definition);
    ChangeReport change;
    if (stored) {
        change = ChangeDefinition(session, rule, maker);
    } else {
        rule.codeLength = static_cast<std::int64_t>(maker.CodeLength());
        AddRule(session, rule);
    }
    Report(session, rule, change, maker.Bands().size());
    return ExitDone;
}

int ExportRule(Session& session, const ExportOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    if (!options.file.empty()) {
        hosts::WriteTextFile(options.file, rule.definition);
        return ExitDone;
    }
    std::wstring lines = rule.definition; // a console shows line feeds; import takes either
    std::ranges::replace(lines, L'\r', L'\n');
    session.output.Line(lines, {{"rule", ToJson(rule.name)}, {"definition", ToJson(rule.definition)}});
    return ExitDone;
}

int ListRules(Session& session) {
    Table table({L"RULE", L"POLICY", L"LEASE", L"CODE LENGTH", L"CODES"});
    std::vector<Json> objects;
    InTransaction(session.database, session.patience, OnUniqueKey::Fail, [&] {
        Rules rules(session.database);
        for (const StoredRule& rule : rules.All()) {
            const std::int64_t codes = Codes(session.database, rule.id).Count();
            table.Add({rule.name, NameOf(rule.policy), std::to_wstring(rule.leaseSize),
                       std::to_wstring(rule.codeLength), std::to_wstring(codes)});
            objects.push_back(RuleJson(rule, codes));
        }
        return true;
    });
    if (session.output.IsJson()) {
        for (const Json& object : objects)
            hosts::PrintLine(JsonText(object));
    } else {
        for (const std::wstring& line : table.Lines())
            hosts::PrintLine(line);
    }
    return ExitDone;
}

} // namespace ledger
