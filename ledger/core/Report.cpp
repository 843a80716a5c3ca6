#include "ledger/core/Report.h"

#include <algorithm>
#include <map>

namespace ledger {

namespace {

using GapsBySeries = std::map<std::pair<std::wstring, std::wstring>, std::vector<Gap>>;

// A fact of a finding; empty or 0 where it has none of that kind.
template <class Value>
Value FactOf(const Finding& finding, const wchar_t* name) {
    for (const Fact& fact : finding.facts)
        if (fact.first == name)
            if (const Value* value = std::get_if<Value>(&fact.second)) return *value;
    return {};
}

GapsBySeries GapsOf(const AuditReport& audit) {
    GapsBySeries gaps;
    for (const auto* known : {&audit.leftOfLeases, &audit.leftOut})
        for (const Gap& gap : *known)
            gaps[{gap.band, gap.series}].push_back(gap);
    for (const Finding& finding : audit.findings) {
        if (finding.kind != FindingKind::Gap) continue;
        Gap gap{FactOf<std::wstring>(finding, L"band"), FactOf<std::wstring>(finding, L"series"),
                FactOf<std::int64_t>(finding, L"first"), FactOf<std::int64_t>(finding, L"last")};
        gaps[{gap.band, gap.series}].push_back(std::move(gap));
    }
    for (auto& [series, of] : gaps)
        std::ranges::sort(of, {}, &Gap::first);
    return gaps;
}

} // namespace

void ForEachSeries(Database& database, const AuditReport& audit, std::chrono::sys_seconds now,
                   const std::function<void(const SeriesReport&)>& visit) {
    GapsBySeries gaps = GapsOf(audit);
    for (const Series& series : audit.series) {
        SeriesReport report{series, ReadHistory(database, audit.rule.id, series, now), {}, {}, 0};
        report.outlook = OutlookOf(series, audit.bands, report.history.perDay, now);
        report.gaps = std::move(gaps[{series.band, series.series}]);
        for (const Gap& gap : report.gaps)
            report.missing += gap.last - gap.first + 1;
        visit(report);
    }
}

} // namespace ledger
