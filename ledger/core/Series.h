// What a series looks like as a whole.
#pragma once

#include <optional>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Leases.h"

namespace ledger {

struct Series {
    std::wstring band;
    std::wstring series;
    std::int64_t count = 0;
    std::int64_t first = 0; // that a code has
    std::int64_t last = 0;
    std::int64_t leftOutTo = 0; // the last number that was left out on purpose; 0 for none

    // The number that comes next, at that step, in a band that begins with `start`.
    [[nodiscard]] std::int64_t Next(std::int64_t start, std::int64_t step) const noexcept;
};

// Numbers that nobody holds, before or between those that somebody holds.
struct Gap {
    std::wstring band;
    std::wstring series;
    std::int64_t first = 0;
    std::int64_t last = 0;
};

// Whether every number of the gap was set aside by a lease, so that the gap is what was left of leases. The leases come
// by their first numbers.
[[nodiscard]] bool IsLeftOfLeases(const Gap& gap, const std::vector<Lease>& leases);

// The numbers of a series before the one that it begins with, which is not the first of its band.
[[nodiscard]] std::optional<Gap> GapBefore(const NumberHeld& first, const std::vector<NumberBand>& bands);

// "5 to 7", or "5" for one number.
[[nodiscard]] std::wstring RangeText(const Gap& gap);

struct Room {
    std::int64_t left = 0; // numbers that the series can still give
    unsigned percent = 0;  // of all that it could ever give
};

// For people: "INV-2026-??? has 12 numbers left in band Number".
[[nodiscard]] std::wstring RoomText(const std::wstring& series, const std::wstring& band, std::int64_t left);

// Nothing when the rule has no such band any more.
[[nodiscard]] std::optional<Room> RoomLeft(const Series& series, const std::vector<NumberBand>& bands);

} // namespace ledger
