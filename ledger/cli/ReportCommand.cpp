#include "ledger/cli/ReportCommand.h"

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/ReportPage.h"
#include "ledger/core/Stamp.h"
#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

constexpr std::size_t NamedFindings = 20;

// Calls the functions with each rule and each of its series, and returns what no rule that is there is to blame for;
// all in one consistent state.
template <class AtRule, class AtSeries>
std::vector<Finding> Walk(Session& session, const ReportOptions& options, std::chrono::sys_seconds now, AtRule atRule,
                          AtSeries atSeries) {
    for (const StoredRule& rule : Rules(session.database).All()) {
        if (!options.rule.empty() && options.rule != rule.name) continue;
        const AuditReport audit = AuditRuleNow(session.database, rule, {options.warnPercent, {}, {}});
        atRule(audit);
        ForEachSeries(session.database, audit, now, atSeries);
    }
    return options.rule.empty() ? FindOrphans(session.database) : std::vector<Finding>();
}

// The report for a terminal and for programs.
class ReportText {
  public:
    explicit ReportText(const Output& output) : mvarOutput(output) {}

    void AddRule(const AuditReport& audit) {
        mvarRule = audit.rule.name;
        AddFindings(mvarRule, audit.findings);
        mvarCodes += audit.codes;
    }

    void AddFindings(const std::wstring& rule, const std::vector<Finding>& findings) {
        std::size_t named = 0;
        for (const Finding& finding : findings) {
            const wchar_t* kind = Describe(finding.kind).name;
            if (mvarOutput.IsJson())
                mvarFindings.push_back(
                    JsonText({{"finding", ToJson(kind)}, {"rule", ToJson(rule)}, {"text", ToJson(finding.text)}}));
            else if (named++ < NamedFindings)
                mvarFindings.push_back(kind + (L": " + hosts::Shown(finding.text)));
        }
        if (named > NamedFindings)
            mvarFindings.push_back(L"and " + std::to_wstring(named - NamedFindings) + L" more of rule " + rule);
        mvarFound += findings.size();
    }

    // Of the rule added last.
    void AddSeries(const SeriesReport& report) {
        const Series& series = report.series;
        const std::optional<Outlook>& outlook = report.outlook;
        const std::wstring percent =
            outlook ? std::to_wstring(static_cast<long long>(outlook->full * 100)) + L"%" : std::wstring();
        mvarTable.Add({hosts::Shown(mvarRule), hosts::Shown(series.series), std::to_wstring(series.count),
                       series.count > 0 ? std::to_wstring(series.first) : L"",
                       series.count > 0 ? std::to_wstring(series.last) : L"", std::to_wstring(report.history.voidCodes),
                       std::to_wstring(report.missing), percent, outlook ? Describe(*outlook) : std::wstring()});
        Json json = {{"rule", ToJson(mvarRule)},
                     {"band", ToJson(series.band)},
                     {"series", ToJson(series.series)},
                     {"codes", series.count},
                     {"first", series.first},
                     {"last", series.last},
                     {"void", report.history.voidCodes},
                     {"missing", report.missing},
                     {"perDay", report.history.perDay}};
        if (outlook) {
            json["full"] = outlook->full;
            json["left"] = outlook->left;
        }
        if (outlook && outlook->fullAt) json["fullOn"] = ToJson(DateText(*outlook->fullAt));
        if (mvarOutput.IsJson()) mvarSeries.push_back(JsonText(json));
    }

    void Print() const {
        for (const std::wstring& finding : mvarFindings)
            hosts::PrintLine(finding);
        for (const std::wstring& line : mvarOutput.IsJson() ? mvarSeries : mvarTable.Lines())
            hosts::PrintLine(line);
        mvarOutput.Line(hosts::Counted(mvarCodes, L"code") + L", " + hosts::Counted(mvarFound, L"finding"),
                        {{"codes", mvarCodes}, {"findings", mvarFound}});
    }

  private:
    const Output& mvarOutput;
    Table mvarTable{{L"RULE", L"SERIES", L"CODES", L"FIRST", L"LAST", L"VOID", L"MISSING", L"FULL", L"OUTLOOK"}};
    std::wstring mvarRule;
    std::vector<std::wstring> mvarFindings;
    std::vector<std::wstring> mvarSeries;
    std::int64_t mvarCodes = 0;
    std::size_t mvarFound = 0;
};

// Either kind of report, filled in one consistent state of the database; an attempt that was cut off leaves nothing.
template <class Made, class Make>
Made Fill(Session& session, const ReportOptions& options, Make make) {
    const std::wstring now = NowText();
    return InSnapshot(session.database, session.patience, [&] {
        Made made = make(now);
        const auto atRule = [&made](const AuditReport& audit) { made.AddRule(audit); };
        const auto atSeries = [&made](const SeriesReport& series) { made.AddSeries(series); };
        made.AddFindings({},
                         Walk(session, options, TimeOf(now).value_or(std::chrono::sys_seconds{}), atRule, atSeries));
        return made;
    });
}

} // namespace

int ReportLedger(Session& session, const ReportOptions& options) {
    if (!options.rule.empty()) static_cast<void>(ResolveRule(session, options.rule));
    if (options.html.empty()) {
        Fill<ReportText>(session, options, [&session](const std::wstring&) {
            return ReportText(session.output);
        }).Print();
        return ExitDone;
    }
    hosts::WriteTextFile(options.html, Fill<ReportPage>(session, options, [](const std::wstring& now) {
                                           return ReportPage(now);
                                       }).Text());
    session.output.Line(L"written: " + options.html, {{"written", ToJson(options.html)}});
    return ExitDone;
}

} // namespace ledger
