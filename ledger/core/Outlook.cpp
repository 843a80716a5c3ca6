#include "ledger/core/Outlook.h"

#include <algorithm>
#include <cmath>

#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

constexpr double LongestDays = 36'525; // a century

// With one decimal below ten, without above.
std::wstring RateText(double perDay) {
    if (perDay >= 9.95) return std::to_wstring(std::llround(perDay));
    const long long tenths = std::max(std::llround(perDay * 10), 1LL);
    return std::to_wstring(tenths / 10) + (tenths % 10 == 0 ? std::wstring() : L"." + std::to_wstring(tenths % 10));
}

} // namespace

std::optional<Outlook> OutlookOf(const Series& series, const std::vector<NumberBand>& bands, double perDay,
                                 std::chrono::sys_seconds now) {
    const auto room = RoomLeft(series, bands);
    const auto band = std::ranges::find(bands, series.band, &NumberBand::name);
    if (!room || band == bands.end()) return std::nullopt;
    const double all = static_cast<double>(band->highest) - static_cast<double>(band->start) + 1;
    const std::int64_t end = std::min(std::max(series.last, series.leftOutTo), band->highest);
    const double used = static_cast<double>(end) - static_cast<double>(band->start) + 1;
    Outlook outlook{all < 1 ? 1 : std::clamp(used / all, 0.0, 1.0), room->left, perDay, std::nullopt};
    const double wait = perDay > 0 ? static_cast<double>(room->left) / perDay : LongestDays;
    if (room->left > 0 && wait < LongestDays)
        outlook.fullAt = now + std::chrono::seconds(static_cast<std::int64_t>(wait * 86'400));
    return outlook;
}

std::wstring Describe(const Outlook& outlook) {
    if (outlook.left == 0) return L"full";
    if (outlook.perDay <= 0) return L"at rest: no code in the last 30 days";
    const std::wstring rate = L"at " + RateText(outlook.perDay) + L" a day ";
    return rate + (outlook.fullAt ? L"full on " + DateText(*outlook.fullAt) : L"not full in a hundred years");
}

} // namespace ledger
