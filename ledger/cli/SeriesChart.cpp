#include "ledger/cli/SeriesChart.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "ledger/cli/Html.h"
#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

// The picture's own units.
constexpr double ChartWidth = 600;
constexpr double Height = 160;
constexpr double Margin = 6; // for strokes and crosses at the edges
constexpr int GapRows = 100;

std::wstring Number(double value) {
    const long long tenths = std::llround(value * 10);
    return std::to_wstring(tenths / 10) + L'.' + std::to_wstring(tenths % 10);
}

class Chart {
  public:
    explicit Chart(const SeriesReport& report) : mvarReport(report), mvarLowest(report.series.first) {
        if (!report.gaps.empty()) mvarLowest = std::min(mvarLowest, report.gaps.front().first);
    }

    [[nodiscard]] std::wstring Text() const {
        return L"<svg viewBox=\"0 0 600 160\" preserveAspectRatio=\"none\" role=\"img\" aria-label=\"" + Label() +
               L"\"><path class=\"grid\" d=\"M0 " + Number(Margin) + L"H600M0 80H600M0 " + Number(Height - Margin) +
               L"H600\"/>" + Gaps() + Line() + Voids() + L"</svg>";
    }

  private:
    [[nodiscard]] double X(std::chrono::sys_seconds at) const {
        const auto from = mvarReport.history.from;
        const auto all = static_cast<double>((mvarReport.history.to - from).count());
        const double share = all > 0 ? static_cast<double>((at - from).count()) / all : 0;
        return Margin + std::clamp(share, 0.0, 1.0) * (ChartWidth - 2 * Margin);
    }

    [[nodiscard]] double Y(double number) const {
        const auto low = static_cast<double>(mvarLowest);
        const auto all = static_cast<double>(mvarReport.series.last) - low;
        const double share = all > 0 ? (number - low) / all : 1;
        return Height - Margin - std::clamp(share, 0.0, 1.0) * (Height - 2 * Margin);
    }

    [[nodiscard]] std::wstring Label() const {
        const Series& series = mvarReport.series;
        return L"Numbers " + Grouped(series.first) + L" to " + Grouped(series.last) + L", " +
               DateText(mvarReport.history.from) + L" to " + DateText(mvarReport.history.to);
    }

    // In steps: a number is reached at once.
    [[nodiscard]] std::wstring Line() const {
        std::wstring line = L"M" + Number(Margin) + L' ' + Number(Height - Margin);
        for (const HistoryPoint& point : mvarReport.history.points)
            line += L"H" + Number(X(point.at)) + L"V" + Number(Y(static_cast<double>(point.highest)));
        line += L"H" + Number(ChartWidth - Margin);
        return L"<path class=\"area\" d=\"" + line + L"V" + Number(Height - Margin) +
               L"Z\"/><path class=\"line\" d=\"" + line + L"\"/>";
    }

    // Gaps that lie together are one band.
    [[nodiscard]] std::wstring Gaps() const {
        std::set<int> rows;
        for (const Gap& gap : mvarReport.gaps)
            for (int row = Row(gap.first); row <= Row(gap.last); ++row)
                rows.insert(row);
        std::wstring text;
        constexpr double high = (Height - 2 * Margin) / GapRows;
        for (auto row = rows.begin(); row != rows.end();) {
            const int first = *row;
            int last = first;
            for (++row; row != rows.end() && *row == last + 1; ++row)
                last = *row;
            text += L"<rect class=\"gap\" x=\"0\" width=\"600\" y=\"" + Number(Height - Margin - (last + 1) * high) +
                    L"\" height=\"" + Number((last + 1 - first) * high) + L"\"/>";
        }
        return text;
    }

    [[nodiscard]] int Row(std::int64_t number) const {
        const double share = (Height - Margin - Y(static_cast<double>(number))) / (Height - 2 * Margin);
        return std::min(static_cast<int>(share * GapRows), GapRows - 1);
    }

    [[nodiscard]] std::wstring Voids() const {
        std::wstring text;
        for (const VoidMark& mark : mvarReport.history.voids)
            text += L"<path class=\"void\" d=\"M" + Number(X(mark.at) - 4) + L' ' +
                    Number(Y(static_cast<double>(mark.number)) - 4) + L"l8 8m0 -8l-8 8\"><title>" +
                    Counted(mark.count, L"void code", L"void codes") + L" from number " + Grouped(mark.number) + L", " +
                    DateText(mark.at) + L"</title></path>";
        return text;
    }

    const SeriesReport& mvarReport;
    std::int64_t mvarLowest;
};

} // namespace

std::wstring ChartOf(const SeriesReport& report) { return Chart(report).Text(); }

} // namespace ledger
