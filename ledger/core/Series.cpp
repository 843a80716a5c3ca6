#include "ledger/core/Series.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

namespace {

const NumberBand* FindBand(const std::wstring& name, const std::vector<NumberBand>& bands) {
    const auto found = std::ranges::find(bands, name, &NumberBand::name);
    return found == bands.end() ? nullptr : &*found;
}

} // namespace

bool IsLeftOfLeases(const Gap& gap, const std::vector<Lease>& leases) {
    std::int64_t next = gap.first; // leases come by their first number
    for (const Lease& lease : leases) {
        if (lease.band != gap.band || lease.series != gap.series || lease.first > next) continue;
        next = std::max(next, lease.grantedTo + 1);
    }
    return next > gap.last;
}

std::int64_t Series::Next(std::int64_t start, std::int64_t step) const noexcept {
    return std::max({start, leftOutTo + 1, count > 0 ? last + step : start});
}

std::optional<Gap> GapBefore(const NumberHeld& first, const std::vector<NumberBand>& bands) {
    const NumberBand* band = FindBand(first.band, bands);
    if (band == nullptr || first.number <= band->start) return std::nullopt;
    return Gap{first.band, first.series, band->start, first.number - 1};
}

std::wstring RangeText(const Gap& gap) {
    const std::wstring first = std::to_wstring(gap.first);
    return gap.last > gap.first ? first + L" to " + std::to_wstring(gap.last) : first;
}

std::wstring RoomText(const std::wstring& series, const std::wstring& band, std::int64_t left) {
    return series + L" has " + hosts::Counted(left, L"number") + L" left in band " + band;
}

std::optional<Room> RoomLeft(const Series& series, const std::vector<NumberBand>& bands) {
    const NumberBand* band = FindBand(series.band, bands);
    if (band == nullptr) return std::nullopt;
    const std::int64_t next = series.Next(band->start, band->step);
    const std::int64_t left = next > band->highest ? 0 : (band->highest - next) / band->step + 1;
    const double all =
        (static_cast<double>(band->highest) - static_cast<double>(band->start)) / static_cast<double>(band->step) + 1;
    return Room{left, all < 1 ? 0U : static_cast<unsigned>(100.0 * static_cast<double>(left) / all)};
}

} // namespace ledger
