// rule import, rule export, rule list
#include <algorithm>
#include <filesystem>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

namespace {

std::wstring NameFor(const ImportOptions& options) {
    std::wstring name = options.name.empty() ? std::filesystem::path(options.file).stem().wstring() : options.name;
    CheckRuleName(name);
    return name;
}

// What the import follows: of two at once that change the rule, the one that comes later is told so.
std::int64_t RevisionOf(Session& session, const std::wstring& name) {
    Rules rules(session.database);
    const auto stored = InSnapshot(session.database, session.patience, [&] { return rules.Find(name); });
    return stored ? stored->revision : 0;
}

Json RuleJson(const StoredRule& rule, std::int64_t codes, const std::vector<std::wstring>& names) {
    Json fields = Json::array();
    for (const std::wstring& name : names)
        fields.push_back(ToJson(name));
    Json json = {{"rule", ToJson(rule.name)},
                 {"policy", ToJson(NameOf(rule.policy))},
                 {"lease", rule.leaseSize},
                 {"codeLength", rule.definition.codeLength},
                 {"codes", codes},
                 {"fields", fields}};
    if (rule.settings.retired) json["retired"] = true;
    return json;
}

// The fields and macros of a rule; none of one that the component does not take any more.
std::vector<std::wstring> NamesOf(const StoredRule& rule) {
    try {
        return CodeMaker(rule.definition.text, rule.settings).Taken();
    } catch (const hosts::HostError&) { // the audit tells
        return {};
    }
}

std::wstring Listed(const std::vector<std::wstring>& names) {
    std::wstring text;
    for (const std::wstring& name : names)
        text += (text.empty() ? L"" : L", ") + hosts::Shown(name);
    return text;
}

} // namespace

int ImportRule(Session& session, const ImportOptions& options) {
    RuleChange change;
    change.name = NameFor(options);
    change.revision = RevisionOf(session, change.name);
    change.definition = hosts::ReadDefinitionFile(options.file);
    change.policy = PolicyOf(options.policy);
    change.leaseSize = options.leaseSize;
    change.settings = SettingsWith(session, change.name, options.numbering);
    StoreRule(session, change, options.force);
    return ExitDone;
}

int ExportRule(Session& session, const ExportOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    const std::wstring& stored = rule.definition.text;
    const std::wstring text = rule.settings.week ? WithWeek(stored, *rule.settings.week) : stored;
    if (!options.file.empty()) {
        hosts::WriteTextFile(options.file, text);
        return ExitDone;
    }
    std::wstring lines = text; // a console shows line feeds; import takes either
    std::ranges::replace(lines, L'\r', L'\n');
    session.output.Line(lines, {{"rule", ToJson(rule.name)}, {"definition", ToJson(text)}});
    return ExitDone;
}

int ListRules(Session& session) {
    Table table({L"RULE", L"POLICY", L"LEASE", L"CODE LENGTH", L"CODES", L"FIELDS"});
    std::vector<Json> objects;
    InSnapshot(session.database, session.patience, [&] {
        table = Table({L"RULE", L"POLICY", L"LEASE", L"CODE LENGTH", L"CODES", L"FIELDS"});
        objects.clear();
        Rules rules(session.database);
        for (const StoredRule& rule : rules.All()) {
            const std::int64_t codes = Codes(session.database, rule.id).Count();
            const std::vector<std::wstring> names = NamesOf(rule);
            table.Add({rule.name, rule.settings.retired ? L"retired" : NameOf(rule.policy),
                       std::to_wstring(rule.leaseSize), std::to_wstring(rule.definition.codeLength),
                       std::to_wstring(codes), Listed(names)});
            objects.push_back(RuleJson(rule, codes, names));
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

int RuleHistory(Session& session, const std::wstring& name) {
    const StoredRule rule = ResolveRule(session, name);
    std::vector<Definition> definitions;
    std::vector<Act> acts;
    InSnapshot(session.database, session.patience, [&] {
        definitions = Rules(session.database).Definitions(rule.id);
        acts = Journal(session.database, rule.id).All();
        return true;
    });
    Table table({L"ACT", L"WHAT", L"OF", L"WHEN", L"WHO"});
    for (const Act& act : acts) {
        table.Add({std::to_wstring(act.number), act.kind, act.subject, act.at, act.by});
        if (session.output.IsJson())
            hosts::PrintLine(JsonText({{"act", act.number},
                                       {"what", ToJson(act.kind)},
                                       {"of", ToJson(act.subject)},
                                       {"detail", ToJson(act.detail)},
                                       {"at", ToJson(act.at)},
                                       {"by", ToJson(act.by)}}));
    }
    for (const Definition& definition : definitions)
        if (session.output.IsJson())
            hosts::PrintLine(JsonText({{"definition", definition.number},
                                       {"codeLength", definition.codeLength},
                                       {"at", ToJson(definition.storedAt)},
                                       {"by", ToJson(definition.storedBy)},
                                       {"text", ToJson(definition.text)}}));
    if (!session.output.IsJson())
        for (const std::wstring& line : table.Lines())
            hosts::PrintLine(line);
    return ExitDone;
}

} // namespace ledger
