// Default, InitStart, InitEnd and IncrMode: what a band may begin with and the range it moves in.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class BandDefaultTest : public testing::Test {
  protected:
    [[nodiscard]] static Ref<Band> BandOf(int style) {
        auto band = Make<Band>();
        band->SetStyle(style);
        return band;
    }

    StandIns mvarStandIns;
    Ref<Band> mvarNumber = BandOf(bsIncreaseNumber);
    Ref<Band> mvarLetter = BandOf(bsIncreaseAlpha);
    Ref<Band> mvarFixed = BandOf(bsFixed);
};

using BandDefaultTest_InitStart = BandDefaultTest;
using BandDefaultTest_InitEnd = BandDefaultTest;
using BandDefaultTest_IncrMode = BandDefaultTest;

TEST_F(BandDefaultTest, OfAFixedBandIsAnyTextAndGivesItsLength) {
    mvarFixed->SetDefault(L"PO-");
    EXPECT_EQ(mvarFixed->Default(), L"PO-");
    EXPECT_EQ(mvarFixed->Value(), L"PO-");
    EXPECT_EQ(mvarFixed->Length(), 3);
    mvarFixed->SetDefault(L" ");
    EXPECT_EQ(mvarFixed->Length(), 1);
    mvarFixed->SetDefault(L"");
    EXPECT_EQ(mvarFixed->Length(), 0);
}

TEST_F(BandDefaultTest, OfAFixedBandThatIsTheSameChangesNothing) {
    mvarFixed->SetDefault(L"");
    EXPECT_EQ(mvarFixed->Length(), 1);
}

TEST_F(BandDefaultTest, OfBoundBandsIsReadOnly) {
    EXPECT_FAILURE(BandOf(bsUsrMacro)->SetDefault(L"x"), ReadOnly);
    EXPECT_FAILURE(BandOf(bsUsrField)->SetDefault(L""), ReadOnly);
}

TEST_F(BandDefaultTest, OfANumberIsStoredInCanonicalForm) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"0012", L"12"},  {L"007", L"7"},      {L" 12", L"12"},
                                                               {L"1e3", L"1000"}, {L"-5.50", L"-5.5"}, {L"0", L"0"}};
    for (const auto& [given, stored] : cases) {
        mvarNumber->SetDefault(given);
        EXPECT_EQ(mvarNumber->Default(), stored) << testing::PrintToString(String(given));
    }
    EXPECT_EQ(mvarNumber->Length(), 1);
}

TEST_F(BandDefaultTest, OfANumberMustBeNumeric) {
    mvarNumber->SetDefault(L"5");
    for (const auto* text : {L"", L"x", L"5x", L"-", L"1 2"})
        EXPECT_FAILURE(mvarNumber->SetDefault(text), InvalidParameter) << testing::PrintToString(String(text));
    EXPECT_EQ(mvarNumber->Default(), L"5");
}

TEST_F(BandDefaultTest, OfANumberThatWasNeverSetStaysEmptyOnEmpty) {
    EXPECT_SUCCESS(mvarNumber->SetDefault(L""));
    EXPECT_EQ(mvarNumber->Default(), L"");
}

TEST_F(BandDefaultTest, OfALetterBandIsOneLetterInUpperCase) {
    mvarLetter->SetDefault(L"b");
    EXPECT_EQ(mvarLetter->Default(), L"B");
    mvarLetter->SetDefault(L"Z");
    EXPECT_EQ(mvarLetter->Default(), L"Z");
    mvarLetter->SetDefault(L"z");
    EXPECT_EQ(mvarLetter->Default(), L"Z");
    for (const auto* text : {L"", L"AB", L"ab", L"1", L"[", L"@", L"\u00c4", L" "})
        EXPECT_FAILURE(mvarLetter->SetDefault(text), InvalidParameter) << testing::PrintToString(String(text));
    EXPECT_EQ(mvarLetter->Default(), L"Z");
    EXPECT_EQ(mvarLetter->Length(), 1);
}

TEST_F(BandDefaultTest_InitStart, OfANumberIsStoredInCanonicalForm) {
    mvarNumber->SetInitStart(L"0012");
    EXPECT_EQ(mvarNumber->InitStart(), L"12");
    EXPECT_FAILURE(mvarNumber->SetInitStart(L"x"), InvalidParameter);
    EXPECT_FAILURE(mvarNumber->SetInitStart(L""), InvalidParameter);
    EXPECT_SUCCESS(mvarNumber->SetInitStart(L"12"));
    EXPECT_EQ(mvarNumber->InitStart(), L"12");
}

