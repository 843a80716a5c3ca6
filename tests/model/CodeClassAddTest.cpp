#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class CodeClassAddTest : public testing::Test {
  protected:
    void AddAll(std::initializer_list<const wchar_t*> names) {
        for (const auto* name : names)
            AddFixed(*mvarRule, name, name);
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

using CodeClassAddTest_Place = CodeClassAddTest;
using CodeClassAddTest_Append = CodeClassAddTest;

TEST_F(CodeClassAddTest, MakesAFixedBandWhenNoStyleIsGiven) {
    const auto band = mvarRule->Add({.name = L"  Prefix ", .defaultValue = L"PO"});
    EXPECT_EQ(band->Style(), bsFixed);
    EXPECT_EQ(band->Name(), L"Prefix");
    EXPECT_EQ(band->Length(), 2);
    EXPECT_EQ(mvarRule->Band(1), band);
    EXPECT_EQ(mvarRule->Band(L"PREFIX"), band);
    EXPECT_EQ(band->ParentRule().Get(), mvarRule.Get());
}

TEST_F(CodeClassAddTest, RaisesBandsChangedOnce) {
    const RuleRecorder events(*mvarRule);
    AddFixed(*mvarRule, L"A", L"x");
    EXPECT_EQ(events.lines, (Lines{L"bands"}));
}

TEST_F(CodeClassAddTest, GivesTheBandEverythingAskedFor) {
    const auto item = mvarRule->UsrFields().Add(L"F");
    const auto band = mvarRule->Add({.name = L"Field",
                                     .style = bsUsrField,
                                     .swapMode = smSimpleSwap,
                                     .dataField = item,
                                     .length = 5,
                                     .formate = L">"});
    EXPECT_EQ(band->SwapMode(), smSimpleSwap);
    EXPECT_EQ(band->DataField(), item);
    EXPECT_EQ(band->Length(), 5);
    EXPECT_EQ(band->Formate(), L">");
}

TEST_F(CodeClassAddTest, SetsOnlyWhatDiffersFromTheNewBand) {
    // As copied from another fixed band: its style alone would refuse a conversion, a length or a format.
    EXPECT_SUCCESS(mvarRule->Add({.name = L"Copy",
                                  .style = bsFixed,
                                  .swapMode = smNoneSwap,
                                  .defaultValue = L"abc",
                                  .length = 3,
                                  .formate = L""}));
    EXPECT_FAILURE(mvarRule->Add({.name = L"X", .defaultValue = L"abc", .length = 4}), ReadOnly);
    EXPECT_FAILURE(mvarRule->Add({.name = L"X", .swapMode = smSimpleSwap, .defaultValue = L"abc"}), ReadOnly);
    EXPECT_FAILURE(mvarRule->Add({.name = L"X", .defaultValue = L"abc", .formate = L">"}), ReadOnly);
    EXPECT_EQ(BandsOf(*mvarRule), L"Copy");
}

TEST_F(CodeClassAddTest, RefusesBothPlacesBeforeAnythingElse) {
    AddAll({L"A"});
    EXPECT_FAILURE(mvarRule->Add({.name = L"B", .defaultValue = L"x", .before = L"A", .after = L"A"}),
                   InvalidParameter);
    EXPECT_FAILURE(mvarRule->Add({.name = L"", .style = 99, .before = 1, .after = 1}), InvalidParameter);
    EXPECT_EQ(mvarRule->Count(), 1);
}

TEST_F(CodeClassAddTest, RefusesAnEmptyName) {
    EXPECT_FAILURE(mvarRule->Add({.name = L"", .defaultValue = L"x"}), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Add({.name = L"   ", .style = 99, .defaultValue = L"x"}), InvalidParameter);
}

TEST_F(CodeClassAddTest, RefusesAnUnknownStyle) {
    for (const int style : {-1, 5})
        EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = style, .defaultValue = L"x"}), InvalidCall) << style;
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(CodeClassAddTest, NeedsAFieldForBoundBandsAndADefaultForTheOthers) {
    for (const int style : {bsUsrMacro, bsUsrField})
        EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = style}), InvalidParameter) << style;
    for (const int style : {bsFixed, bsIncreaseNumber, bsIncreaseAlpha}) {
        EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = style}), InvalidParameter) << style;
        EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = style, .defaultValue = L""}), InvalidParameter) << style;
    }
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(CodeClassAddTest, RefusesADefaultThatTheBandRefuses) {
    EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = bsIncreaseNumber, .defaultValue = L"x"}), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = bsIncreaseAlpha, .defaultValue = L"AA"}), InvalidParameter);
    const auto item = mvarRule->UsrFields().Add(L"F");
    EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = bsUsrField, .defaultValue = L"x", .dataField = item}),
                   ReadOnly);
    EXPECT_SUCCESS(mvarRule->Add({.name = L"A", .style = bsUsrField, .defaultValue = L"", .dataField = item}));
}

