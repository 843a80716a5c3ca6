// Style, Name, Length, Formate and what needs no style: the order in which a band is built.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

Ref<Band> BandOf(int style) {
    auto band = Make<Band>();
    band->SetStyle(style);
    return band;
}

} // namespace

class BandStyleTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<Band> mvarBand = Make<Band>();
};

using BandStyleTest_Name = BandStyleTest;
using BandStyleTest_Length = BandStyleTest;
using BandStyleTest_Formate = BandStyleTest;

TEST_F(BandStyleTest, StartsWithoutStyle) {
    EXPECT_EQ(mvarBand->Style(), bsUndefined);
    EXPECT_EQ(mvarBand->Name(), L"");
    EXPECT_EQ(mvarBand->Length(), 1);
    EXPECT_EQ(mvarBand->Value(), L"");
    EXPECT_EQ(mvarBand->Formate(), L"");
    EXPECT_EQ(mvarBand->Default(), L"");
    EXPECT_EQ(mvarBand->DateUpdated(), 0);
    EXPECT_EQ(mvarBand->SwapMode(), smNoneSwap);
    EXPECT_EQ(mvarBand->IncrMode(), imNever);
    EXPECT_EQ(mvarBand->InitStart(), L"");
    EXPECT_EQ(mvarBand->InitEnd(), L"");
    EXPECT_FALSE(mvarBand->DataField());
    EXPECT_FALSE(mvarBand->DataFields());
    EXPECT_FALSE(mvarBand->TrigerBand());
    EXPECT_FALSE(mvarBand->TrackBands());
    EXPECT_FALSE(mvarBand->Relations());
    EXPECT_TRUE(mvarBand->AllowDroped());
    EXPECT_TRUE(mvarBand->AllowModified());
    EXPECT_EQ(mvarBand->Index(), -1);
}

TEST_F(BandStyleTest, EverySetterThatDependsOnTheStyleNeedsOne) {
    EXPECT_FAILURE(mvarBand->SetFormate(L"0"), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetLength(3), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetLength(-3), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetDefault(L"x"), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetInitStart(L"1"), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetInitEnd(L"1"), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetIncrMode(imIncrAuto), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetIncrMode(99), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetSwapMode(smSimpleSwap), StyleNotDefined);
    EXPECT_FAILURE(mvarBand->SetValue(L"x"), StyleNotDefined);
}

TEST_F(BandStyleTest, OtherPropertiesNeedNoStyle) {
    EXPECT_SUCCESS(mvarBand->SetName(L"Year"));
    EXPECT_SUCCESS(mvarBand->SetDateUpdated(45418.5));
    EXPECT_SUCCESS(mvarBand->SetAllowDroped(false));
    EXPECT_SUCCESS(mvarBand->SetAllowModified(false));
    EXPECT_EQ(mvarBand->DateUpdated(), 45418.5);
    EXPECT_FALSE(mvarBand->AllowDroped());
    EXPECT_FALSE(mvarBand->AllowModified());
}

TEST_F(BandStyleTest, IsOneOfTheFive) {
    for (const int style : {-2, -1, 5, 99})
        EXPECT_FAILURE(mvarBand->SetStyle(style), InvalidCall) << style;
    EXPECT_EQ(mvarBand->Style(), bsUndefined);
    for (int style = bsFixed; style < bsUbound; ++style)
        EXPECT_EQ(BandOf(style)->Style(), style);
}

TEST_F(BandStyleTest, IsSetOnce) {
    mvarBand->SetStyle(bsFixed);
    EXPECT_FAILURE(mvarBand->SetStyle(bsUsrField), CantBeChanged);
    EXPECT_FAILURE(mvarBand->SetStyle(bsFixed), CantBeChanged);
    EXPECT_FAILURE(mvarBand->SetStyle(99), CantBeChanged);
    EXPECT_EQ(mvarBand->Style(), bsFixed);
}

TEST_F(BandStyleTest, OfANumberStartsItsRangeAtOne) {
    const auto band = BandOf(bsIncreaseNumber);
    EXPECT_EQ(band->IncrMode(), imIncrAuto);
    EXPECT_EQ(band->InitStart(), L"1");
    EXPECT_EQ(band->InitEnd(), L"");
}

TEST_F(BandStyleTest, OfALetterSpansTheAlphabet) {
    const auto band = BandOf(bsIncreaseAlpha);
    EXPECT_EQ(band->IncrMode(), imIncrAuto);
    EXPECT_EQ(band->InitStart(), L"A");
    EXPECT_EQ(band->InitEnd(), L"Z");
}

TEST_F(BandStyleTest, OfOtherBandsLeavesTheModeAlone) {
    for (const int style : {bsFixed, bsUsrMacro, bsUsrField})
        EXPECT_EQ(BandOf(style)->IncrMode(), imNever) << style;
}

TEST_F(BandStyleTest_Name, IsStoredWithoutBlanksOnce) {
    mvarBand->SetName(L"  A ");
    EXPECT_EQ(mvarBand->Name(), L"A");
    EXPECT_FAILURE(mvarBand->SetName(L"B"), ReadOnly);
    EXPECT_FAILURE(mvarBand->SetName(L"A"), ReadOnly);
    EXPECT_FAILURE(mvarBand->SetName(L""), ReadOnly);
    EXPECT_EQ(mvarBand->Name(), L"A");
}

TEST_F(BandStyleTest_Name, MustNotBeEmpty) {
    EXPECT_FAILURE(mvarBand->SetName(L""), InvalidParameter);
    EXPECT_FAILURE(mvarBand->SetName(L"   "), InvalidParameter);
    EXPECT_SUCCESS(mvarBand->SetName(L"A"));
}

TEST_F(BandStyleTest_Length, IsPositive) {
    for (const int style : {bsUsrMacro, bsUsrField, bsIncreaseNumber}) {
        const auto band = BandOf(style);
        band->SetLength(7);
        EXPECT_EQ(band->Length(), 7);
        for (const int length : {0, -1, std::numeric_limits<int>::min()})
            EXPECT_FAILURE(band->SetLength(length), InvalidParameter.WithDetail(L"Length")) << length;
        EXPECT_EQ(band->Length(), 7);
    }
}

TEST_F(BandStyleTest_Length, IsReadOnlyForFixedAndLetterBands) {
    for (const int style : {bsFixed, bsIncreaseAlpha}) {
        const auto band = BandOf(style);
        EXPECT_FAILURE(band->SetLength(3), ReadOnly) << style;
        EXPECT_FAILURE(band->SetLength(-3), ReadOnly) << style;
        EXPECT_EQ(band->Length(), 1);
    }
}

TEST_F(BandStyleTest_Formate, TakesAnyTextWhereItApplies) {
    for (const int style : {bsUsrMacro, bsUsrField, bsIncreaseNumber}) {
        const auto band = BandOf(style);
        for (const auto* format : {L"0000", L"", L"no format at all", L" > "}) {
            band->SetFormate(format);
            EXPECT_EQ(band->Formate(), format);
        }
    }
    for (const int style : {bsFixed, bsIncreaseAlpha})
        EXPECT_FAILURE(BandOf(style)->SetFormate(L"0"), ReadOnly) << style;
}

} // namespace kestrel::test