TEST_F(BandDefaultTest_InitStart, OfALetterBandFollowsTheRulesOfItsDefault) {
    mvarLetter->SetInitStart(L"c");
    EXPECT_EQ(mvarLetter->InitStart(), L"C");
    for (const auto* text : {L"", L"CC", L"7"})
        EXPECT_FAILURE(mvarLetter->SetInitStart(text), InvalidParameter) << testing::PrintToString(String(text));
    EXPECT_EQ(mvarLetter->InitStart(), L"C");
}

TEST_F(BandDefaultTest_InitStart, OfOtherBandsIsReadOnly) {
    for (const int style : {bsFixed, bsUsrMacro, bsUsrField})
        EXPECT_FAILURE(BandOf(style)->SetInitStart(L"1"), ReadOnly) << style;
}

TEST_F(BandDefaultTest_InitEnd, OfANumberIsKeptAsGiven) {
    mvarNumber->SetInitEnd(L"0012");
    EXPECT_EQ(mvarNumber->InitEnd(), L"0012");
    EXPECT_FAILURE(mvarNumber->SetInitEnd(L"x"), InvalidParameter);
    EXPECT_EQ(mvarNumber->InitEnd(), L"0012");
    EXPECT_SUCCESS(mvarNumber->SetInitEnd(L""));
    EXPECT_EQ(mvarNumber->InitEnd(), L"");
}

TEST_F(BandDefaultTest_InitEnd, OfALetterBandMustNotBeEmpty) {
    mvarLetter->SetInitEnd(L"k");
    EXPECT_EQ(mvarLetter->InitEnd(), L"K");
    EXPECT_FAILURE(mvarLetter->SetInitEnd(L""), InvalidParameter);
    EXPECT_FAILURE(mvarLetter->SetInitEnd(L"KK"), InvalidParameter);
    EXPECT_EQ(mvarLetter->InitEnd(), L"K");
}

TEST_F(BandDefaultTest_InitEnd, OfOtherBandsIsReadOnly) {
    for (const int style : {bsFixed, bsUsrMacro, bsUsrField})
        EXPECT_FAILURE(BandOf(style)->SetInitEnd(L"1"), ReadOnly) << style;
}

TEST_F(BandDefaultTest_IncrMode, IsAutomaticOrTriggered) {
    mvarNumber->SetIncrMode(imTrigered);
    EXPECT_EQ(mvarNumber->IncrMode(), imTrigered);
    for (const int mode : {-1, 0, 3, 99})
        EXPECT_FAILURE(mvarNumber->SetIncrMode(mode), InvalidCall) << mode;
    EXPECT_EQ(mvarNumber->IncrMode(), imTrigered);
}

TEST_F(BandDefaultTest_IncrMode, OfOtherBandsIsReadOnly) {
    for (const int style : {bsFixed, bsUsrMacro, bsUsrField}) {
        EXPECT_FAILURE(BandOf(style)->SetIncrMode(imIncrAuto), ReadOnly) << style;
        EXPECT_FAILURE(BandOf(style)->SetIncrMode(99), ReadOnly) << style;
    }
}

TEST_F(BandDefaultTest_IncrMode, KeepsARangeThatFitsTheStyle) {
    mvarNumber->SetInitStart(L"5");
    mvarNumber->SetInitEnd(L"0099");
    mvarNumber->SetIncrMode(imTrigered);
    EXPECT_EQ(mvarNumber->InitStart(), L"5");
    EXPECT_EQ(mvarNumber->InitEnd(), L"0099");
    mvarLetter->SetInitStart(L"C");
    mvarLetter->SetInitEnd(L"K");
    mvarLetter->SetIncrMode(imTrigered);
    EXPECT_EQ(mvarLetter->InitStart(), L"C");
    EXPECT_EQ(mvarLetter->InitEnd(), L"K");
}

TEST_F(BandDefaultTest_IncrMode, ClearsTheTriggerBandOnlyWhenItChanges) {
    const auto rule = Make<CodeClass>();
    AddFixed(*rule, L"Prefix", L"P");
    const auto number = AddNumber(*rule, L"Number", 4);
    number->SetTrigerBand(rule->Band(L"Prefix"));
    number->SetIncrMode(imIncrAuto);
    EXPECT_EQ(number->TrigerBand(), rule->Band(L"Prefix"));
    number->SetIncrMode(imTrigered);
    EXPECT_FALSE(number->TrigerBand());
    number->SetTrigerBand(rule->Band(L"Prefix"));
    EXPECT_FAILURE(number->SetIncrMode(imNever), InvalidCall);
    EXPECT_TRUE(number->TrigerBand());
    number->SetIncrMode(imIncrAuto);
    EXPECT_FALSE(number->TrigerBand());
}

} // namespace kestrel::test
