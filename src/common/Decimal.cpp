#include "common/Decimal.h"

#include <cmath>
#include <limits>

#include "common/Natural.h"

namespace kestrel {

namespace {

using Limits = std::numeric_limits<double>;

constexpr int Precision = Limits::digits;                     // bits of a number
constexpr int SmallestBit = Limits::min_exponent - Precision; // the exponent of two of the last bit of the smallest
constexpr std::int64_t LargestExponent = Limits::max_exponent10;
constexpr std::int64_t SmallestExponent = SmallestBit * 302 / 1000 - 1; // of ten, below the smallest number

// Between two neighbouring numbers lie the decimals that read as either, and none with more digits than this is needed
// to say where they part.
constexpr std::size_t DigitsThatCount = 800;

// Ten to these powers, and whole numbers up to two to the power of Precision, are exact.
constexpr int ExactPowers = 22;
constexpr std::size_t ExactDigits = 15;

double ExactPower(int exponent) {
    double power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

// Whether the digits and the power of ten are both exact, so that one operation gives the nearest number.
bool IsExact(const Decimal& decimal, std::int64_t power) {
    return decimal.digits.size() <= ExactDigits && power >= -ExactPowers && power <= ExactPowers;
}

double NearestOfExact(const Decimal& decimal, int power) {
    double number = 0;
    for (const wchar_t digit : decimal.digits)
        number = number * 10 + (digit - L'0');
    return power < 0 ? number / ExactPower(-power) : number * ExactPower(power);
}

// A positive fraction.
struct Fraction {
    Natural above;
    Natural below;
};

Fraction ToFraction(const Decimal& decimal) {
    const auto digits = StringView(decimal.digits).substr(0, DigitsThatCount);
    Fraction fraction{Natural(), Natural(1)};
    for (const wchar_t digit : digits)
        fraction.above.MultiplyAdd(10, static_cast<std::uint32_t>(digit - L'0'));
    auto power = decimal.exponent - static_cast<std::int64_t>(digits.size()) + 1;
    if (digits.size() < decimal.digits.size()) { // what was left out is not 0, and that alone may count
        fraction.above.MultiplyAdd(10, 1);
        --power;
    }
    (power < 0 ? fraction.below : fraction.above).MultiplyByPowerOfTen(static_cast<std::size_t>(std::abs(power)));
    return fraction;
}

// Brings the fraction to 1 or more and below 2; returns the exponent of two that it then has to be multiplied by.
int Normalize(Fraction& fraction) {
    const auto above = fraction.above.BitLength();
    const auto below = fraction.below.BitLength();
    if (above < below) fraction.above.ShiftLeft(below - above);
    if (below < above) fraction.below.ShiftLeft(above - below);
    auto exponent = static_cast<int>(above) - static_cast<int>(below);
    if (fraction.above.Compare(fraction.below) < 0) {
        fraction.above.ShiftLeft(1);
        --exponent;
    }
    return exponent;
}

// So many bits of a normalized fraction as a whole number, rounded half to even.
std::uint64_t RoundedBits(Fraction& fraction, int bits) {
    std::uint64_t number = 0;
    for (; bits > 0; --bits) {
        number <<= 1U;
        if (fraction.above.Compare(fraction.below) >= 0) {
            fraction.above.Subtract(fraction.below);
            ++number;
        }
        fraction.above.ShiftLeft(1);
    }
    const int half = fraction.above.Compare(fraction.below);
    return half > 0 || (half == 0 && (number & 1U) != 0) ? number + 1 : number;
}

// The interval of all decimals that read as a number, all of it over one divisor: the number lies at `place`, `below`
// and `above` are the distances of its ends.
struct Interval {
    Natural place;
    Natural divisor;
    Natural below;
    Natural above;
    bool withEnds;

    void MultiplyByTen() {
        place.MultiplyAdd(10);
        below.MultiplyAdd(10);
        above.MultiplyAdd(10);
    }
    [[nodiscard]] bool ReachesDown() const {
        const int order = place.Compare(below);
        return order < 0 || (order == 0 && withEnds);
    }
    [[nodiscard]] bool ReachesUp() const {
        const int order = place.Plus(above).Compare(divisor);
        return order > 0 || (order == 0 && withEnds);
    }
};

Interval ReadAs(double number) {
    int exponent = 0;
    const double fraction = std::frexp(number, &exponent);
    const int last = std::max(exponent - Precision, SmallestBit);
    const auto bits = static_cast<std::uint64_t>(std::ldexp(fraction, exponent - last));
    // The neighbour below a power of two is nearer than the one above, but for the smallest of them.
    const bool narrow = bits == std::uint64_t{1} << static_cast<unsigned>(Precision - 1) && last > SmallestBit;
    Interval interval{Natural(bits), Natural(1), Natural(1), Natural(narrow ? 2 : 1), bits % 2 == 0};
    interval.place.ShiftLeft(narrow ? 2 : 1);
    interval.divisor.ShiftLeft(narrow ? 2 : 1);
    if (last < 0) {
        interval.divisor.ShiftLeft(static_cast<std::size_t>(-last));
    } else {
        for (auto* part : {&interval.place, &interval.below, &interval.above})
            part->ShiftLeft(static_cast<std::size_t>(last));
    }
    return interval;
}

// Brings the interval to where its first digit is the whole part; returns the exponent of ten that it counts.
int ScaleToFirstDigit(Interval& interval, double number) {
    // Never above the exponent, at most one below it.
    auto exponent = static_cast<int>(std::ceil(std::log10(number) - 1e-9)) - 1;
    if (exponent >= 0) {
        interval.divisor.MultiplyByPowerOfTen(static_cast<std::size_t>(exponent));
    } else {
        for (auto* part : {&interval.place, &interval.below, &interval.above})
            part->MultiplyByPowerOfTen(static_cast<std::size_t>(-exponent));
    }
    auto next = interval.divisor;
    next.MultiplyAdd(10);
    if (interval.place.Plus(interval.above).Compare(next) + (interval.withEnds ? 1 : 0) > 0) {
        interval.divisor = next;
        ++exponent;
    }
    return exponent;
}

// Takes the whole part, a digit, out of the interval's place.
std::uint32_t TakeDigit(Interval& interval) {
    std::uint32_t digit = 0;
    for (; interval.place.Compare(interval.divisor) >= 0; ++digit)
        interval.place.Subtract(interval.divisor);
    return digit;
}

// Whether the next larger digit is nearer to the place; of two equally near ones the even one is.
bool RoundsUp(const Interval& interval, std::uint32_t digit) {
    const int half = interval.place.Plus(interval.place).Compare(interval.divisor);
    return half > 0 || (half == 0 && digit % 2 != 0);
}

} // namespace

double Nearest(const Decimal& decimal) {
    if (decimal.digits.empty() || decimal.exponent < SmallestExponent) return 0;
    if (decimal.exponent > LargestExponent) return Limits::infinity();
    const auto power = decimal.exponent - static_cast<std::int64_t>(decimal.digits.size()) + 1;
    if (IsExact(decimal, power)) return NearestOfExact(decimal, static_cast<int>(power));
    auto fraction = ToFraction(decimal);
    const int exponent = Normalize(fraction);
    const int last = std::max(exponent - Precision + 1, SmallestBit);
    if (last > exponent + 1) return 0;
    return std::ldexp(static_cast<double>(RoundedBits(fraction, exponent - last + 1)), last);
}

Decimal Shortest(double number) {
    Decimal decimal;
    if (number == 0) return decimal;
    auto interval = ReadAs(number);
    decimal.exponent = ScaleToFirstDigit(interval, number);
    for (;;) {
        const auto digit = TakeDigit(interval);
        const bool down = interval.ReachesDown();
        const bool up = interval.ReachesUp();
        const bool larger = up && (!down || RoundsUp(interval, digit));
        decimal.digits += static_cast<wchar_t>(L'0' + digit + (larger ? 1 : 0));
        if (down || up) return decimal;
        interval.MultiplyByTen();
    }
}

} // namespace kestrel
