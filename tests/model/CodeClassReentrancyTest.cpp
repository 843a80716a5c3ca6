// Handlers of every event of a rule and of its lists and trees that change, clear, load, save or release the rule.
#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "support/Checks.h"
#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"
#include "support/Step.h"

namespace kestrel::test {

namespace {

// The orders rule with one band that converts in layers, which the test alone holds.
struct RuleStage {
    RuleStage() {
        AddField(*rule, L"Region", L"Gebiet", 2, smLayersSwap);
        rule->Relations().ImportNodes(L"2;,1,no,North;1,2,ea,East");
        rule->UsrFields().Item(L"Gebiet")->SetValue(L"North");
    }
    Ref<CodeClass> rule = OrdersRule();
    std::vector<Subscription> handlers;
};

const std::vector<Step<RuleStage>> RuleOperations = {
    {L"Add", [](RuleStage& stage) { AddFixed(*stage.rule, L"New", L"n"); }},
    {L"Add a layer", [](RuleStage& stage) { AddField(*stage.rule, L"New", L"Clerk", 1, smLayersSwap); }},
    {L"Remove", [](RuleStage& stage) { stage.rule->Remove(L"Prefix"); }},
    {L"Remove a tracked band", [](RuleStage& stage) { stage.rule->Remove(L"Customer"); }},
    {L"Remove a layer", [](RuleStage& stage) { stage.rule->Remove(L"Region"); }},
    {L"Drag", [](RuleStage& stage) { stage.rule->Drag(L"Number", L"Prefix", {}); }},
    {L"Drag a layer", [](RuleStage& stage) { stage.rule->Drag(L"Region", 1, {}); }},
    {L"Cls", [](RuleStage& stage) { stage.rule->Cls(); }},
    {L"Load", [](RuleStage& stage) { stage.rule->Load(OrdersDefinition); }},
    {L"GetCode", [](RuleStage& stage) { static_cast<void>(stage.rule->GetCode(gsNewCode)); }},
    {L"ExpCode", [](RuleStage& stage) { stage.rule->ExpCode(L"PO-24060200317no"); }},
    {L"Save", [](RuleStage& stage) { stage.rule->Save(); }},
    {L"SetSwapMode", [](RuleStage& stage) { stage.rule->Band(L"Region")->SetSwapMode(smNoneSwap); }},
    {L"SetCodeUCased", [](RuleStage& stage) { stage.rule->SetCodeUCased(true); }},
    {L"Track", [](RuleStage& stage) { stage.rule->Band(L"Number")->TrackBands()->Add(L"Prefix"); }},
    {L"Add a field", [](RuleStage& stage) { stage.rule->UsrFields().Add(L"New"); }},
    {L"Remove a field", [](RuleStage& stage) { stage.rule->UsrFields().Remove(L"Clerk"); }},
    {L"Read macros", [](RuleStage& stage) { stage.rule->UsrMacros().SetListsText(L"Day;Night"); }},
    {L"Add a node", [](RuleStage& stage) { stage.rule->Relations().Add({}, tvwFirst, L"x", L"X"); }},
    {L"RaiseAddField", [](RuleStage& stage) { stage.rule->RaiseAddField(L"New"); }},
    {L"RaiseDropField", [](RuleStage& stage) { stage.rule->RaiseDropField(L"Clerk"); }},
};

const std::vector<Step<RuleStage>> RuleHandlerSteps = {
    {L"adds a band", [](RuleStage& stage) { AddFixed(*stage.rule, L"Other", L"o"); }},
    {L"adds the same band", [](RuleStage& stage) { AddFixed(*stage.rule, L"New", L"o"); }},
    {L"removes the first band", [](RuleStage& stage) { stage.rule->Remove(1); }},
    {L"removes the last band", [](RuleStage& stage) { stage.rule->Remove(stage.rule->Count()); }},
    {L"removes the number", [](RuleStage& stage) { stage.rule->Remove(L"Number"); }},
    {L"drags", [](RuleStage& stage) { stage.rule->Drag(1, {}, stage.rule->Count()); }},
    {L"clears", [](RuleStage& stage) { stage.rule->Cls(); }},
    {L"loads", [](RuleStage& stage) { stage.rule->Load(OrdersDefinition); }},
    {L"loads something short", [](RuleStage& stage) { stage.rule->Load(L"#####14\rF\r16\r0=A\r1=0\r3=x\r17"); }},
    {L"issues a code", [](RuleStage& stage) { static_cast<void>(stage.rule->GetCode(gsNewCode)); }},
    {L"takes a code apart", [](RuleStage& stage) { stage.rule->ExpCode(L"PO-24060200317no"); }},
    {L"saves", [](RuleStage& stage) { stage.rule->Save(); }},
    {L"sets a mode", [](RuleStage& stage) { stage.rule->Band(L"Region")->SetSwapMode(smSimpleSwap); }},
    {L"sets the flag", [](RuleStage& stage) { stage.rule->SetCodeUCased(false); }},
    {L"sets a length", [](RuleStage& stage) { stage.rule->Band(L"Number")->SetLength(9); }},
    {L"reads fields", [](RuleStage& stage) { stage.rule->UsrFields().SetListsText(L"Customer;Else"); }},
    {L"clears the layers", [](RuleStage& stage) { stage.rule->LayeredBands().Empty(); }},
    {L"clears the tree", [](RuleStage& stage) { stage.rule->Relations().Cls(); }},
    {L"adds a node", [](RuleStage& stage) { stage.rule->Relations().Add({}, tvwFirst, L"y", L"Y"); }},
    {L"unsubscribes", [](RuleStage& stage) { stage.handlers.clear(); }},
    {L"lets go", [](RuleStage& stage) { stage.rule = nullptr; }},
    {L"clears and lets go",
     [](RuleStage& stage) {
         stage.rule->Cls();
         stage.rule = nullptr;
     }},
};

// Subscribes the call to one event after the other; each returns what it is called.
using Source = std::function<Subscription(CodeClass&, std::function<void()>)>;
const std::vector<std::pair<const wchar_t*, Source>> Events = {
    {L"BandsChanged", [](CodeClass& rule, auto call) { return rule.BandsChanged.Subscribe(call); }},
    {L"FieldsChanged", [](CodeClass& rule, auto call) { return rule.FieldsChanged.Subscribe(call); }},
    {L"LayeredBandsChanged", [](CodeClass& rule, auto call) { return rule.LayeredBandsChanged.Subscribe(call); }},
    {L"RelationsChanged", [](CodeClass& rule, auto call) { return rule.RelationsChanged.Subscribe(call); }},
    {L"BeforeDropBand",
     [](CodeClass& rule, auto call) {
         return rule.BeforeDropBand.Subscribe([call](const String&, bool, const String&) { call(); });
     }},
    {L"AddField",
     [](CodeClass& rule, auto call) { return rule.AddField.Subscribe([call](const String&) { call(); }); }},
    {L"DropField",
     [](CodeClass& rule, auto call) { return rule.DropField.Subscribe([call](const String&) { call(); }); }},
    {L"GetLastCode",
     [](CodeClass& rule, auto call) {
         return rule.GetLastCode.Subscribe([call](const String&, const String&) { call(); });
     }},
    {L"GetSettings",
     [](CodeClass& rule, auto call) {
         return rule.GetSettings.Subscribe([call](const String&, const String&) { call(); });
     }},
    {L"Save",
     [](CodeClass& rule, auto call) {
         return rule.SaveRequested.Subscribe([call](const String&, bool& achieved) {
             achieved = true;
             call();
         });
     }},
    {L"UsrFields.BeforeAdd",
     [](CodeClass& rule, auto call) {
         return rule.UsrFields().BeforeAdd.Subscribe(
             [call](const String&, bool, const String&, std::int32_t) { call(); });
     }},
    {L"UsrFields.BeforeRemove",
     [](CodeClass& rule, auto call) {
         return rule.UsrFields().BeforeRemove.Subscribe([call](const String&, bool, const String&) { call(); });
     }},
    {L"LayeredBands.BeforeAdd",
     [](CodeClass& rule, auto call) {
         return rule.LayeredBands().BeforeAdd.Subscribe(
             [call](const String&, bool, const String&, std::int32_t) { call(); });
     }},
    {L"LayeredBands.BeforeRemove",
     [](CodeClass& rule, auto call) {
         return rule.LayeredBands().BeforeRemove.Subscribe([call](const String&, bool, const String&) { call(); });
     }},
    {L"LayeredBands.CollectionChanged",
     [](CodeClass& rule, auto call) { return rule.LayeredBands().CollectionChanged.Subscribe(call); }},
    {L"Relations.NodesChanged",
     [](CodeClass& rule, auto call) {
         return rule.Relations().NodesChanged.Subscribe([call](const String&, const String&) { call(); });
     }},
    {L"TrackBands.BeforeAdd",
     [](CodeClass& rule, auto call) {
         return rule.Band(L"Number")->TrackBands()->BeforeAdd.Subscribe(
             [call](const String&, bool, const String&) { call(); });
     }},
};

bool IsErrorOfTheLibrary(const Failure& failure) {
    return failure.code == 0 || ((failure.code >> 16U) == 0x8004 && !failure.description.empty()) ||
           failure == InvalidCall || failure == OutOfRange || failure == ObjectNotSet || failure == DuplicateKey ||
           failure == PlainSaveFailure;
}

// What a handler leaves may be refused by the operation that goes on; the rule is whole all the same.
void RunWithin(const Step<RuleStage>& operation, const Step<RuleStage>& step, const Source& source,
               ScriptedPrompts& prompts, bool mayDangle = false) {
    RuleStage stage;
    bool handled = false;
    const auto handle = [&] {
        if (std::exchange(handled, true)) return;
        const auto failure = FailureOf([&] { step.run(stage); });
        EXPECT_TRUE(IsErrorOfTheLibrary(failure)) << failure;
    };
    if (source)
        stage.handlers.push_back(source(*stage.rule, handle));
    else
        prompts.whileAsking = handle;
    const auto failure = FailureOf([&] { operation.run(stage); });
    prompts.whileAsking = nullptr;
    EXPECT_TRUE(IsErrorOfTheLibrary(failure)) << failure;
    if (stage.rule) {
        EXPECT_EQ(FaultOf(*stage.rule), "");
        if (!mayDangle) {
            EXPECT_EQ(DanglingOf(*stage.rule), "");
        }
        stage.handlers.clear();
        stage.rule->Load(OrdersDefinition);
        EXPECT_EQ(BandsOf(*stage.rule), L"Prefix Period Customer Number");
    }
}

} // namespace

class CodeClassReentrancyTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(CodeClassReentrancyTest, EveryOperationSurvivesEveryHandlerOfEveryEvent) {
    for (const auto& operation : RuleOperations) {
        for (const auto& step : RuleHandlerSteps) {
            for (const auto& [name, source] : Events) {
                SCOPED_TRACE(testing::PrintToString(String(operation.name) + L", " + name + L" " + step.name));
                RunWithin(operation, step, source, mvarStandIns.prompts,
                          String(name).find(L"BeforeAdd") != String::npos);
            }
        }
    }
}

TEST_F(CodeClassReentrancyTest, QuestionsSurviveWhatRunsMeanwhile) {
    for (const auto& operation : RuleOperations) {
        for (const auto& step : RuleHandlerSteps) {
            SCOPED_TRACE(testing::PrintToString(String(operation.name) + L", question " + step.name));
            RunWithin(operation, step, nullptr, mvarStandIns.prompts);
        }
    }
}

TEST_F(CodeClassReentrancyTest, RemoveEndsSilentlyWhenItsHandlerHasRemovedTheBand) {
    const auto rule = OrdersRule();
    bool handled = false;
    const auto handler = rule->BeforeDropBand.Subscribe([&](const String& name, bool, const String&) {
        if (!std::exchange(handled, true)) rule->Remove(name);
    });
    const RuleRecorder events(*rule);
    EXPECT_SUCCESS(rule->Remove(L"Prefix"));
    EXPECT_EQ(BandsOf(*rule), L"Period Customer Number");
    EXPECT_EQ(events.lines, (Lines{L"dropping Prefix", L"bands", L"dropping Prefix"}));
}

TEST_F(CodeClassReentrancyTest, RemoveEndsSilentlyWhenTheBandGoesWhileTheUserIsAsked) {
    const auto rule = OrdersRule();
    mvarStandIns.prompts.whileAsking = [&] { rule->Cls(); };
    EXPECT_SUCCESS(rule->Remove(L"Customer"));
    EXPECT_EQ(rule->Count(), 0);
}

TEST_F(CodeClassReentrancyTest, AddReturnsItsBandThoughAHandlerHasClearedTheRule) {
    const auto rule = Make<CodeClass>();
    const auto handler = rule->BandsChanged.Subscribe([&] {
        if (rule->Count() > 0) rule->Cls();
    });
    const auto band = AddField(*rule, L"A", L"F", 1, smLayersSwap);
    EXPECT_EQ(band->Name(), L"A");
    EXPECT_EQ(band->Index(), -1);
    EXPECT_EQ(rule->LayeredBands().Count(), 0);
}

TEST_F(CodeClassReentrancyTest, AddReturnsItsBandThoughAHandlerHasLetTheRuleGo) {
    auto rule = Make<CodeClass>();
    const auto handler = rule->BandsChanged.Subscribe([&] { rule = nullptr; });
    const auto band = AddFixed(*rule, L"A", L"x");
    EXPECT_FALSE(rule);
    EXPECT_EQ(band->Value(), L"x");
    EXPECT_FALSE(band->ParentRule());
}

TEST_F(CodeClassReentrancyTest, LoadWithinALoadKeepsWhatTheOuterOneReadsAfterwards) {
    const auto rule = Make<CodeClass>();
    int raised = 0;
    const auto handler = rule->BandsChanged.Subscribe([&] {
        if (++raised == 2) rule->Load(L"#####16\r0=Inner\r1=0\r3=i\r17");
    });
    rule->Load(L"#####16\r0=First\r1=0\r3=f\r17\r16\r0=Last\r1=0\r3=l\r17");
    EXPECT_EQ(BandsOf(*rule), L"Inner Last");
}

TEST_F(CodeClassReentrancyTest, GetCodePassesOverABandThatTheHostRemovesWhenAsked) {
    const auto rule = OrdersRule();
    AddNumber(*rule, L"Second", 2)->TrackBands()->Add(L"Prefix");
    const auto handler = rule->GetLastCode.Subscribe([&](const String&, const String&) {
        if (rule->FindBand(L"Second")) rule->Remove(L"Second");
    });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PO-24050100001");
}

TEST_F(CodeClassReentrancyTest, GetCodeCanBeAskedForWithinItself) {
    const auto rule = OrdersRule();
    int depth = 0;
    String inner;
    const auto handler = rule->GetLastCode.Subscribe([&](const String&, String& value) {
        if (++depth == 1) inner = rule->GetCode(gsNewCode);
        value = L"PO-24050100007";
    });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PO-24050100008");
    EXPECT_EQ(inner, L"PO-24050100008");
    EXPECT_EQ(depth, 2);
}

TEST_F(CodeClassReentrancyTest, GetCodeSurvivesTheReleaseOfTheRule) {
    auto rule = OrdersRule();
    const auto handler = rule->GetLastCode.Subscribe([&](const String&, const String&) { rule = nullptr; });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PO-24050100001");
    EXPECT_FALSE(rule);
}

} // namespace kestrel::test
