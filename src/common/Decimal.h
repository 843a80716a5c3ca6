// Floating-point numbers from and to decimal digits, exactly and alike on every system and in every locale. The
// standard library's own conversions do the same, faster and with tables that are larger than all the rest of the
// model.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

// The digits d1 d2 d3 ... without zeros at either end, and the exponent of ten that the first one counts: d1.d2d3...
// times ten to that power. Zero is no digits.
struct Decimal {
    String digits;
    std::int64_t exponent = 0;
};

// The number nearest to the decimal, of two equally near ones the even one; infinity when the decimal is beyond the
// largest number, 0 when it is nearer to that than to any other.
[[nodiscard]] double Nearest(const Decimal& decimal);

// The fewest digits that Nearest reads as this number; of several decimals so long the one nearest to the number, of
// two equally near ones the one that ends even. The number is finite and not negative.
[[nodiscard]] Decimal Shortest(double number);

} // namespace kestrel
