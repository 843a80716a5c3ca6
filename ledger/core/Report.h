// What a ledger looks like, for people: each rule with the findings of its audit, each series with its history.
#pragma once

#include <functional>
#include <optional>

#include "ledger/core/Audit.h"
#include "ledger/core/Outlook.h"
#include "ledger/core/SeriesHistory.h"

namespace ledger {

struct SeriesReport {
    Series series;
    SeriesHistory history;
    std::optional<Outlook> outlook; // nothing where the rule has no such band any more
    std::vector<Gap> gaps;          // in the order of their numbers
    std::int64_t missing = 0;       // numbers in them
};

// Runs in the caller's transaction, which may only read; calls the function with one series after the other, so that
// only one is held at a time. Fails with DbError.
void ForEachSeries(Database& database, const AuditReport& audit, std::chrono::sys_seconds now,
                   const std::function<void(const SeriesReport&)>& visit);

} // namespace ledger
