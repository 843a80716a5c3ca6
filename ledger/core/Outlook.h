// How full a series is, and when it will be full if it goes on as it does.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "ledger/core/Series.h"

namespace ledger {

struct Outlook {
    double full = 0;                                // share of its numbers, from 0 to 1, that can be given no more
    std::int64_t left = 0;                          // numbers that it can still give
    double perDay = 0;                              // codes a day
    std::optional<std::chrono::sys_seconds> fullAt; // nothing when it is at rest, or goes on for more than a century
};

// Nothing for a series whose band the rule has no more.
[[nodiscard]] std::optional<Outlook> OutlookOf(const Series& series, const std::vector<NumberBand>& bands,
                                               double perDay, std::chrono::sys_seconds now);

// For people: "at 3.2 a day full on 2027-05-06".
[[nodiscard]] std::wstring Describe(const Outlook& outlook);

} // namespace ledger
