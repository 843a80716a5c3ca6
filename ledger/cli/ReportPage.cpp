#include "ledger/cli/ReportPage.h"

#include <cmath>
#include <map>

#include "ledger/cli/Html.h"
#include "ledger/cli/ReportStyle.h"
#include "ledger/cli/SeriesChart.h"
#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

constexpr std::size_t MostCards = 100;   // of a rule
constexpr std::size_t MostFindings = 20; // of a kind that are named
constexpr std::size_t MostGaps = 5;      // of a series that are named

std::wstring Element(const wchar_t* name, const std::wstring& inner) {
    return std::wstring(L"<") + name + L'>' + inner + L"</" + name + L">\n";
}

std::wstring PercentText(double share) {
    const double percent = share * 100;
    if (percent > 0 && percent < 0.1) return L"less than 0.1%";
    if (percent >= 10) return std::to_wstring(static_cast<long long>(percent)) + L'%';
    const auto tenths = static_cast<long long>(percent * 10);
    return std::to_wstring(tenths / 10) + (tenths % 10 == 0 ? L"" : L"." + std::to_wstring(tenths % 10)) + L'%';
}

std::wstring NameOf(const Series& series) {
    return series.series.empty() ? std::wstring(L"all codes") : Escaped(series.series);
}

std::wstring Fullness(const SeriesReport& report) {
    if (!report.outlook) return {};
    const std::wstring percent = PercentText(report.outlook->full);
    return L"<div class=\"meter\" role=\"img\" aria-label=\"" + percent + L" full\"><span style=\"width:" +
           std::to_wstring(report.outlook->full * 100) + L"%\"></span></div>\n<p><strong>" + percent +
           L" full</strong>, " + Counted(report.outlook->left, L"number", L"numbers") + L" left; " +
           Escaped(Describe(*report.outlook)) + L"</p>\n";
}

std::wstring Entry(const wchar_t* name, const std::wstring& value) {
    return std::wstring(L"<div><dt>") + name + L"</dt><dd>" + value + L"</dd></div>";
}

std::wstring GapsText(const SeriesReport& report) {
    if (report.gaps.empty()) return {};
    std::wstring text;
    for (std::size_t at = 0; at < report.gaps.size() && at < MostGaps; ++at) {
        const Gap& gap = report.gaps[at];
        text +=
            (at == 0 ? L"" : L", ") + Grouped(gap.first) + (gap.last > gap.first ? L" to " + Grouped(gap.last) : L"");
    }
    if (report.gaps.size() > MostGaps)
        text +=
            L" and " + Counted(static_cast<std::int64_t>(report.gaps.size() - MostGaps), L"gap", L"gaps") + L" more";
    return L"<p class=\"quiet\">Missing: " + text + L"</p>\n";
}

std::wstring Card(const SeriesReport& report) {
    const Series& series = report.series;
    const std::wstring band =
        series.band.empty() ? std::wstring() : L"<p class=\"quiet\">band " + Escaped(series.band) + L"</p>\n";
    return L"<article class=\"card\">\n" + Element(L"h3", NameOf(series)) + band + Fullness(report) + ChartOf(report) +
           L"\n<div class=\"axis\"><span>" + DateText(report.history.from) + L"</span><span>" +
           DateText(report.history.to) + L"</span></div>\n<dl>" + Entry(L"codes", Grouped(series.count)) +
           Entry(L"first", series.count > 0 ? Grouped(series.first) : L"none") +
           Entry(L"last", series.count > 0 ? Grouped(series.last) : L"none") +
           Entry(L"void", Grouped(report.history.voidCodes)) + Entry(L"missing", Grouped(report.missing)) + L"</dl>\n" +
           GapsText(report) + L"</article>\n";
}

std::wstring RestLine(const SeriesReport& report) {
    return Element(L"li", NameOf(report.series) + L": " + Counted(report.series.count, L"code", L"codes") + L", last " +
                              Grouped(report.series.last) +
                              (report.outlook ? L", " + PercentText(report.outlook->full) + L" full" : L""));
}

