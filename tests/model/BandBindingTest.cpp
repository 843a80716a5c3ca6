// SwapMode, Relations, DataFields, DataField and the rule's UsedFields: where a band's value comes from.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class BandBindingTest : public testing::Test {
  protected:
    [[nodiscard]] static Ref<Band> BandOf(int style) {
        auto band = Make<Band>();
        band->SetStyle(style);
        return band;
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

using BandBindingTest_SwapMode = BandBindingTest;
using BandBindingTest_Relations = BandBindingTest;
using BandBindingTest_DataField = BandBindingTest;
using BandBindingTest_UsedFields = BandBindingTest;

TEST_F(BandBindingTest_SwapMode, BelongsToMacroAndFieldBands) {
    for (const int style : {bsUsrMacro, bsUsrField}) {
        const auto band = BandOf(style);
        for (const int mode : {smSimpleSwap, smLayersSwap, smNoneSwap}) {
            band->SetSwapMode(mode);
            EXPECT_EQ(band->SwapMode(), mode);
        }
        for (const int mode : {-1, 3, 99})
            EXPECT_FAILURE(band->SetSwapMode(mode), InvalidCall) << mode;
    }
    for (const int style : {bsFixed, bsIncreaseNumber, bsIncreaseAlpha}) {
        EXPECT_FAILURE(BandOf(style)->SetSwapMode(smNoneSwap), ReadOnly) << style;
        EXPECT_FAILURE(BandOf(style)->SetSwapMode(99), ReadOnly) << style;
    }
}

TEST_F(BandBindingTest_SwapMode, EntersAndLeavesTheLayersOfTheRule) {
    const auto band = AddField(*mvarRule, L"Region", L"F", 2);
    const RuleRecorder events(*mvarRule);
    band->SetSwapMode(smLayersSwap);
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"Region");
    band->SetSwapMode(smLayersSwap);
    band->SetSwapMode(smSimpleSwap);
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"");
    band->SetSwapMode(smNoneSwap);
    EXPECT_EQ(events.lines, (Lines{L"layers", L"layers"}));
}

TEST_F(BandBindingTest_SwapMode, IsStoredBeforeTheLayersRefuse) {
    const auto band = AddField(*mvarRule, L"Region", L"F", 2);
    const auto veto = mvarRule->LayeredBands().BeforeAdd.Subscribe(
        [](const String&, bool& cancel, String& description, std::int32_t) {
            cancel = true;
            description = L"No more layers.";
        });
    EXPECT_FAILURE(band->SetSwapMode(smLayersSwap), AddFailed.Followed(L"No more layers."));
    EXPECT_EQ(band->SwapMode(), smLayersSwap);
    EXPECT_FAILURE(band->SetSwapMode(smNoneSwap), InvalidCall); // the layer that is to go is not there
    EXPECT_EQ(band->SwapMode(), smNoneSwap);
}

TEST_F(BandBindingTest_Relations, OfASimpleConversionAreTheBandsOwnInOneLayer) {
    const auto band = BandOf(bsUsrField);
    EXPECT_FALSE(band->Relations());
    band->SetSwapMode(smSimpleSwap);
    const auto tree = band->Relations();
    ASSERT_TRUE(tree);
    EXPECT_EQ(tree->Style(), tsSimplified);
    EXPECT_EQ(band->Relations(), tree);
}

TEST_F(BandBindingTest_Relations, AreDroppedWhenReadWithoutConversion) {
    const auto band = BandOf(bsUsrField);
    band->SetSwapMode(smSimpleSwap);
    band->Relations()->Add({}, tvwFirst, L"a", L"A");
    band->SetSwapMode(smNoneSwap);
    EXPECT_FALSE(band->Relations());
    band->SetSwapMode(smSimpleSwap);
    EXPECT_EQ(band->Relations()->Count(), 0);
}

TEST_F(BandBindingTest_Relations, OfALayerStyleConversionAreTheRules) {
    const auto band = AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    EXPECT_EQ(band->Relations().Get(), &mvarRule->Relations());
    EXPECT_EQ(band->Relations()->Style(), tsNormal);
    band->SetSwapMode(smSimpleSwap);
    EXPECT_NE(band->Relations().Get(), &mvarRule->Relations());
    EXPECT_EQ(band->Relations()->Style(), tsSimplified);
}

