// How a rule meets its host: the guards of its lists, Save, and the way to the dialogs.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

// Notes which dialog was asked for, with what.
class NotedDialogs final : public Dialogs {
  public:
    void ShowDesigner(CodeClass& rule, const String& title) override {
        lines.push_back(L"designer " + title + (rule.AllowSetup() ? L" with setup" : L""));
    }
    void ShowFieldManage(CodeClass&, const String& title) override { lines.push_back(L"fields " + title); }
    void ShowOptions(CodeClass&, const String& title) override { lines.push_back(L"options " + title); }
    void ShowAddBand(CodeClass&, const String& relativeName, int position) override {
        lines.push_back(L"band " + relativeName + L" " + ToText(position));
    }
    void ShowAddRelation(CodeClass&, std::int32_t bandIndex, const String& relativeKey, int relationship,
                         bool modify) override {
        lines.push_back(L"relation " + ToText(bandIndex) + L" " + relativeKey + L" " + ToText(relationship) +
                        (modify ? L" modify" : L""));
    }

    Lines lines;
};

} // namespace

class HostEventsTest : public testing::Test {
  protected:
    NotedDialogs mvarDialogs;
    StandIns mvarStandIns{&mvarDialogs};
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

using HostEventsTest_Fields = HostEventsTest;
using HostEventsTest_Layers = HostEventsTest;
using HostEventsTest_Dialogs = HostEventsTest;

// A host that holds a definition and answers the rule's questions.
class HostEventsTest_Save : public HostEventsTest {
  protected:
    HostEventsTest_Save() {
        mvarHandlers.push_back(mvarRule->GetSettings.Subscribe([this](const String& name, String& value) {
            EXPECT_EQ(value, L"");
            mvarLines.push_back(L"settings of " + name);
            value = mvarHeld;
        }));
        mvarHandlers.push_back(mvarRule->SaveRequested.Subscribe([this](const String& value, bool& achieved) {
            EXPECT_FALSE(achieved);
            mvarLines.push_back(L"save " + value);
            achieved = mvarAchieves;
        }));
        mvarRule->SetName(L"Orders");
    }

    String mvarHeld;
    bool mvarAchieves = true;
    Lines mvarLines;
    std::vector<Subscription> mvarHandlers;
};

TEST_F(HostEventsTest_Fields, BoundToBandsCannotBeRemoved) {
    AddField(*mvarRule, L"A", L"Customer", 1);
    AddField(*mvarRule, L"B", L"Customer", 1);
    EXPECT_FAILURE(mvarRule->UsrFields().Remove(L"Customer"),
                   (Failure{0x800407DF, L"Failed to drop item.The field [Customer] is bounded to the following Band:"
                                        L"\r\n\r\nA B"}));
    EXPECT_EQ(NamesOf(mvarRule->UsrFields()), L"Customer");
    mvarRule->Remove(L"A");
    mvarRule->Remove(L"B");
    EXPECT_SUCCESS(mvarRule->UsrFields().Remove(L"Customer"));
}

TEST_F(HostEventsTest_Fields, MacrosBoundToBandsCannotBeRemoved) {
    AddMacro(*mvarRule, L"A", L"Year", 1);
    EXPECT_FAILURE(mvarRule->UsrMacros().Remove(1),
                   (Failure{0x800407DF, L"Failed to drop item.The macro [Year] is bounded to the following Band:"
                                        L"\r\n\r\nA"}));
    EXPECT_FAILURE(mvarRule->UsrMacros().ClearItems(),
                   DropFailed.Followed(L"The macro [Year] is bounded to the following Band:\r\n\r\nA"));
}

TEST_F(HostEventsTest_Fields, OfTheSameNameInTheOtherListAreNotBound) {
    AddField(*mvarRule, L"A", L"X", 1);
    mvarRule->UsrMacros().Add(L"X");
    EXPECT_SUCCESS(mvarRule->UsrMacros().Remove(L"X"));
}

TEST_F(HostEventsTest_Fields, RaiseFieldsChanged) {
    const RuleRecorder events(*mvarRule);
    mvarRule->UsrFields().Add(L"F");
    mvarRule->UsrMacros().Add(L"M");
    mvarRule->UsrFields().Remove(L"F");
    EXPECT_EQ(events.lines, (Lines{L"fields", L"fields", L"fields"}));
}

TEST_F(HostEventsTest_Fields, AreGuardedBeforeTheHostIsAsked) {
    AddField(*mvarRule, L"A", L"F", 1);
    const auto host =
        mvarRule->UsrFields().BeforeRemove.Subscribe([](const String&, bool& cancel, String& description) {
            EXPECT_TRUE(cancel);
            EXPECT_NE(description, L"");
            cancel = false;
        });
    EXPECT_SUCCESS(mvarRule->UsrFields().Remove(L"F")); // the last word is the host's
}

TEST_F(HostEventsTest_Layers, AreBandsOfTheRuleInAnyCase) {
    AddFixed(*mvarRule, L"A", L"x");
    EXPECT_FAILURE(mvarRule->LayeredBands().Add(L"B"), AddFailed.Followed(L"Incorrect layer name."));
    EXPECT_SUCCESS(mvarRule->LayeredBands().Add(L"a"));
}

TEST_F(HostEventsTest_Layers, OfLayerStyleBandsCannotBeRemoved) {
    AddField(*mvarRule, L"Region", L"F", 1, smLayersSwap);
    AddFixed(*mvarRule, L"A", L"x");
    mvarRule->LayeredBands().Add(L"A");
    EXPECT_FAILURE(mvarRule->LayeredBands().Remove(L"Region"),
                   DropFailed.Followed(L"Layer is in use,no remove permmited."));
    EXPECT_SUCCESS(mvarRule->LayeredBands().Remove(L"A"));
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"Region");
}

