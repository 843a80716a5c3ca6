// Remove, Drag and Cls of a rule.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class CodeClassRemoveTest : public testing::Test {
  protected:
    CodeClassRemoveTest() {
        AddFixed(*mvarRule, L"A", L"a");
        AddFixed(*mvarRule, L"B", L"b");
        mvarNumber = AddNumber(*mvarRule, L"N", 3);
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    Ref<Band> mvarNumber;
};

using CodeClassRemoveTest_Drag = CodeClassRemoveTest;
using CodeClassRemoveTest_Cls = CodeClassRemoveTest;

TEST_F(CodeClassRemoveTest, AsksTheHostThenRemovesAndTells) {
    const RuleRecorder events(*mvarRule);
    mvarRule->Remove(L"a");
    mvarRule->Remove(1);
    EXPECT_EQ(BandsOf(*mvarRule), L"N");
    EXPECT_EQ(events.lines, (Lines{L"dropping A", L"bands", L"dropping B", L"bands"}));
    EXPECT_EQ(mvarStandIns.prompts.asked, Lines{});
}

TEST_F(CodeClassRemoveTest, EndsSilentlyWhenTheHostCancelsBeforeEveryOtherCheck) {
    mvarNumber->SetTrigerBand(mvarRule->Band(L"A"));
    mvarNumber->TrackBands()->Add(L"A");
    const auto veto = mvarRule->BeforeDropBand.Subscribe([](String& name, bool& cancel, String& description) {
        EXPECT_EQ(name, L"A");
        EXPECT_FALSE(cancel);
        EXPECT_EQ(description, L"");
        cancel = true;
        description = L"ignored";
    });
    const RuleRecorder events(*mvarRule);
    EXPECT_SUCCESS(mvarRule->Remove(L"A"));
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    EXPECT_EQ(events.lines, (Lines{L"dropping A"}));
    EXPECT_EQ(mvarStandIns.prompts.asked, Lines{});
}

TEST_F(CodeClassRemoveTest, OfAnUnknownBandFailsWithoutEvent) {
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->Remove(L"X"), InvalidCall);
    EXPECT_FAILURE(mvarRule->Remove(0), OutOfRange);
    EXPECT_FAILURE(mvarRule->Remove(4), OutOfRange);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(CodeClassRemoveTest, OfATriggerBandIsRefusedWithTheNamesOfThoseItTriggers) {
    const auto other = AddNumber(*mvarRule, L"O", 2);
    mvarNumber->SetTrigerBand(mvarRule->Band(L"A"));
    other->SetTrigerBand(mvarRule->Band(L"A"));
    mvarNumber->TrackBands()->Add(L"A");
    EXPECT_FAILURE(
        mvarRule->Remove(L"A"),
        (Failure{0x800407D9, L"The band can't be Deleted,cause still used as triger band for the following band(s):"
                             L"\r\n\r\nN O"}));
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N O");
    EXPECT_EQ(mvarStandIns.prompts.asked, Lines{});
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"A");
}

TEST_F(CodeClassRemoveTest, OfATrackedBandAsksFirst) {
    const auto other = AddNumber(*mvarRule, L"O", 2);
    mvarNumber->TrackBands()->Add(L"a");
    mvarNumber->TrackBands()->Add(L"B");
    other->TrackBands()->Add(L"N");
    other->TrackBands()->Add(L"A");
    other->TrackBands()->Add(L"a");
    mvarRule->Remove(L"A");
    EXPECT_EQ(mvarStandIns.prompts.asked,
              (Lines{L"The band is tracked by the following band(s),continue?\r\n\r\nN O"}));
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"B");
    EXPECT_EQ(other->TrackBands()->NamesText(), L"N");
}

TEST_F(CodeClassRemoveTest, OfATrackedBandIsRefusedWhenTheUserDeclines) {
    mvarNumber->TrackBands()->Add(L"A");
    mvarStandIns.prompts.answer = false;
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->Remove(L"A"), TrackedByOthers);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"A");
    EXPECT_EQ(events.lines, (Lines{L"dropping A"}));
}

TEST_F(CodeClassRemoveTest, OfALayerStyleBandTakesItsNameFromTheLayers) {
    AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    mvarRule->Relations().Add({}, tvwFirst, L"a", L"A");
    const RuleRecorder events(*mvarRule);
    mvarRule->Remove(L"Region");
    EXPECT_EQ(mvarRule->LayeredBands().Count(), 0);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    EXPECT_EQ(mvarRule->Relations().Count(), 0);
    EXPECT_EQ(events.lines, (Lines{L"dropping Region", L"layers", L"relations", L"bands"}));
    EXPECT_EQ(mvarStandIns.prompts.informed, (Lines{L"Layered relations affected,please setup it again."}));
}

