// Numbers in texts; all but NumericValue read and write alike in every locale.
#pragma once

#include <cstdint>
#include <optional>

#include "common/String.h"

namespace kestrel {

// The decimal number at the beginning of the text (leading blanks skipped; sign, digits, ".", exponent), or nothing
// when the text does not begin with one. What follows the number does not matter.
[[nodiscard]] std::optional<double> LeadingNumber(StringView text);

// The number that the whole text is (blanks at both ends allowed), or nothing.
[[nodiscard]] std::optional<double> WholeNumber(StringView text);

// Rounded half to even; nothing when 32 bits cannot hold it or it is no number.
[[nodiscard]] std::optional<std::int32_t> ToInteger(double number);

// The shortest digits that read back as the same number, in plain notation, without blanks.
[[nodiscard]] String CanonicalText(double number);

// The number that a host's or a user's text means: what is written as CanonicalText writes means the same everywhere,
// any other text what the user's locale makes of it. Nothing when it is not numeric.
[[nodiscard]] std::optional<double> NumericValue(const String& text);

// The numeric part of a code plus 1 (or another step), as decimal text without leading zeros. Exact for all-digit texts
// of any length; any other text counts as its leading number, or 0 when it has none.
[[nodiscard]] String Increased(StringView text, std::uint32_t step = 1);

// Whether the left text's numeric value is below the right one's; exact for all-digit texts of any length.
[[nodiscard]] bool NumericallyLess(StringView left, StringView right);

} // namespace kestrel