TEST_F(BandBindingTest_Relations, OfASimpleConversionOutlastALayerStyleInWhichNobodyReadThem) {
    const auto band = AddField(*mvarRule, L"Region", L"F", 2, smSimpleSwap);
    const auto tree = band->Relations();
    band->SetSwapMode(smLayersSwap);
    band->SetSwapMode(smSimpleSwap);
    EXPECT_EQ(band->Relations(), tree);
}

TEST_F(BandBindingTest_Relations, OfALayerStyleConversionNeedARule) {
    const auto band = BandOf(bsUsrField);
    band->SetSwapMode(smLayersSwap);
    EXPECT_FALSE(band->Relations());
}

TEST_F(BandBindingTest_Relations, OfOtherBandsAreNone) {
    for (const int style : {bsFixed, bsIncreaseNumber, bsIncreaseAlpha})
        EXPECT_FALSE(BandOf(style)->Relations()) << style;
}

TEST_F(BandBindingTest_DataField, ComesFromTheRulesFieldsOrMacros) {
    const auto field = AddField(*mvarRule, L"Customer", L"F", 2);
    const auto macro = AddMacro(*mvarRule, L"Year", L"M", 2);
    EXPECT_EQ(field->DataFields().Get(), &mvarRule->UsrFields());
    EXPECT_EQ(macro->DataFields().Get(), &mvarRule->UsrMacros());
    EXPECT_EQ(field->DataField(), mvarRule->UsrFields().Item(L"F"));
    EXPECT_EQ(macro->DataField(), mvarRule->UsrMacros().Item(L"M"));
}

TEST_F(BandBindingTest_DataField, IsAnEmptyItemUntilOneIsSet) {
    const auto band = BandOf(bsUsrField);
    const auto item = band->DataField();
    ASSERT_TRUE(item);
    EXPECT_EQ(item->Name(), L"");
    EXPECT_EQ(band->DataField(), item);
    EXPECT_FALSE(BandOf(bsUsrMacro)->BoundField());
    for (const int style : {bsFixed, bsIncreaseNumber, bsIncreaseAlpha})
        EXPECT_FALSE(BandOf(style)->DataField()) << style;
}

TEST_F(BandBindingTest_DataField, IsOneOfTheCandidatesByIdentity) {
    const auto band = AddField(*mvarRule, L"Customer", L"F", 2);
    const auto bound = band->DataField();
    const auto twin = Make<List>();
    twin->SetName(L"F");
    const auto macro = mvarRule->UsrMacros().Add(L"M");
    for (const auto& other : {twin, macro, Ref<List>()})
        EXPECT_FAILURE(band->SetDataField(other), InvalidParameter.WithDetail(L"Field/Macro"));
    EXPECT_EQ(band->DataField(), bound);
    const auto second = mvarRule->UsrFields().Add(L"G");
    EXPECT_SUCCESS(band->SetDataField(second));
    EXPECT_EQ(band->DataField(), second);
}

TEST_F(BandBindingTest_DataField, IsReadOnlyWithoutCandidates) {
    const auto item = mvarRule->UsrFields().Add(L"F");
    EXPECT_FAILURE(BandOf(bsUsrField)->SetDataField(item), ReadOnly);
    EXPECT_FAILURE(AddFixed(*mvarRule, L"Prefix", L"P")->SetDataField(item), ReadOnly);
    EXPECT_FALSE(BandOf(bsUsrField)->DataFields());
}

