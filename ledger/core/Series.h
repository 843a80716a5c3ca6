// What a rule's numbers look like as a whole, found by the database.
#pragma once

#include <string>
#include <vector>

#include "ledger/db/Database.h"

namespace ledger {

struct Series {
    std::wstring band;
    std::wstring series;
    std::int64_t count = 0;
    std::int64_t first = 0;
    std::int64_t last = 0;
};

// Numbers that nobody holds, between two that somebody holds.
struct Gap {
    std::wstring band;
    std::wstring series;
    std::int64_t first = 0;
    std::int64_t last = 0;
};

// Codes that differ in letter case only.
struct Alike {
    std::wstring code; // in upper case
    std::int64_t count = 0;
};

// Each runs in the caller's transaction and fails with DbError; series come by band and series.
[[nodiscard]] std::vector<Series> AllSeries(Database& database, std::int64_t ruleId);
[[nodiscard]] std::vector<Gap> AllGaps(Database& database, std::int64_t ruleId);
[[nodiscard]] std::vector<Alike> AllAlike(Database& database, std::int64_t ruleId);

} // namespace ledger