const wchar_t* const Key = L"<p class=\"key quiet\"><span>numbers given over time</span><span class=\"gap\">missing "
                           L"numbers</span><span class=\"void\">void codes</span></p>\n";

} // namespace

void ReportPage::AddFindings(const std::wstring& rule, const std::vector<Finding>& findings) {
    std::map<FindingKind, std::vector<const Finding*>> byKind;
    for (const Finding& finding : findings)
        byKind[finding.kind].push_back(&finding);
    for (const auto& [kind, of] : byKind) {
        const KindOfFinding& known = Describe(kind);
        std::wstring list;
        for (std::size_t at = 0; at < of.size() && at < MostFindings; ++at)
            list += Element(L"li", Escaped(of[at]->text));
        if (of.size() > MostFindings)
            list += Element(L"li", L"and " + Grouped(static_cast<std::int64_t>(of.size() - MostFindings)) + L" more");
        mvarFindings += Element(L"h3", Escaped(known.name) + (rule.empty() ? L"" : L", rule " + Escaped(rule)) + L" (" +
                                           Grouped(static_cast<std::int64_t>(of.size())) + L")") +
                        L"<p class=\"quiet\">" + Escaped(known.meaning) + L"; what to do: " + Escaped(known.remedy) +
                        L"</p>\n" + Element(L"ul", list);
    }
    mvarFound += static_cast<std::int64_t>(findings.size());
}

void ReportPage::AddRule(const AuditReport& audit) {
    EndRule();
    AddFindings(audit.rule.name, audit.findings);
    mvarCodes += audit.codes;
    mvarRules += Element(L"h2", L"Rule " + Escaped(audit.rule.name)) + L"<p class=\"quiet\">" +
                 NameOf(audit.rule.policy) + L", codes of " +
                 Counted(audit.rule.definition.codeLength, L"character", L"characters") + L", " +
                 Counted(audit.codes, L"code", L"codes") + L" in " +
                 Counted(static_cast<std::int64_t>(audit.series.size()), L"series", L"series") + L"</p>\n" +
                 (audit.series.empty() ? L"" : Key);
}

void ReportPage::AddSeries(const SeriesReport& report) {
    if (mvarShown++ < MostCards)
        mvarCards += Card(report);
    else
        mvarRest += RestLine(report);
}

void ReportPage::EndRule() {
    if (!mvarCards.empty()) mvarRules += L"<div class=\"grid-of-cards\">\n" + mvarCards + L"</div>\n";
    if (!mvarRest.empty()) mvarRules += Element(L"h3", L"More series") + Element(L"ul", mvarRest);
    mvarCards.clear();
    mvarRest.clear();
    mvarShown = 0;
}

std::wstring ReportPage::Text() const {
    ReportPage whole = *this;
    whole.EndRule();
    const std::wstring findings =
        mvarFound == 0 ? L"<section class=\"card findings none\"><h2>Audit</h2>\n<p>Every row and every chain is as it "
                         L"should be.</p></section>\n"
                       : L"<section class=\"card findings\"><h2>Audit: " + Counted(mvarFound, L"finding", L"findings") +
                             L"</h2>\n" + mvarFindings + L"</section>\n";
    return L"<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<meta name=\"viewport\" "
           L"content=\"width=device-width, initial-scale=1\">\n<meta http-equiv=\"Content-Security-Policy\" "
           L"content=\"default-src 'none'; style-src 'unsafe-inline'\">\n<title>Ledger report</title>\n<style>" +
           std::wstring(ReportStyle) +
           L"</style>\n</head>\n<body>\n<header><h1>Ledger report</h1>\n<p class=\"quiet\">" + Escaped(mvarMadeAt) +
           L", " + Counted(mvarCodes, L"code", L"codes") + L"</p></header>\n" + findings + L"<main>\n" +
           whole.mvarRules + L"</main>\n</body>\n</html>\n";
}

} // namespace ledger
