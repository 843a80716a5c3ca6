// A pattern whose number grows past its width: the same pattern with more and more digits.
#pragma once

#include <vector>

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// The digits of a number that grows.
struct Growth {
    std::size_t least = 0; // as many as the pattern says
    std::size_t most = 0;
};

// "4..9"; fails with HostError on another text, on a width that shrinks, and on more digits than a ledger counts in.
[[nodiscard]] Growth GrowthOf(const std::wstring& text);

// One pattern for each width, the narrowest first. Each begins with its lowest number of all its digits, the first one
// where the pattern says. The pattern is complete. Fails with PatternError when it has not exactly one number, when
// that number has other digits than the least, or when it ends before its digits do.
[[nodiscard]] std::vector<Pattern> GrowingPatterns(const Pattern& pattern, const Growth& growth);

} // namespace ledger
