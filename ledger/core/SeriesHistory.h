// How the numbers of a series came to be over time, drawn together so that a million codes take no more room than a
// hundred.
#pragma once

#include <chrono>
#include <vector>

#include "ledger/core/Series.h"
#include "ledger/db/Database.h"

namespace ledger {

// By then the series had come as far as this number.
struct HistoryPoint {
    std::chrono::sys_seconds at;
    std::int64_t highest = 0;
};

// Void codes that lie close together, in time and in number.
struct VoidMark {
    std::chrono::sys_seconds at; // of the first of them
    std::int64_t number = 0;     // likewise
    std::int64_t count = 0;
};

struct SeriesHistory {
    std::chrono::sys_seconds from{}; // when the first code was stored, and the last one
    std::chrono::sys_seconds to{};
    std::vector<HistoryPoint> points; // up to 120, in the order of time; the numbers never fall
    std::vector<VoidMark> voids;      // up to 2,400
    std::int64_t voidCodes = 0;
    double perDay = 0; // codes issued a day, over the last 30 days or the whole life of a younger series
};

// Runs in the caller's transaction, which may only read. Fails with DbError.
[[nodiscard]] SeriesHistory ReadHistory(Database& database, std::int64_t ruleId, const Series& series,
                                        std::chrono::sys_seconds now);

} // namespace ledger
