// Whether a numbering makes sense.
#pragma once

#include "ledger/core/Numberings.h"

namespace ledger {

// The day of a date in ISO 8601 as yyyy-mm-dd; empty for any other text.
[[nodiscard]] std::wstring DayOf(const std::wstring& date);

// Fails with HostError and the reason: a name that a rule has, a rule that is none, fields that nobody knows, dates
// that are none or end before they begin, rules that could give a record the same code.
void CheckNumbering(const Numbering& numbering, const std::vector<StoredRule>& rules);

} // namespace ledger