TEST_F(CodeClassAddTest, RefusesAFieldThatIsNotOfTheRuleOrNotOfTheStyle) {
    const auto foreign = Make<List>();
    foreign->SetName(L"F");
    EXPECT_FAILURE(mvarRule->Add({.name = L"A", .style = bsUsrField, .dataField = foreign}),
                   InvalidParameter.WithDetail(L"Field/Macro"));
    EXPECT_FAILURE(mvarRule->Add({.name = L"A", .defaultValue = L"x", .dataField = foreign}), ReadOnly);
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(CodeClassAddTest, RefusesANameAlreadyUsedInAnyCase) {
    AddAll({L"Year"});
    const RuleRecorder events(*mvarRule);
    for (const auto* name : {L"Year", L"YEAR", L" year "})
        EXPECT_FAILURE(AddFixed(*mvarRule, name, L"x"), BandNameExists);
    EXPECT_EQ(mvarRule->Count(), 1);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(CodeClassAddTest, LeavesARefusedBandOutsideOfTheRule) {
    AddAll({L"A"});
    const auto band = Make<Band>();
    band->SetName(L"a");
    EXPECT_FAILURE(mvarRule->AppendBand(band), BandNameExists);
    EXPECT_FALSE(band->ParentRule());
}

TEST_F(CodeClassAddTest, PutsALayerStyleBandIntoTheLayersAfterBandsChanged) {
    const auto item = mvarRule->UsrFields().Add(L"F");
    const RuleRecorder events(*mvarRule);
    mvarRule->Add({.name = L"Region", .style = bsUsrField, .swapMode = smLayersSwap, .dataField = item});
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"Region");
    EXPECT_EQ(events.lines, (Lines{L"bands", L"layers"}));
}

TEST_F(CodeClassAddTest, KeepsTheBandWhenItsLayerIsRefused) {
    const auto veto = mvarRule->LayeredBands().BeforeAdd.Subscribe(
        [](const String&, bool& cancel, const String&, std::int32_t) { cancel = true; });
    EXPECT_SUCCESS(AddField(*mvarRule, L"Region", L"F", 1, smLayersSwap));
    EXPECT_EQ(BandsOf(*mvarRule), L"Region");
    EXPECT_EQ(mvarRule->LayeredBands().Count(), 0);
}

TEST_F(CodeClassAddTest_Place, IsBeforeOrAfterABandByNameOrPosition) {
    AddAll({L"A", L"B"});
    mvarRule->Add({.name = L"C", .defaultValue = L"x", .before = L"a"});
    mvarRule->Add({.name = L"D", .defaultValue = L"x", .after = L"A"});
    mvarRule->Add({.name = L"E", .defaultValue = L"x", .before = 2});
    mvarRule->Add({.name = L"F", .defaultValue = L"x", .after = 5});
    EXPECT_EQ(BandsOf(*mvarRule), L"C E A D B F");
}

TEST_F(CodeClassAddTest_Place, ThatIsUnknownIsNamedInTheFailure) {
    AddAll({L"A"});
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->Add({.name = L"B", .defaultValue = L"x", .before = L"Nope"}),
                   IncorrectReferBand.WithDetail(L"Nope"));
    EXPECT_FAILURE(mvarRule->Add({.name = L"B", .defaultValue = L"x", .after = 2}),
                   IncorrectReferBand.WithDetail(L"2"));
    EXPECT_FAILURE(mvarRule->Add({.name = L"B", .defaultValue = L"x", .after = L""}),
                   IncorrectReferBand.WithDetail(L""));
    EXPECT_EQ(BandsOf(*mvarRule), L"A");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(CodeClassAddTest_Append, RefusesNoBandAndABandWithoutName) {
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->AppendBand(nullptr), InvalidParameter);
    EXPECT_FAILURE(mvarRule->AppendBand(Make<Band>()), InvalidParameter);
    EXPECT_EQ(mvarRule->Count(), 0);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(CodeClassAddTest_Append, FindsBandsByNameAndPosition) {
    AddAll({L"A", L"B"});
    EXPECT_EQ(mvarRule->Band(2)->Name(), L"B");
    EXPECT_EQ(mvarRule->Band(L"b")->Name(), L"B");
    for (const int position : {0, -1, 3})
        EXPECT_FAILURE(mvarRule->Band(position), OutOfRange) << position;
    EXPECT_FAILURE(mvarRule->Band(L"C"), InvalidCall);
    EXPECT_FAILURE(mvarRule->Band(IndexKey()), InvalidCall);
    EXPECT_FALSE(mvarRule->FindBand(L"C"));
    EXPECT_EQ(mvarRule->FindBand(L"a"), mvarRule->Band(1));
}

} // namespace kestrel::test
