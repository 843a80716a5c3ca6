// numbering add, list, show, remove
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/Json.h"
#include "ledger/core/Numberings.h"

namespace ledger {

namespace {

using hosts::HostError;

std::pair<std::wstring, std::wstring> ConditionOf(const std::wstring& text) {
    const std::size_t equals = text.find(L'=');
    if (equals == std::wstring::npos || equals == 0)
        throw HostError(L"\"" + text + L"\" is no condition; write Name=Value");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

NumberingPart PartOf(const NumberingOptions& options, const StoredRule& rule) {
    NumberingPart part;
    part.rule = rule.id;
    part.date = options.date;
    part.from = options.from;
    part.until = options.until;
    for (const std::wstring& text : options.when)
        part.when.push_back(ConditionOf(text));
    part.then = ThenOf(options.then).value_or(Then::Stop);
    return part;
}

// A numbering is no rule: one in another one, or in itself, would lead in a circle.
void RefuseNumbering(Session& session, const NumberingOptions& options) {
    if (!FindNumbering(session, options.rule)) return;
    throw HostError(L"\"" + options.rule +
                    L"\" is a numbering; the parts of a numbering are rules, so that none leads in a circle");
}

std::wstring ConditionsText(const NumberingPart& part) {
    std::wstring text;
    for (const auto& [field, value] : part.when)
        text += (text.empty() ? L"" : L", ") + hosts::Shown(field) + L"=" + hosts::Shown(value);
    return text;
}

std::wstring DaysShown(const NumberingPart& part) {
    if (part.date.empty()) return {};
    return hosts::Shown(part.date) + L" " + part.from + L".." + part.until;
}

std::wstring RuleName(const std::vector<StoredRule>& rules, std::int64_t id) {
    for (const StoredRule& rule : rules)
        if (rule.id == id) return rule.name;
    return L"(gone)";
}

Numbering Existing(Session& session, const std::wstring& name) {
    auto numbering = FindNumbering(session, name);
    if (!numbering)
        throw HostError(L"there is no numbering \"" + name + L"\"; kledger numbering list shows those there are");
    return *std::move(numbering);
}

void TakeOut(Numbering& numbering, const StoredRule& rule) {
    const auto removed =
        std::erase_if(numbering.parts, [&](const NumberingPart& part) { return part.rule == rule.id; });
    if (removed == 0)
        throw HostError(L"numbering \"" + numbering.name + L"\" does not issue by rule \"" + rule.name + L"\"");
}

void PrintParts(const Session& session, const Numbering& numbering) {
    session.output.Line(L"numbering \"" + numbering.name + L"\": " + hosts::Counted(numbering.parts.size(), L"part"),
                        {{"numbering", ToJson(numbering.name)}, {"parts", numbering.parts.size()}});
}

} // namespace

std::optional<Numbering> FindNumbering(Session& session, const std::wstring& name) {
    if (name.empty()) return std::nullopt;
    return InSnapshot(session.database, session.patience, [&] { return Numberings(session.database).Find(name); });
}

int AddToNumbering(Session& session, const NumberingOptions& options) {
    CheckRuleName(options.name);
    RefuseNumbering(session, options);
    const StoredRule rule = ResolveRule(session, options.rule);
    Numbering numbering;
    numbering.name = options.name;
    if (auto stored = FindNumbering(session, options.name)) numbering = *std::move(stored);
    numbering.fields.insert(numbering.fields.end(), options.fields.begin(), options.fields.end());
    numbering.parts.push_back(PartOf(options, rule));
    StoreNumbering(session.database, session.patience, numbering);
    PrintParts(session, numbering);
    return ExitDone;
}

int RemoveFromNumbering(Session& session, const NumberingOptions& options) {
    Numbering numbering = Existing(session, options.name);
    if (options.rule.empty())
        numbering.parts.clear();
    else
        TakeOut(numbering, ResolveRule(session, options.rule));
    StoreNumbering(session.database, session.patience, numbering);
    if (numbering.parts.empty())
        session.output.Line(L"removed: " + options.name, {{"numbering", ToJson(options.name)}, {"removed", true}});
    else
        PrintParts(session, numbering);
    return ExitDone;
}

int ListNumberings(Session& session) {
    const auto all = InSnapshot(session.database, session.patience, [&] { return Numberings(session.database).All(); });
    for (const Numbering& numbering : all)
        if (!numbering.parts.empty())
            session.output.Line(numbering.name + L'\t' + hosts::Counted(numbering.parts.size(), L"part"),
                                {{"numbering", ToJson(numbering.name)}, {"parts", numbering.parts.size()}});
    return ExitDone;
}

int ShowNumbering(Session& session, const std::wstring& name) {
    const Numbering numbering = Existing(session, name);
    const auto rules = InSnapshot(session.database, session.patience, [&] { return Rules(session.database).All(); });
    Table table({L"PART", L"RULE", L"DAYS", L"WHEN", L"THEN"});
    std::size_t place = 0;
    for (const NumberingPart& part : numbering.parts) {
        const std::wstring rule = RuleName(rules, part.rule);
        table.Add({std::to_wstring(++place), rule, DaysShown(part), ConditionsText(part), NameOf(part.then)});
        if (session.output.IsJson())
            hosts::PrintLine(JsonText({{"part", place},
                                       {"rule", ToJson(rule)},
                                       {"date", ToJson(part.date)},
                                       {"from", ToJson(part.from)},
                                       {"until", ToJson(part.until)},
                                       {"when", ToJson(part.when)},
                                       {"then", ToJson(NameOf(part.then))}}));
    }
    if (!session.output.IsJson())
        for (const std::wstring& line : table.Lines())
            hosts::PrintLine(line);
    return ExitDone;
}

} // namespace ledger