TEST_F(BandBindingTest_UsedFields, HoldTheDistinctItemsInBandOrder) {
    const auto first = AddField(*mvarRule, L"A", L"F1", 1);
    AddMacro(*mvarRule, L"B", L"M", 1);
    AddField(*mvarRule, L"C", L"F2", 1);
    AddField(*mvarRule, L"D", L"F1", 1);
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"F1 M F2");
    EXPECT_EQ(mvarRule->UsedFields().Item(1), mvarRule->UsrFields().Item(L"F1"));
    EXPECT_EQ(mvarRule->UsedFields().ListStyle(), lsMulriple);
    first->SetDataField(mvarRule->UsrFields().Item(L"F2"));
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"F2 M F1");
    mvarRule->Drag(L"B", 1, {});
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"M F2 F1");
    mvarRule->Remove(L"D");
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"M F2");
    mvarRule->Cls();
    EXPECT_EQ(mvarRule->UsedFields().Count(), 0);
}

// A field and a macro may have the same name; the second of them has no key.
TEST_F(BandBindingTest_UsedFields, HoldItemsOfTheSameName) {
    AddField(*mvarRule, L"A", L"X", 1);
    EXPECT_SUCCESS(AddMacro(*mvarRule, L"B", L"X", 1));
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"X X");
    EXPECT_EQ(mvarRule->UsedFields().Item(L"X"), mvarRule->UsrFields().Item(L"X"));
    EXPECT_EQ(mvarRule->UsedFields().Item(2), mvarRule->UsrMacros().Item(L"X"));
    EXPECT_SUCCESS(mvarRule->Drag(L"B", L"A", {}));
    EXPECT_EQ(mvarRule->UsedFields().Item(1), mvarRule->UsrMacros().Item(L"X"));
    const auto loaded = Make<CodeClass>();
    EXPECT_SUCCESS(loaded->Load(mvarRule->Definition()));
    EXPECT_EQ(BandsOf(*loaded), L"B A");
    EXPECT_EQ(loaded->UsedFields().Count(), 2);
    EXPECT_SUCCESS(mvarRule->Remove(L"B"));
    EXPECT_EQ(mvarRule->UsedFields().Item(L"X"), mvarRule->UsrFields().Item(L"X"));
    EXPECT_EQ(mvarRule->UsedFields().Count(), 1);
}

TEST_F(BandBindingTest_UsedFields, FollowEachBandThatALoadAppends) {
    AddField(*mvarRule, L"A", L"F1", 1);
    AddMacro(*mvarRule, L"B", L"F1", 1);
    AddField(*mvarRule, L"C", L"F1", 1);
    AddField(*mvarRule, L"D", L"F2", 1);
    const auto loaded = Make<CodeClass>();
    Lines seen;
    const auto handler = loaded->BandsChanged.Subscribe([&] { seen.push_back(NamesOf(loaded->UsedFields())); });
    loaded->Load(mvarRule->Definition());
    EXPECT_EQ(seen, (Lines{L"", L"F1", L"F1 F1", L"F1 F1", L"F1 F1 F2"}));
}

TEST_F(BandBindingTest_UsedFields, AreWholeAgainAfterTheNextBandWhenAHostHasTakenOneOut) {
    AddField(*mvarRule, L"A", L"F1", 1);
    AddField(*mvarRule, L"B", L"F2", 1);
    mvarRule->UsedFields().Remove(1);
    AddField(*mvarRule, L"C", L"F3", 1);
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"F1 F2 F3");
}

TEST_F(BandBindingTest_UsedFields, DoNotHoldWhatABandOutsideTheRuleIsBoundTo) {
    const auto band = AddField(*mvarRule, L"A", L"F1", 1);
    mvarRule->UsrFields().Add(L"F2");
    mvarRule->Remove(L"A");
    AddField(*mvarRule, L"A", L"F1", 1); // another band of the name
    EXPECT_SUCCESS(band->SetDataField(mvarRule->UsrFields().Item(L"F2")));
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"F1");
}

TEST_F(BandBindingTest_UsedFields, ChangeWithoutEventsAndTakeNoItemsThemselves) {
    const ListsRecorder events(mvarRule->UsedFields());
    AddField(*mvarRule, L"A", L"F1", 1);
    mvarRule->Cls();
    EXPECT_EQ(events.lines, Lines{});
    EXPECT_FAILURE(mvarRule->UsedFields().Add(L"X"), NotSupported);
}

} // namespace kestrel::test
