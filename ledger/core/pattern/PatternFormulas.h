// The formulas of a pattern, as far as they make sense together.
#pragma once

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// Fails with PatternError, at the band, on a formula that cannot be read, names a function or a band that is not there
// or gives a function what it does not take, and on formulas that are computed from each other. The pattern is
// complete.
void CheckFormulas(const Pattern& pattern);

} // namespace ledger
