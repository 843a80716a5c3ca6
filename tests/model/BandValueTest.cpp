#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class BandValueTest : public testing::Test {
  protected:
    [[nodiscard]] static Ref<Band> BandOf(int style, std::int32_t length = 1, const wchar_t* format = L"") {
        auto band = Make<Band>();
        band->SetName(L"Part");
        band->SetStyle(style);
        if (length != 1) band->SetLength(length);
        if (*format != L'\0') band->SetFormate(format);
        return band;
    }

    StandIns mvarStandIns;
};

TEST_F(BandValueTest, OfAFixedBandIsItsDefault) {
    const auto band = BandOf(bsFixed);
    band->SetDefault(L"PO");
    EXPECT_EQ(band->Value(), L"PO");
    EXPECT_FAILURE(band->SetValue(L"XX"), ReadOnly);
    EXPECT_FAILURE(band->SetValue(L"PO"), ReadOnly);
}

TEST_F(BandValueTest, OfABoundBandHasItsLength) {
    for (const int style : {bsUsrMacro, bsUsrField}) {
        const auto band = BandOf(style, 3);
        band->SetValue(L"a b");
        EXPECT_EQ(band->Value(), L"a b");
        for (const auto* value : {L"", L"ab", L"abcd"})
            EXPECT_FAILURE(band->SetValue(value), IncorrectValueLength.WithDetail(L"Part"));
        EXPECT_EQ(band->Value(), L"a b");
    }
}

TEST_F(BandValueTest, OfABoundBandIsFormattedFirst) {
    const auto band = BandOf(bsUsrMacro, 4, L"yymm");
    band->SetValue(L"2024-05-06");
    EXPECT_EQ(band->Value(), L"2405");
    const auto upper = BandOf(bsUsrField, 3, L">");
    upper->SetValue(L"abc");
    EXPECT_EQ(upper->Value(), L"ABC");
    EXPECT_FAILURE(upper->SetValue(L"abcd"), IncorrectValueLength.WithDetail(L"Part"));
}

TEST_F(BandValueTest, StaysAsItIsWhereTheFormatCannotBeApplied) {
    const auto band = BandOf(bsUsrField, 3, L"0000");
    band->SetValue(L"abc");
    EXPECT_EQ(band->Value(), L"abc");
}

TEST_F(BandValueTest, OfANumberIsNumericAndHasItsLength) {
    const auto band = BandOf(bsIncreaseNumber, 3);
    band->SetValue(L"042");
    EXPECT_EQ(band->Value(), L"042");
    EXPECT_FAILURE(band->SetValue(L"abc"), InvalidParameter);
    EXPECT_FAILURE(band->SetValue(L""), InvalidParameter);
    EXPECT_FAILURE(band->SetValue(L"42"), IncorrectValueLength.WithDetail(L"Part"));
    EXPECT_FAILURE(band->SetValue(L"1042"), IncorrectValueLength.WithDetail(L"Part"));
    EXPECT_EQ(band->Value(), L"042");
}

TEST_F(BandValueTest, OfANumberIsFormattedToItsLength) {
    const auto band = BandOf(bsIncreaseNumber, 4, L"0000");
    band->SetValue(L"7");
    EXPECT_EQ(band->Value(), L"0007");
    EXPECT_FAILURE(band->SetValue(L"10000"), IncorrectValueLength.WithDetail(L"Part"));
    EXPECT_FAILURE(band->SetValue(L"x"), InvalidParameter);
    EXPECT_EQ(band->Value(), L"0007");
}

TEST_F(BandValueTest, OfANumberKeepsDigitsBeyondADouble) {
    const auto band = BandOf(bsIncreaseNumber, 20);
    band->SetValue(L"12345678901234567891");
    EXPECT_EQ(band->Value(), L"12345678901234567891");
}

TEST_F(BandValueTest, OfALetterBandIsALetterOfItsRange) {
    const auto band = BandOf(bsIncreaseAlpha);
    band->SetInitStart(L"C");
    band->SetInitEnd(L"K");
    band->SetValue(L"d");
    EXPECT_EQ(band->Value(), L"D");
    for (const auto* value : {L"C", L"K"})
        EXPECT_SUCCESS(band->SetValue(value));
    for (const auto* value : {L"B", L"L", L"b", L"", L"DD", L"1", L"[", L"{"})
        EXPECT_FAILURE(band->SetValue(value), InvalidParameter) << testing::PrintToString(String(value));
    EXPECT_EQ(band->Value(), L"K");
}

TEST_F(BandValueTest, NamesTheBandInTheFailureAfterTwoLineBreaks) {
    const auto band = BandOf(bsUsrField, 2);
    EXPECT_FAILURE(band->SetValue(L"x"), (Failure{0x800407F4, L"Incorrect length of band value.\r\n\r\nPart"}));
}

TEST_F(BandValueTest, TakesAMillionCharacters) {
    const auto band = BandOf(bsUsrField, 1'000'000);
    const String longText(1'000'000, L'x');
    band->SetValue(longText);
    EXPECT_EQ(band->Value(), longText);
    EXPECT_FAILURE(band->SetValue(longText + L"x"), IncorrectValueLength.WithDetail(L"Part"));
}

} // namespace kestrel::test
