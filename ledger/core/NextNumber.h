// The numbers that the series of a record are at, and leaving numbers out on purpose.
#pragma once

#include "ledger/core/Issuer.h"

namespace ledger {

struct SeriesState {
    std::wstring band;
    std::wstring series;
    std::int64_t next = 0;             // the first number that nobody has or has set aside
    bool isFull = false;               // there is no such number in the band any more
    std::optional<HighestNumber> last; // that a code has
};

// One for each number band. Fails with RecordError when the rule refuses the values.
[[nodiscard]] std::vector<SeriesState> LookAtSeries(const Workplace& workplace, const FieldValues& values);

// Lets the series of the values go on with that number, if it is beyond what is used; what is left out stands in the
// journal, and in the series as a number without a code. `band` may be empty where the rule has one number band.
// Returns whether anything was left out. Fails with HostError on a number that is used, set aside or too large for the
// band.
[[nodiscard]] bool SetNextNumber(const Workplace& workplace, const FieldValues& values, const std::wstring& band,
                                 std::int64_t next);

} // namespace ledger
