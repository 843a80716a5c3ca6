#include "ledger/core/SeriesHistory.h"

#include <algorithm>
#include <map>

#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::sys_seconds;

constexpr std::int64_t MostPoints = 120;
constexpr std::int64_t VoidColumns = 60;
constexpr std::int64_t VoidRows = 40;
constexpr std::size_t VoidsAtOnce = 2000;
constexpr days RateWindow{30};

const wchar_t* const OfSeries = L" FROM kestrel_numbers n JOIN kestrel_codes c ON c.rule_id = n.rule_id AND c.code = "
                                L"n.code WHERE n.rule_id = ? AND n.band = ? AND n.series = ?";

// How much of the text of a time tells the times of so long a span apart, without making thousands of them.
std::size_t Resolution(sys_seconds from, sys_seconds to) {
    if (to - from > days(60)) return 10;   // days
    if (to - from > days(2)) return 13;    // hours
    return to - from > hours(2) ? 16 : 19; // minutes, seconds
}

// Which of so many equal parts a place lies in.
std::int64_t PartOf(std::int64_t place, std::int64_t first, std::int64_t last, std::int64_t parts) {
    if (last <= first) return 0;
    const double share = static_cast<double>(place - first) / static_cast<double>(last - first);
    return std::clamp(static_cast<std::int64_t>(share * static_cast<double>(parts)), std::int64_t{0}, parts - 1);
}

class HistoryReader {
  public:
    HistoryReader(Database& database, std::int64_t ruleId, const Series& series)
        : mvarDatabase(database), mvarRuleId(ruleId), mvarSeries(series) {}

    SeriesHistory Run(sys_seconds now) {
        ReadBounds();
        ReadPoints(now);
        ReadVoids();
        return std::move(mvarHistory);
    }

  private:
    Statement& Query(const std::wstring& select, const std::wstring& rest) {
        Statement& query = mvarDatabase.Prepare(L"SELECT " + select + OfSeries + rest);
        query.Set(mvarRuleId).Set(mvarSeries.band).Set(mvarSeries.series);
        return query;
    }

    void ReadBounds() {
        const auto bounds = Query(L"MIN(c.stored_at), MAX(c.stored_at)", {}).First([](const Statement& row) {
            std::wstring first = row.Text(1);
            return std::pair(std::move(first), row.Text(2));
        });
        if (!bounds) return;
        mvarHistory.from = TimeOf(bounds->first).value_or(sys_seconds{});
        mvarHistory.to = TimeOf(bounds->second).value_or(mvarHistory.from);
    }

    void ReadPoints(sys_seconds now) {
        const std::wstring moment =
            L"SUBSTR(c.stored_at, 1, " + std::to_wstring(Resolution(mvarHistory.from, mvarHistory.to)) + L")";
        Statement& rows = Query(moment + L", MAX(n.number), SUM(CASE WHEN c.origin <> 'adopted' THEN 1 ELSE 0 END)",
                                L" GROUP BY " + moment + L" ORDER BY " + moment);
        const sys_seconds windowBegin = now - RateWindow;
        std::int64_t issued = 0;
        rows.Execute();
        while (rows.Fetch()) {
            const sys_seconds at = std::max(TimeOf(rows.Text(1)).value_or(mvarHistory.from), mvarHistory.from);
            AddPoint({at, rows.Number(2)});
            if (at >= windowBegin) issued += rows.Number(3);
        }
        const double life = std::chrono::duration<double, days::period>(now - mvarHistory.from).count();
        mvarHistory.perDay =
            static_cast<double>(issued) / std::clamp(life, 1.0, static_cast<double>(RateWindow.count()));
    }

    void AddPoint(HistoryPoint point) {
        std::vector<HistoryPoint>& points = mvarHistory.points;
        if (!points.empty()) point.highest = std::max(point.highest, points.back().highest);
        const auto column = [this](sys_seconds at) { return Column(at, MostPoints); };
        if (!points.empty() && column(points.back().at) == column(point.at))
            points.back().highest = point.highest;
        else
            points.push_back(point);
    }

    [[nodiscard]] std::int64_t Column(sys_seconds at, std::int64_t columns) const {
        return PartOf(at.time_since_epoch().count(), mvarHistory.from.time_since_epoch().count(),
                      mvarHistory.to.time_since_epoch().count(), columns);
    }

    void ReadVoids() {
        std::map<std::pair<std::int64_t, std::int64_t>, VoidMark> cells;
        std::int64_t last = mvarSeries.first - 1;
        for (std::size_t read = VoidsAtOnce; read == VoidsAtOnce;) {
            const auto voids =
                Query(L"n.number, c.stored_at",
                      L" AND c.void_act > 0 AND n.number > ? ORDER BY n.number LIMIT " + std::to_wstring(VoidsAtOnce))
                    .Set(last)
                    .Rows([](const Statement& row) {
                        const std::int64_t number = row.Number(1);
                        return std::pair(number, row.Text(2));
                    });
            for (const auto& [number, at] : voids)
                AddVoid(cells, {TimeOf(at).value_or(mvarHistory.from), number, 0});
            read = voids.size();
            if (!voids.empty()) last = voids.back().first;
        }
        for (const auto& [cell, mark] : cells)
            mvarHistory.voids.push_back(mark);
    }

    void AddVoid(std::map<std::pair<std::int64_t, std::int64_t>, VoidMark>& cells, const VoidMark& mark) {
        const std::int64_t row = PartOf(mark.number, mvarSeries.first, mvarSeries.last, VoidRows);
        ++cells.try_emplace({Column(mark.at, VoidColumns), row}, mark).first->second.count;
        ++mvarHistory.voidCodes;
    }

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
    const Series& mvarSeries;
    SeriesHistory mvarHistory;
};

} // namespace

SeriesHistory ReadHistory(Database& database, std::int64_t ruleId, const Series& series, sys_seconds now) {
    return HistoryReader(database, ruleId, series).Run(now);
}

} // namespace ledger
