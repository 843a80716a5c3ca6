#include "ledger/core/Series.h"

namespace ledger {

std::vector<Series> AllSeries(Database& database, std::int64_t ruleId) {
    return database
        .Prepare(L"SELECT band, series, COUNT(*), MIN(number), MAX(number) FROM kestrel_numbers WHERE rule_id = ? "
                 L"GROUP BY band, series ORDER BY band, series")
        .Set(ruleId)
        .Rows([](const Statement& row) {
            return Series{row.Text(1), row.Text(2), row.Number(3), row.Number(4), row.Number(5)};
        });
}

std::vector<Gap> AllGaps(Database& database, std::int64_t ruleId) {
    return database
        .Prepare(
            L"SELECT band, series, before_it + 1, number - 1 FROM (SELECT band, series, number, LAG(number) OVER "
            L"(PARTITION BY band, series ORDER BY number) AS before_it FROM kestrel_numbers WHERE rule_id = ?) pairs "
            L"WHERE number - before_it > 1 ORDER BY band, series, number")
        .Set(ruleId)
        .Rows([](const Statement& row) {
            return Gap{row.Text(1), row.Text(2), row.Number(3), row.Number(4)};
        });
}

std::vector<Alike> AllAlike(Database& database, std::int64_t ruleId) {
    return database
        .Prepare(L"SELECT UPPER(code), COUNT(*) FROM kestrel_codes WHERE rule_id = ? "
                 L"GROUP BY UPPER(code) HAVING COUNT(*) > 1 ORDER BY UPPER(code)")
        .Set(ruleId)
        .Rows([](const Statement& row) {
            return Alike{row.Text(1), row.Number(2)};
        });
}

} // namespace ledger
