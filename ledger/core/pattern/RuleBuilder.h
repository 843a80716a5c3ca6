// Makes the rule that a pattern says, by the component's own members.
#pragma once

#include <string>

#include "ledger/core/pattern/CodeTable.h"
#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// What a rule holds beside its bands.
struct PatternSettings {
    bool capitals = false;  // codes of conversions are put in capitals
    long yearBegins = 1;    // the month
    long monthBegins = 1;   // the day
    long weekBegins = 2;    // the day, 1 for Sunday
    std::wstring dayBegins; // "HH:MM"; empty: at midnight

    friend bool operator==(const PatternSettings&, const PatternSettings&) = default;
};

// The definition text of the rule; the pattern is complete. Whoever opens it in the designer may change all of it.
// Fails with PatternError where the component refuses a band, with its message, and where `files` or ReadCodeTable
// refuse its file, with theirs.
[[nodiscard]] std::wstring BuildDefinition(const Pattern& pattern, const PatternSettings& settings,
                                           const CodeFiles& files);

} // namespace ledger
