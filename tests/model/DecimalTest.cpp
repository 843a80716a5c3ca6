#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "common/Decimal.h"
#include "support/Infinity.h"

namespace kestrel::test {

namespace {

constexpr int Draws = 10'000;

// As the standard library writes the shortest digits: d.ddde+xx.
std::string LibraryText(double number) {
    std::array<char, 32> buffer{};
    char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific).ptr;
    return {buffer.data(), end};
}

// In the same form.
std::string OwnText(double number) {
    const auto decimal = Shortest(number);
    std::string text(decimal.digits.begin(), decimal.digits.end());
    if (text.size() > 1) text.insert(1, ".");
    const auto exponent = std::to_string(std::abs(decimal.exponent));
    return text + (decimal.exponent < 0 ? "e-" : "e+") + (exponent.size() < 2 ? "0" : "") + exponent;
}

void ExpectAsTheLibrary(double number) {
    ASSERT_EQ(OwnText(number), LibraryText(number));
    ASSERT_EQ(Nearest(Shortest(number)), number) << LibraryText(number);
}

double LibraryNumber(const Decimal& decimal) {
    const std::string text =
        "." + std::string(decimal.digits.begin(), decimal.digits.end()) + "e" + std::to_string(decimal.exponent + 1);
    double number = 0;
    const auto failure = std::from_chars(text.data(), text.data() + text.size(), number).ec;
    if (failure == std::errc::result_out_of_range) return decimal.exponent > 0 ? Infinity : 0;
    return number;
}

// All the digits that the number has, of which there may be 767.
Decimal AllDigits(double number) {
    std::array<char, 2000> buffer{};
    char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific, 1100).ptr;
    const std::string text(buffer.data(), end);
    const auto mantissa = text.substr(0, text.find('e'));
    Decimal decimal;
    for (const char character : mantissa.substr(0, mantissa.find_last_not_of('0') + 1))
        if (character != '.') decimal.digits += static_cast<wchar_t>(character);
    decimal.exponent = std::stol(text.substr(mantissa.size() + 1));
    return decimal;
}

class DecimalTest : public testing::Test {
  protected:
    // Any number that is positive and finite, each pattern of bits alike.
    double AnyNumber() {
        for (;;) {
            const auto number = std::bit_cast<double>(mvarRandom() >> 1U);
            if (std::isfinite(number) && number > 0) return number;
        }
    }
    std::size_t UpTo(std::size_t most) { return static_cast<std::size_t>(mvarRandom() % (most + 1)); }

  private:
    std::mt19937_64 mvarRandom{20'240'506}; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers in every run
};

} // namespace

TEST_F(DecimalTest, WritesAnyNumberAsTheLibraryDoes) {
    for (int i = 0; i < Draws; ++i)
        ExpectAsTheLibrary(AnyNumber());
}

TEST_F(DecimalTest, WritesNumbersOfFewDigitsAsTheLibraryDoes) {
    for (int i = 0; i < Draws; ++i)
        ExpectAsTheLibrary((static_cast<double>(UpTo(10'000'000)) + 1) / std::pow(10, UpTo(12)));
}

// Where the neighbour below is nearer than the one above, and one beside each.
TEST_F(DecimalTest, WritesPowersOfTwoAndTheirNeighboursAsTheLibraryDoes) {
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double power = std::ldexp(1, exponent);
        ExpectAsTheLibrary(power);
        ExpectAsTheLibrary(std::nextafter(power, Infinity));
        if (exponent > -1074) ExpectAsTheLibrary(std::nextafter(power, 0));
    }
}

TEST_F(DecimalTest, WritesPowersOfTenAndTheirNeighboursAsTheLibraryDoes) {
    for (int exponent = -323; exponent <= 308; ++exponent) {
        const double power = Nearest({L"1", exponent});
        for (const double number : {power, std::nextafter(power, Infinity), std::nextafter(power, 0)})
            ExpectAsTheLibrary(number);
    }
}

TEST_F(DecimalTest, WritesTheEndsAsTheLibraryDoes) {
    for (const double number : {std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                                std::numeric_limits<double>::denorm_min()})
        ExpectAsTheLibrary(number);
    EXPECT_EQ(Shortest(0).digits, L"");
}

TEST_F(DecimalTest, ReadsAnyDigitsAsTheLibraryDoes) {
    for (int i = 0; i < Draws; ++i) {
        Decimal decimal{L"1", static_cast<std::int64_t>(UpTo(660)) - 335};
        for (auto more = UpTo(40); more > 0; --more)
            decimal.digits += static_cast<wchar_t>(L'0' + UpTo(9));
        decimal.digits += L'7';
        ASSERT_EQ(Nearest(decimal), LibraryNumber(decimal))
            << testing::PrintToString(decimal.digits) << decimal.exponent;
    }
}

TEST_F(DecimalTest, ReadsEachDigitOfALongNumber) {
    for (int i = 0; i < Draws / 20; ++i) {
        const double number = AnyNumber();
        ASSERT_EQ(Nearest(AllDigits(number)), number);
    }
}

// Exactly in the middle between two numbers the even one is meant, and one digit more, however far behind, decides.
TEST_F(DecimalTest, ReadsTheMiddleBetweenTwoNumbersToTheLastDigit) {
    // 2^53 + 1 lies between two numbers, of which the lower is even; 2^53 + 3 between two of which the upper is.
    EXPECT_EQ(Nearest({L"9007199254740993", 15}), 9007199254740992.0);
    EXPECT_EQ(Nearest({L"9007199254740993" + String(2000, L'0') + L"1", 15}), 9007199254740994.0);
    EXPECT_EQ(Nearest({L"9007199254740995", 15}), 9007199254740996.0);
    EXPECT_EQ(Nearest({L"9007199254740994" + String(2000, L'9'), 15}), 9007199254740994.0);
}

TEST_F(DecimalTest, ReadsWhatIsBeyondTheEnds) {
    const auto largest = AllDigits(std::numeric_limits<double>::max());
    EXPECT_EQ(Nearest(largest), std::numeric_limits<double>::max());
    EXPECT_EQ(Nearest({L"17976931348623159", 308}), Infinity);
    EXPECT_EQ(Nearest({L"17976931348623158", 308}), std::numeric_limits<double>::max());
    EXPECT_EQ(Nearest({L"1", 309}), Infinity);
    EXPECT_EQ(Nearest({L"1", std::int64_t{1} << 60}), Infinity);
    EXPECT_EQ(Nearest({L"1", -(std::int64_t{1} << 60)}), 0);
    EXPECT_EQ(Nearest({L"24703282292062327", -324}), 0);
    EXPECT_EQ(Nearest({L"24703282292062328", -324}), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(Nearest({L"", 5}), 0);
}

} // namespace kestrel::test