TEST_F(CodeClassRemoveTest, BringsTheBandBackToItsPlaceWhenTheHostKeepsTheLayer) {
    const auto band = AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    mvarRule->Drag(L"Region", L"B", {});
    mvarNumber->TrackBands()->Add(L"Region");
    mvarStandIns.prompts.answer = true;
    const auto veto =
        mvarRule->LayeredBands().BeforeRemove.Subscribe([](const String&, bool& cancel, String& description) {
            cancel = true;
            description = L"Not this layer.";
        });
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->Remove(L"Region"), DropFailed.Followed(L"Not this layer."));
    EXPECT_EQ(BandsOf(*mvarRule), L"A Region B N");
    EXPECT_EQ(band->ParentRule(), mvarRule);
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"Region");
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"F");
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"") << "what was done before stays";
    EXPECT_EQ(events.lines, (Lines{L"dropping Region"}));
}

TEST_F(CodeClassRemoveTest, TakesTheNamesTrackedFirstThenTheBandThenItsLayer) {
    AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    mvarNumber->TrackBands()->Add(L"Region");
    String whenTheLayerGoes;
    const auto leaving =
        mvarRule->LayeredBands().BeforeRemove.Subscribe([&](const String&, const bool&, const String&) {
            whenTheLayerGoes = mvarNumber->TrackBands()->NamesText() + L"/" + BandsOf(*mvarRule);
        });
    mvarRule->Remove(L"Region");
    EXPECT_EQ(whenTheLayerGoes, L"/A B N");
}

TEST_F(CodeClassRemoveTest, KeepsANewBandOfTheNameWhenTheHostKeepsTheLayer) {
    AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    const auto veto = mvarRule->LayeredBands().BeforeRemove.Subscribe([this](const String&, bool& cancel, String&) {
        AddFixed(*mvarRule, L"Region", L"r");
        cancel = true;
    });
    EXPECT_FAILURE(mvarRule->Remove(L"Region"), DropFailed);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N Region");
    EXPECT_EQ(mvarRule->Band(L"Region")->Style(), bsFixed);
}

TEST_F(CodeClassRemoveTest, LeavesTheBandItsRuleAsLongAsThatLives) {
    const auto band = mvarRule->Band(L"A");
    const auto bound = AddField(*mvarRule, L"Bound", L"F", 2);
    mvarRule->UsrFields().Add(L"G");
    mvarRule->Remove(L"A");
    mvarRule->Remove(L"Bound");
    EXPECT_EQ(band->Value(), L"a");
    EXPECT_EQ(band->Index(), -1);
    EXPECT_EQ(band->ParentRule(), mvarRule);
    EXPECT_EQ(bound->DataFields().Get(), &mvarRule->UsrFields());
    EXPECT_SUCCESS(bound->SetDataField(mvarRule->UsrFields().Item(L"G")));
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"") << "it is no band of the rule";
    mvarRule = nullptr;
    EXPECT_EQ(band->Index(), -1);
    EXPECT_FALSE(band->ParentRule());
    EXPECT_FALSE(bound->DataFields());
}

TEST_F(CodeClassRemoveTest_Drag, PutsTheBandBeforeOrAfterAnotherOneWithOneEvent) {
    const RuleRecorder events(*mvarRule);
    mvarRule->Drag(L"N", L"A", {});
    EXPECT_EQ(BandsOf(*mvarRule), L"N A B");
    mvarRule->Drag(1, {}, 3);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    mvarRule->Drag(L"a", {}, L"b");
    EXPECT_EQ(BandsOf(*mvarRule), L"B A N");
    mvarRule->Drag(L"B", L"N", {});
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    EXPECT_EQ(events.lines, (Lines{L"bands", L"bands", L"bands", L"bands"}));
    EXPECT_EQ(mvarRule->Band(L"B")->Index(), 2);
}

