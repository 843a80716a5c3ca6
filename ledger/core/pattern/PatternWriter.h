// Patterns as texts that people read: what ParsePattern reads, said again.
#pragma once

#include <string>

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// The text that ParsePattern reads these bands from: names and tracked bands that are not given stay so.
[[nodiscard]] std::wstring WritePattern(const Pattern& pattern);

} // namespace ledger
