#include <limits>

#include <gtest/gtest.h>

#include "common/Numbers.h"
#include "support/Infinity.h"

namespace kestrel::test {

namespace {

struct NumberCase {
    String text;
    double number;
};

String Zeros(std::size_t count) { return String(count, L'0'); }

const NumberCase LeadingNumbers[] = {
    {L"0", 0},
    {L"7", 7},
    {L"007", 7},
    {L"  12", 12},
    {L"12 ", 12},
    {L"12abc", 12},
    {L"12;,1,a,b", 12},
    {L"-5", -5},
    {L"+5", 5},
    {L"1.5", 1.5},
    {L"1.5.7", 1.5},
    {L".5", 0.5},
    {L"5.", 5},
    {L"1e3", 1000},
    {L"1E+3x", 1000},
    {L"25e-1", 2.5},
    {L"1e", 1},
    {L"1e+", 1},
    {L"1ex", 1},
    {L"123456789012345678", 123456789012345678.0},
    {L"1e400", Infinity},
    {L"-1e400", -Infinity},
    {L"1e99999999999999999999", Infinity},
    {L"1e-400", 0},
    {L"1e-99999999999999999999", 0},
    {L"0." + Zeros(400) + L"1", 0},
    {L"." + Zeros(400) + L"1", 0},
    {L"1" + Zeros(400), Infinity},
    {L"1" + Zeros(500) + L"e-100", Infinity},
    {L"1" + Zeros(400) + L"e-800", 0},
    {L"1" + Zeros(400) + L".0e-400", 1},
};

const wchar_t* const NoLeadingNumbers[] = {L"",   L" ",    L"a",   L"-",   L"+",  L".",
                                           L"e5", L"-.e1", L"--1", L"- 1", L";1", L"\t1"};

const wchar_t* const NoWholeNumbers[] = {L"", L"12abc", L"1 2", L"1,000", L"1.5.7", L"1e", L"0x10", L"\t1", L"1\t"};

} // namespace

TEST(NumbersTest_LeadingNumber, ReadsWhatTheTextBeginsWith) {
    for (const auto& row : LeadingNumbers)
        EXPECT_EQ(LeadingNumber(row.text), row.number) << testing::PrintToString(row.text);
}

TEST(NumbersTest_LeadingNumber, IsNothingWhereNoNumberBegins) {
    for (const auto* text : NoLeadingNumbers)
        EXPECT_EQ(LeadingNumber(text), std::nullopt) << testing::PrintToString(String(text));
}

TEST(NumbersTest_LeadingNumber, ReadsAMillionDigitsInOnePass) {
    EXPECT_EQ(LeadingNumber(Zeros(1'000'000) + L"42"), 42);
    EXPECT_EQ(LeadingNumber(String(1'000'000, L'9')), Infinity);
}

TEST(NumbersTest_WholeNumber, AllowsBlanksAtBothEnds) {
    EXPECT_EQ(WholeNumber(L" 12 "), 12);
    EXPECT_EQ(WholeNumber(L"-1.5e2"), -150);
}

TEST(NumbersTest_WholeNumber, IsNothingWhenTheTextHoldsMore) {
    for (const auto* text : NoWholeNumbers)
        EXPECT_EQ(WholeNumber(text), std::nullopt) << testing::PrintToString(String(text));
}

TEST(NumbersTest_ToInteger, RoundsHalfToEven) {
    EXPECT_EQ(ToInteger(0.5), 0);
    EXPECT_EQ(ToInteger(1.5), 2);
    EXPECT_EQ(ToInteger(2.5), 2);
    EXPECT_EQ(ToInteger(-2.5), -2);
    EXPECT_EQ(ToInteger(2.51), 3);
}

TEST(NumbersTest_ToInteger, IsNothingBeyond32Bits) {
    EXPECT_EQ(ToInteger(2147483647.0), 2147483647);
    EXPECT_EQ(ToInteger(2147483647.4), 2147483647);
    EXPECT_EQ(ToInteger(2147483648.0), std::nullopt);
    EXPECT_EQ(ToInteger(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToInteger(-2147483649.0), std::nullopt);
    EXPECT_EQ(ToInteger(Infinity), std::nullopt);
    EXPECT_EQ(ToInteger(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(NumbersTest_CanonicalText, WritesTheShortestDigitsInPlainNotation) {
    EXPECT_EQ(CanonicalText(0), L"0");
    EXPECT_EQ(CanonicalText(-0.0), L"0");
    EXPECT_EQ(CanonicalText(42), L"42");
    EXPECT_EQ(CanonicalText(-1.5), L"-1.5");
    EXPECT_EQ(CanonicalText(0.1), L"0.1");
    EXPECT_EQ(CanonicalText(1e21), L"1000000000000000000000");
    EXPECT_EQ(CanonicalText(1e-7), L"0.0000001");
    EXPECT_EQ(CanonicalText(1234.5625), L"1234.5625");
    EXPECT_EQ(CanonicalText(12345678901234567890.0), L"12345678901234567000");
    EXPECT_EQ(CanonicalText(9007199254740992.0), L"9007199254740992");
    EXPECT_EQ(CanonicalText(-9007199254740994.0), L"-9007199254740994");
}

TEST(NumbersTest_CanonicalText, ReadsBackAsTheSameNumber) {
    for (const double number : {1.0 / 3, 123456789012345680.0, std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()})
        EXPECT_EQ(WholeNumber(CanonicalText(number)), number);
}

TEST(NumbersTest_Increased, AddsOneExactlyToDigitsOfAnyLength) {
    EXPECT_EQ(Increased(L"0"), L"1");
    EXPECT_EQ(Increased(L"000041"), L"42");
    EXPECT_EQ(Increased(L"9"), L"10");
    EXPECT_EQ(Increased(L"0999"), L"1000");
    EXPECT_EQ(Increased(L"0000"), L"1");
    EXPECT_EQ(Increased(L"123456789012345678"), L"123456789012345679");
    EXPECT_EQ(Increased(L"999999999999999999999999"), L"1000000000000000000000000");
}

TEST(NumbersTest_Increased, CountsAnyOtherTextAsItsLeadingNumber) {
    EXPECT_EQ(Increased(L""), L"1");
    EXPECT_EQ(Increased(L"abc"), L"1");
    EXPECT_EQ(Increased(L"12abc"), L"13");
    EXPECT_EQ(Increased(L"-3"), L"-2");
    EXPECT_EQ(Increased(L"1.5"), L"2.5");
    EXPECT_EQ(Increased(L" 7"), L"8");
}

TEST(NumbersTest_NumericallyLess, ComparesDigitsOfAnyLengthExactly) {
    EXPECT_TRUE(NumericallyLess(L"9", L"10"));
    EXPECT_FALSE(NumericallyLess(L"0010", L"9"));
    EXPECT_FALSE(NumericallyLess(L"007", L"7"));
    EXPECT_TRUE(NumericallyLess(L"123456789012345678901", L"123456789012345678902"));
    EXPECT_FALSE(NumericallyLess(L"123456789012345678902", L"123456789012345678901"));
}

TEST(NumbersTest_NumericallyLess, ComparesOtherTextsByTheirLeadingNumbers) {
    EXPECT_TRUE(NumericallyLess(L"", L"1"));
    EXPECT_FALSE(NumericallyLess(L"abc", L""));
    EXPECT_TRUE(NumericallyLess(L"-1", L"0"));
    EXPECT_TRUE(NumericallyLess(L"1.5", L"1.6"));
}

} // namespace kestrel::test