TEST_F(CodeClassRemoveTest_Drag, RefusesAMoveThatChangesNothing) {
    const RuleRecorder events(*mvarRule);
    EXPECT_FAILURE(mvarRule->Drag(L"B", L"B", {}), NoDragNeeded);
    EXPECT_FAILURE(mvarRule->Drag(L"B", {}, L"B"), NoDragNeeded);
    EXPECT_FAILURE(mvarRule->Drag(L"B", L"N", {}), NoDragNeeded);
    EXPECT_FAILURE(mvarRule->Drag(L"B", {}, L"A"), NoDragNeeded);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(CodeClassRemoveTest_Drag, RefusesUnusablePlaces) {
    EXPECT_FAILURE(mvarRule->Drag(L"A", {}, {}), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Drag(L"A", L"N", L"N"), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Drag(L"A", L"X", {}), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Drag(L"A", {}, 4), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Drag(L"A", 0, {}), InvalidParameter);
    EXPECT_FAILURE(mvarRule->Drag(L"X", L"A", {}), InvalidCall);
    EXPECT_FAILURE(mvarRule->Drag(7, L"A", {}), OutOfRange);
    EXPECT_EQ(BandsOf(*mvarRule), L"A B N");
}

TEST_F(CodeClassRemoveTest_Drag, InARuleOfOneBandDoesNothing) {
    const auto rule = Make<CodeClass>();
    EXPECT_SUCCESS(rule->Drag(L"X", L"Y", {}));
    AddFixed(*rule, L"A", L"a");
    EXPECT_SUCCESS(rule->Drag(L"X", L"Y", {}));
    EXPECT_SUCCESS(rule->Drag(L"A", L"A", {}));
}

TEST_F(CodeClassRemoveTest_Drag, KeepsLayersRelationsAndReferences) {
    const auto region = AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    mvarRule->Relations().Add({}, tvwFirst, L"a", L"A");
    mvarNumber->SetTrigerBand(region);
    mvarNumber->TrackBands()->Add(L"Region");
    const RuleRecorder events(*mvarRule);
    mvarRule->Drag(L"Region", 1, {});
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"Region");
    EXPECT_EQ(mvarRule->Relations().Count(), 1);
    EXPECT_EQ(mvarNumber->TrigerBand(), region);
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), L"Region");
    EXPECT_EQ(events.lines, (Lines{L"bands"}));
}

TEST_F(CodeClassRemoveTest_Cls, RemovesBandsRelationsAndLayersAndTellsOnce) {
    AddField(*mvarRule, L"Region", L"F", 2, smLayersSwap);
    mvarRule->UsrMacros().Add(L"M");
    mvarRule->Relations().Add({}, tvwFirst, L"a", L"A");
    mvarNumber->SetTrigerBand(mvarRule->Band(L"A"));
    mvarNumber->TrackBands()->Add(L"A");
    const RuleRecorder events(*mvarRule);
    mvarRule->Cls();
    EXPECT_EQ(mvarRule->Count(), 0);
    EXPECT_EQ(mvarRule->LayeredBands().Count(), 0);
    EXPECT_EQ(mvarRule->Relations().Count(), 0);
    EXPECT_EQ(NamesOf(mvarRule->UsrFields()), L"F");
    EXPECT_EQ(NamesOf(mvarRule->UsrMacros()), L"M");
    EXPECT_EQ(events.lines, (Lines{L"relations", L"layers", L"bands"}));
    EXPECT_EQ(mvarStandIns.prompts.asked, Lines{});
    EXPECT_EQ(mvarStandIns.prompts.informed, Lines{});
    EXPECT_EQ(mvarNumber->Index(), -1);
    EXPECT_EQ(mvarNumber->ParentRule(), mvarRule);
}

TEST_F(CodeClassRemoveTest_Cls, OfAnEmptyRuleTellsToo) {
    const auto rule = Make<CodeClass>();
    const RuleRecorder events(*rule);
    rule->Cls();
    EXPECT_EQ(events.lines, (Lines{L"bands"}));
}

TEST_F(CodeClassRemoveTest_Cls, KeepsTheSettings) {
    mvarRule->SetName(L"Orders");
    mvarRule->SetStyle(csSimple);
    mvarRule->SetSeparaOfYear(4);
    mvarRule->SetAllowSetup(true);
    mvarRule->SetCodeUCased(false);
    mvarRule->Cls();
    EXPECT_EQ(mvarRule->Name(), L"Orders");
    EXPECT_EQ(mvarRule->Style(), csSimple);
    EXPECT_EQ(mvarRule->SeparaOfYear(), 4);
    EXPECT_TRUE(mvarRule->AllowSetup());
    EXPECT_FALSE(mvarRule->CodeUCased());
}

} // namespace kestrel::test
