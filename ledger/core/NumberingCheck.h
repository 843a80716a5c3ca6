// Whether a numbering makes sense.
#pragma once

#include "ledger/core/Numberings.h"

namespace ledger {

// Fails with HostError and the reason: a name that a rule has, a rule that is none, fields that nobody knows or that
// stand twice in one condition, dates that are none or end before they begin, rules that could give a record the same
// code, parts that contradict each other.
void CheckNumbering(const Numbering& numbering, const std::vector<StoredRule>& rules);

} // namespace ledger