TEST_F(HostEventsTest_Layers, ClearTheTreeWhenTheyChangeAfterTheEventAndBeforeTheBox) {
    AddField(*mvarRule, L"A", L"F", 1, smLayersSwap);
    AddField(*mvarRule, L"B", L"G", 1, smLayersSwap);
    mvarRule->Relations().Add({}, tvwFirst, L"a", L"A");
    std::int32_t countInEvent = -1;
    const auto handler = mvarRule->LayeredBandsChanged.Subscribe([&] { countInEvent = mvarRule->Relations().Count(); });
    const RuleRecorder events(*mvarRule);
    mvarRule->LayeredBands().MoveItem(L"A", {}, L"B");
    EXPECT_EQ(countInEvent, 1);
    EXPECT_EQ(mvarRule->Relations().Count(), 0);
    EXPECT_EQ(events.lines, (Lines{L"layers", L"relations"}));
    EXPECT_EQ(mvarStandIns.prompts.informed, (Lines{L"Layered relations affected,please setup it again."}));
}

TEST_F(HostEventsTest_Layers, ShowNoBoxWhenTheTreeIsEmpty) {
    AddField(*mvarRule, L"A", L"F", 1, smLayersSwap);
    mvarRule->Band(L"A")->SetSwapMode(smNoneSwap);
    EXPECT_EQ(mvarStandIns.prompts.informed, Lines{});
    EXPECT_FALSE(mvarRule->ExistingRelations());
}

TEST_F(HostEventsTest_Save, HandsTheDefinitionOverWhenTheUserAgrees) {
    mvarRule->Save();
    EXPECT_EQ(mvarLines, (Lines{L"settings of Orders", L"save " + mvarRule->Definition()}));
    EXPECT_EQ(mvarStandIns.prompts.asked, (Lines{L"Do you want to save change(s)?"}));
}

TEST_F(HostEventsTest_Save, DoesNothingWhenTheHostHoldsTheSameInAnyCase) {
    AddFixed(*mvarRule, L"Prefix", L"po");
    mvarHeld = TheText().Upper(mvarRule->Definition());
    ASSERT_NE(mvarHeld, mvarRule->Definition());
    EXPECT_SUCCESS(mvarRule->Save());
    EXPECT_EQ(mvarLines, (Lines{L"settings of Orders"}));
    EXPECT_EQ(mvarStandIns.prompts.asked, Lines{});
}

TEST_F(HostEventsTest_Save, AsksWhateverTheOptions) {
    for (const int options : {0, 2, 4, 6, 99}) {
        mvarStandIns.prompts.asked.clear();
        mvarRule->Save(options);
        EXPECT_EQ(mvarStandIns.prompts.asked.size(), 1U) << options;
    }
}

TEST_F(HostEventsTest_Save, LeavesTheHostAloneWhenTheUserDeclines) {
    mvarStandIns.prompts.answer = false;
    mvarHeld = L"something else";
    EXPECT_SUCCESS(mvarRule->Save());
    EXPECT_EQ(mvarLines, (Lines{L"settings of Orders"}));
}

TEST_F(HostEventsTest_Save, FailsWhenTheHostDoesNotConfirm) {
    mvarAchieves = false;
    EXPECT_FAILURE(mvarRule->Save(), PlainSaveFailure);
    mvarHandlers.clear();
    EXPECT_FAILURE(mvarRule->Save(), PlainSaveFailure); // no one listens
}

TEST_F(HostEventsTest_Save, SurvivesTheReleaseOfTheRuleInEachStep) {
    const auto release = [this] { mvarRule = nullptr; };
    mvarStandIns.prompts.whileAsking = release;
    EXPECT_SUCCESS(mvarRule->Save());
    mvarRule = Make<CodeClass>();
    const auto settings = mvarRule->GetSettings.Subscribe([&](const String&, const String&) { release(); });
    const auto save = mvarRule->SaveRequested.Subscribe([&](const String&, bool& achieved) { achieved = true; });
    mvarStandIns.prompts.whileAsking = nullptr;
    EXPECT_SUCCESS(mvarRule->Save());
}

TEST_F(HostEventsTest_Dialogs, AreOpenedThroughThePort) {
    mvarRule->ShowDesigner(L"Title", true);
    mvarRule->ShowDesigner();
    mvarRule->ShowDesigner(L"T", false);
    mvarRule->ShowFieldManage(L"Fields");
    mvarRule->ShowOptions();
    mvarRule->ShowAddBand(L"A", 2);
    mvarRule->ShowAddRelation(3, L"N1", tvwChild, true);
    EXPECT_EQ(mvarDialogs.lines, (Lines{L"designer Title with setup", L"designer  with setup", L"designer T",
                                        L"fields Fields", L"options ", L"band A 2", L"relation 3 N1 4 modify"}));
}

TEST_F(HostEventsTest_Dialogs, RaiseAddFieldAndDropField) {
    const RuleRecorder events(*mvarRule);
    mvarRule->RaiseAddField(L"F");
    mvarRule->RaiseDropField(L"G");
    EXPECT_EQ(events.lines, (Lines{L"add F", L"drop G"}));
}

} // namespace kestrel::test
