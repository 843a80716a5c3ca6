// The one line that people write a code rule in, such as INV-{Date:yyyy}-{#####}. Its grammar stands above the parser.
#pragma once

#include <string>
#include <string_view>

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// What the tables of a ledger hold of a code.
inline constexpr std::size_t LongestPatternCode = 255;
// What a ledger counts in.
inline constexpr std::size_t MostDigits = 18;

// The pattern with every band named and every number's tracked bands found. Fails with PatternError. The time it takes
// grows with the length of the text, and a text of more than ten thousand characters is refused unread.
[[nodiscard]] Pattern ParsePattern(std::wstring_view text);

} // namespace ledger
