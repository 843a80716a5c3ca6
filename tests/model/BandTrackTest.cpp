// TrackBands, TrigerBand and Index: how a band refers to the others of its rule.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class BandTrackTest : public testing::Test {
  protected:
    BandTrackTest() {
        AddFixed(*mvarRule, L"Prefix", L"P");
        mvarNumber = AddNumber(*mvarRule, L"Number", 4);
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    Ref<Band> mvarNumber;
};

using BandTrackTest_Track = BandTrackTest;
using BandTrackTest_Trigger = BandTrackTest;
using BandTrackTest_Index = BandTrackTest;

TEST_F(BandTrackTest_Track, BelongsToNumberAndLetterBands) {
    EXPECT_TRUE(mvarNumber->TrackBands());
    EXPECT_EQ(mvarNumber->TrackBands(), mvarNumber->TrackBands());
    EXPECT_TRUE(AddLetter(*mvarRule, L"Letter")->TrackBands());
    EXPECT_FALSE(mvarRule->Band(L"Prefix")->TrackBands());
    EXPECT_FALSE(AddField(*mvarRule, L"Field", L"F", 1)->TrackBands());
    EXPECT_FALSE(AddMacro(*mvarRule, L"Macro", L"M", 1)->TrackBands());
}

TEST_F(BandTrackTest_Track, TakesNamesOfBandsInAnyCaseAsGiven) {
    mvarNumber->TrackBands()->Add(L"PREFIX");
    mvarNumber->TrackBands()->Add(L"Prefix");
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"PREFIX,Prefix");
    EXPECT_FAILURE(mvarNumber->TrackBands()->Add(L"Prefix"), DuplicateKey);
}

TEST_F(BandTrackTest_Track, RefusesTheBandItself) {
    for (const auto* name : {L"Number", L"NUMBER"})
        EXPECT_FAILURE(mvarNumber->TrackBands()->Add(name), AddFailed.Followed(L"No sense to track itself."));
    EXPECT_EQ(mvarNumber->TrackBands()->Count(), 0);
}

TEST_F(BandTrackTest_Track, RefusesNamesThatAreNoBand) {
    for (const auto* name : {L"Other", L"", L" Prefix"})
        EXPECT_FAILURE(mvarNumber->TrackBands()->Add(name), AddFailed.Followed(L"Invalid parametre(s) or value."));
}

TEST_F(BandTrackTest_Track, RefusesEverythingWithoutARule) {
    const auto band = Make<Band>();
    band->SetName(L"Number");
    band->SetStyle(bsIncreaseNumber);
    EXPECT_FAILURE(band->TrackBands()->Add(L"Prefix"), AddFailed.Followed(L"Invalid parametre(s) or value."));
    EXPECT_FAILURE(band->TrackBands()->Add(L"Number"), AddFailed.Followed(L"No sense to track itself."));
}

TEST_F(BandTrackTest_Track, NamesMayOutliveTheBand) {
    auto band = Make<Band>();
    band->SetStyle(bsIncreaseNumber);
    const auto names = band->TrackBands();
    band = nullptr;
    EXPECT_SUCCESS(names->Add(L"anything"));
}

TEST_F(BandTrackTest_Trigger, IsABandOfTheSameRule) {
    EXPECT_FALSE(mvarNumber->TrigerBand());
    mvarNumber->SetTrigerBand(mvarRule->Band(L"Prefix"));
    EXPECT_EQ(mvarNumber->TrigerBand(), mvarRule->Band(L"Prefix"));
    mvarNumber->SetTrigerBand(nullptr);
    EXPECT_FALSE(mvarNumber->TrigerBand());
}

TEST_F(BandTrackTest_Trigger, IsNoneForABandWithoutName) {
    mvarNumber->SetTrigerBand(mvarRule->Band(L"Prefix"));
    mvarNumber->SetTrigerBand(Make<Band>());
    EXPECT_FALSE(mvarNumber->TrigerBand());
}

TEST_F(BandTrackTest_Trigger, IsTheRulesOwnBandOfThatName) {
    const auto twin = Make<Band>();
    twin->SetName(L"Prefix");
    mvarNumber->SetTrigerBand(twin);
    EXPECT_EQ(mvarNumber->TrigerBand(), mvarRule->Band(L"Prefix"));
}

TEST_F(BandTrackTest_Trigger, IsNotTheBandItself) {
    EXPECT_FAILURE(mvarNumber->SetTrigerBand(mvarNumber), TriggersItself);
    const auto twin = Make<Band>();
    twin->SetName(L"Number");
    EXPECT_FAILURE(mvarNumber->SetTrigerBand(twin), TriggersItself);
}

TEST_F(BandTrackTest_Trigger, IsFoundByTheExactName) {
    mvarNumber->SetTrigerBand(mvarRule->Band(L"Prefix"));
    for (const auto* name : {L"prefix", L"NUMBER", L"Other"}) {
        const auto other = Make<Band>();
        other->SetName(name);
        EXPECT_FAILURE(mvarNumber->SetTrigerBand(other), InvalidParameter.WithDetail(L"Trigger Band"));
    }
    EXPECT_EQ(mvarNumber->TrigerBand(), mvarRule->Band(L"Prefix"));
}

TEST_F(BandTrackTest_Trigger, NeedsARule) {
    const auto band = Make<Band>();
    band->SetStyle(bsIncreaseNumber);
    EXPECT_FAILURE(band->SetTrigerBand(mvarNumber), InvalidParameter);
    EXPECT_FAILURE(band->SetTrigerBand(nullptr), InvalidParameter);
}

TEST_F(BandTrackTest_Trigger, MayGoRoundInCircles) {
    const auto other = AddNumber(*mvarRule, L"Other", 2);
    EXPECT_SUCCESS(mvarNumber->SetTrigerBand(other));
    EXPECT_SUCCESS(other->SetTrigerBand(mvarNumber));
    mvarRule = nullptr; // neither keeps the other alive
    EXPECT_EQ(mvarNumber->TrigerBand(), other);
}

TEST_F(BandTrackTest_Index, IsThePositionInTheRule) {
    EXPECT_EQ(mvarRule->Band(L"Prefix")->Index(), 1);
    EXPECT_EQ(mvarNumber->Index(), 2);
    mvarRule->Drag(L"Number", 1, {});
    EXPECT_EQ(mvarNumber->Index(), 1);
}

TEST_F(BandTrackTest_Index, IsNoneOutsideOfARule) {
    EXPECT_EQ(Make<Band>()->Index(), -1);
    mvarRule->Remove(L"Number");
    EXPECT_EQ(mvarNumber->Index(), -1);
    EXPECT_EQ(mvarNumber->ParentRule(), mvarRule);
}

TEST_F(BandTrackTest_Index, IsNoneWhenTheRuleHasEnded) {
    mvarRule = nullptr;
    EXPECT_EQ(mvarNumber->Index(), -1);
    EXPECT_FALSE(mvarNumber->ParentRule());
    EXPECT_FALSE(mvarNumber->DataFields());
    EXPECT_FAILURE(mvarNumber->SetTrigerBand(nullptr), InvalidParameter);
    EXPECT_SUCCESS(mvarNumber->SetValue(L"7"));
    EXPECT_EQ(mvarNumber->Value(), L"0007");
}

} // namespace kestrel::test
