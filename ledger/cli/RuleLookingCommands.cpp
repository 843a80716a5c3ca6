// rule check, rule show
#include <algorithm>
#include <filesystem>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/Utf8.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/core/Json.h"
#include "ledger/core/RuleCalendar.h"
#include "ledger/core/definition/RuleReview.h"
#include "ledger/core/pattern/SaidPattern.h"

namespace ledger {

namespace {

using hosts::HostError;

std::optional<StoredRule> FindRule(Session& session, const std::wstring& name) {
    Rules rules(session.database);
    return InSnapshot(session.database, session.patience, [&rules, &name] { return rules.Find(name); });
}

// ------------------------------------------------------------------------------------------------------- rule show

struct BandRow {
    std::wstring name;
    std::wstring style;
    std::size_t length = 0;
    std::wstring from; // what its part of a code comes from
    std::wstring format;
    std::wstring range;
    std::wstring tracked;
    std::wstring codes;
};

std::wstring StyleName(hosts::BandStyle style) {
    switch (style) {
    case hosts::BandStyle::Fixed: return L"text";
    case hosts::BandStyle::Macro: return L"macro";
    case hosts::BandStyle::Field: return L"field";
    case hosts::BandStyle::Number: return L"number";
    case hosts::BandStyle::Letter: return L"letter";
    }
    return L"none";
}

std::wstring SourceOf(const hosts::Band& band, const hosts::Dispatch& object) {
    if (band.style == hosts::BandStyle::Fixed) return object.Get(L"Default").Text();
    if (band.style == hosts::BandStyle::Letter) return object.Get(L"Value").Text();
    if (band.style == hosts::BandStyle::Number) return {};
    const hosts::Dispatch item = object.Object(L"DataField");
    const std::wstring formula = item.Get(L"Description").Text();
    return item.Get(L"Name").Text() + (formula.empty() ? L"" : L" = " + formula);
}

std::wstring RangeOf(const hosts::Band& band, const hosts::Dispatch& object) {
    if (band.style != hosts::BandStyle::Number && band.style != hosts::BandStyle::Letter) return {};
    const std::wstring begin = object.Get(L"Default").Text();
    return (begin.empty() ? object.Get(L"InitStart").Text() : begin) + L".." + object.Get(L"InitEnd").Text();
}

std::wstring CodesOf(const hosts::Dispatch& object) {
    const long swap = object.Get(L"SwapMode").Number();
    if (swap == 0) return {};
    const std::wstring count = std::to_wstring(object.Object(L"Relations").Get(L"Count").Number());
    return swap == 1 ? count : L"layer of " + count;
}

std::wstring Joined(const std::vector<std::wstring>& texts) {
    std::wstring joined;
    for (const std::wstring& text : texts)
        joined += (joined.empty() ? L"" : L", ") + text;
    return joined;
}

std::vector<BandRow> RowsOf(const hosts::Rule& rule) {
    std::vector<BandRow> rows;
    for (const hosts::Band& band : rule.Bands()) {
        const hosts::Dispatch object = rule.Component().Item(hosts::Variant(band.name), L"Band");
        rows.push_back({band.name, StyleName(band.style), band.length, SourceOf(band, object),
                        object.Get(L"Formate").Text(), RangeOf(band, object), Joined(band.tracked), CodesOf(object)});
    }
    return rows;
}

Json RowJson(const BandRow& row) {
    return {{"band", ledger::ToJson(row.name)},
            {"style", ledger::ToJson(row.style)},
            {"length", row.length},
            {"from", ledger::ToJson(row.from)},
            {"format", ledger::ToJson(row.format)},
            {"range", ledger::ToJson(row.range)},
            {"tracks", ledger::ToJson(row.tracked)},
            {"codes", ledger::ToJson(row.codes)}};
}

void PrintTable(const std::vector<BandRow>& rows) {
    Table table({L"BAND", L"STYLE", L"LENGTH", L"FROM", L"FORMAT", L"NUMBERS", L"TRACKS", L"CODES"});
    for (const BandRow& row : rows)
        table.Add({hosts::Shown(row.name), row.style, std::to_wstring(row.length), hosts::Shown(row.from),
                   hosts::Shown(row.format), row.range, hosts::Shown(row.tracked), row.codes});
    for (const std::wstring& line : table.Lines())
        hosts::PrintLine(line);
}

// As they stand behind "rule new".
std::wstring OptionsText(const PatternSettings& settings) {
    std::wstring text;
    if (settings.capitals) text += L" --capitals";
    if (settings.yearBegins != 1) text += L" --year-begins " + std::to_wstring(settings.yearBegins);
    if (settings.monthBegins != 1) text += L" --month-begins " + std::to_wstring(settings.monthBegins);
    if (const std::wstring day = NameOfWeekDay(static_cast<int>(settings.weekBegins)); !day.empty() && day != L"monday")
        text += L" --week-begins " + day;
    if (!settings.dayBegins.empty()) text += L" --day-begins " + settings.dayBegins;
    return text;
}

void PrintPattern(const SaidPattern& said) {
    if (said.text.empty()) return hosts::PrintLine(L"pattern: none says this rule: " + hosts::Shown(said.why));
    hosts::PrintLine(L"pattern: " + said.text);
    if (const std::wstring options = OptionsText(said.settings); !options.empty())
        hosts::PrintLine(L"options:" + options);
    for (const auto& [file, text] : said.files)
        hosts::PrintLine(L"codes: " + file + L" (written by --codes FOLDER)");
    if (!said.besides.empty()) hosts::PrintLine(L"beside the pattern: " + hosts::Shown(Joined(said.besides)));
}

Json PatternJson(const SaidPattern& said) {
    if (said.text.empty()) return {{"pattern", nullptr}, {"why", ledger::ToJson(said.why)}};
    Json files = Json::object();
    for (const auto& [file, text] : said.files)
        files[hosts::ToUtf8(file)] = ledger::ToJson(text);
    return {{"pattern", ledger::ToJson(said.text)},
            {"options", ledger::ToJson(OptionsText(said.settings))},
            {"codes", files},
            {"beside", ToJson(said.besides)}};
}

void WriteFiles(const SaidPattern& said, const std::wstring& folder) {
    for (const auto& [file, text] : said.files)
        hosts::WriteTextFile((std::filesystem::path(folder) / file).wstring(), text);
}

// ------------------------------------------------------------------------------------------------------ rule check

int Tell(const Output& output, const RuleReview& review) {
    for (const Untaken& untaken : review.untaken)
        output.Line(LineOf(untaken), {{"finding", "untaken"},
                                      {"line", untaken.line},
                                      {"what", ledger::ToJson(untaken.what)},
                                      {"read", ledger::ToJson(untaken.read)},
                                      {"holds", ledger::ToJson(untaken.holds)}});
    for (const std::wstring& finding : review.findings)
        output.Line(hosts::Shown(finding), {{"finding", "rule"}, {"text", ledger::ToJson(finding)}});
    for (const std::wstring& obstacle : review.NoCode())
        output.Line(L"no code can be issued: " + hosts::Shown(obstacle),
                    {{"finding", "obstacle"}, {"text", ledger::ToJson(obstacle)}});
    if (review.IsClean()) output.Note(L"nothing was found");
    return review.IsClean() ? ExitDone : ExitFindings;
}

} // namespace

int CheckRule(Session& session, const std::wstring& name) {
    const auto rule = FindRule(session, name);
    if (!rule) throw HostError(L"there is neither a file nor a rule \"" + name + L"\"");
    return Tell(session.output, ReviewDefinition(rule->definition.text, rule->settings));
}

int CheckFile(const Output& output, const std::wstring& file) {
    return Tell(output, ReviewDefinition(hosts::ReadDefinitionFile(file)));
}

int ShowRule(Session& session, const ShowOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    hosts::Rule shown;
    shown.Load(rule.definition.text);
    const std::vector<BandRow> rows = RowsOf(shown);
    SaidPattern said = SayPattern(rule.definition.text);
    if (rule.settings.week) said.settings.weekBegins = *rule.settings.week;
    const std::vector<std::wstring> findings = ReviewDefinition(rule.definition.text, rule.settings).Lines();
    if (!options.folder.empty()) WriteFiles(said, options.folder);
    if (session.output.IsJson()) {
        Json json = {{"rule", ledger::ToJson(rule.name)}, {"bands", Json::array()}, {"findings", ToJson(findings)}};
        std::ranges::transform(rows, std::back_inserter(json["bands"]), RowJson);
        json.update(PatternJson(said));
        json["settings"] = Json::parse(hosts::ToUtf8(TextOf(rule.settings)));
        hosts::PrintLine(JsonText(json));
        return ExitDone;
    }
    PrintTable(rows);
    PrintPattern(said);
    if (rule.settings != RuleSettings{}) hosts::PrintLine(L"settings: " + hosts::Shown(Described(rule.settings)));
    for (const std::wstring& finding : findings)
        hosts::PrintLine(L"finding: " + finding);
    return ExitDone;
}

} // namespace ledger
