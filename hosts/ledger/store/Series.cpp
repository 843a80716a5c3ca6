#include "hosts/ledger/store/Series.h"

namespace ledger {

std::vector<Series> AllSeries(Database& database, std::int64_t ruleId) {
    Statement& rows = database.Prepare(
        L"SELECT band, series, COUNT(*), MIN(number), MAX(number) FROM kestrel_numbers WHERE rule_id = ? "
        L"GROUP BY band, series ORDER BY band, series");
    rows.Set(ruleId).Execute();
    std::vector<Series> all;
    while (rows.Fetch()) {
        Series series;
        series.band = rows.Text(1);
        series.series = rows.Text(2);
        series.count = rows.Number(3);
        series.first = rows.Number(4);
        series.last = rows.Number(5);
        all.push_back(std::move(series));
    }
    return all;
}

std::vector<Gap> AllGaps(Database& database, std::int64_t ruleId) {
    Statement& rows = database.Prepare(
        L"SELECT band, series, before_it + 1, number - 1 FROM (SELECT band, series, number, LAG(number) OVER "
        L"(PARTITION BY band, series ORDER BY number) AS before_it FROM kestrel_numbers WHERE rule_id = ?) pairs "
        L"WHERE number - before_it > 1 ORDER BY band, series, number");
    rows.Set(ruleId).Execute();
    std::vector<Gap> gaps;
    while (rows.Fetch()) {
        Gap gap;
        gap.band = rows.Text(1);
        gap.series = rows.Text(2);
        gap.first = rows.Number(3);
        gap.last = rows.Number(4);
        gaps.push_back(std::move(gap));
    }
    return gaps;
}

std::vector<Alike> AllAlike(Database& database, std::int64_t ruleId) {
    Statement& rows = database.Prepare(L"SELECT UPPER(code), COUNT(*) FROM kestrel_codes WHERE rule_id = ? "
                                       L"GROUP BY UPPER(code) HAVING COUNT(*) > 1 ORDER BY UPPER(code)");
    rows.Set(ruleId).Execute();
    std::vector<Alike> alike;
    while (rows.Fetch()) {
        Alike group;
        group.code = rows.Text(1);
        group.count = rows.Number(2);
        alike.push_back(std::move(group));
    }
    return alike;
}

} // namespace ledger
