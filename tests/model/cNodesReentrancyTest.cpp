// Handlers of NodesChanged that change, empty or release the tree that raises it.
#include <functional>

#include <gtest/gtest.h>

#include "support/Checks.h"
#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Step.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

// The only reference to a tree, and what its handler may do with it.
struct TreeStage {
    // N1 (N2 (N3)) N4 N5
    Ref<cNodes> tree = TreeOf(L"5;,1,a,A;1,2,b,B;2,3,c,C;,4,d,D;,5,e,E");
    Subscription handler;
};

// Each may fail, since the step before it may have taken away what it works on; the failure then stays where it arose.
void RunQuietly(const Step<TreeStage>& step, TreeStage& stage) {
    const auto failure = FailureOf([&] { step.run(stage); });
    EXPECT_TRUE(failure.code == 0 || failure == InvalidCall || failure == OutOfRange || failure == SameCode ||
                failure == InvalidParameter || failure == DuplicateKey || failure == CantBeChanged)
        << failure;
}

const std::vector<Step<TreeStage>> TreeOperations = {
    {L"Add", [](TreeStage& stage) { stage.tree->Add({}, tvwFirst, L"new", L"NEW"); }},
    {L"Add child", [](TreeStage& stage) { stage.tree->Add(L"N3", tvwChild, L"new", L"NEW"); }},
    {L"Remove leaf", [](TreeStage& stage) { stage.tree->Remove(L"N4"); }},
    {L"Remove subtree", [](TreeStage& stage) { stage.tree->Remove(L"N1"); }},
    {L"Drag", [](TreeStage& stage) { stage.tree->Drag(L"N3", tvwChild, L"N5"); }},
    {L"Cls", [](TreeStage& stage) { stage.tree->Cls(); }},
    {L"SetText", [](TreeStage& stage) { stage.tree->Node(L"N3")->SetText(L"x"); }},
    {L"SetTag", [](TreeStage& stage) { stage.tree->Node(L"N5")->SetTag(L"X"); }},
    {L"NotifyChanged", [](TreeStage& stage) { stage.tree->NotifyChanged(L"N2"); }},
};

const std::vector<Step<TreeStage>> TreeHandlerSteps = {
    {L"adds", [](TreeStage& stage) { stage.tree->Add({}, tvwFirst, L"other", L"OTHER"); }},
    {L"adds the same", [](TreeStage& stage) { stage.tree->Add({}, tvwFirst, L"new", L"NEW"); }},
    {L"removes the last", [](TreeStage& stage) { stage.tree->Remove(stage.tree->Count()); }},
    {L"removes the first", [](TreeStage& stage) { stage.tree->Remove(1); }},
    {L"removes an item", [](TreeStage& stage) { stage.tree->RemoveItem(L"N2"); }},
    {L"drags", [](TreeStage& stage) { stage.tree->Drag(L"N5", tvwChild, L"N4"); }},
    {L"drags the last", [](TreeStage& stage) { stage.tree->Drag(1, tvwPrevious, stage.tree->Count()); }},
    {L"clears", [](TreeStage& stage) { stage.tree->Cls(); }},
    {L"imports", [](TreeStage& stage) { stage.tree->ImportNodes(L"2;,1,p,P;1,2,q,Q"); }},
    {L"imports badly", [](TreeStage& stage) { stage.tree->ImportNodes(L"2;,1,p,P;9,2,q,Q"); }},
    {L"sets a text", [](TreeStage& stage) { stage.tree->Node(1)->SetText(L"y"); }},
    {L"sets the style", [](TreeStage& stage) { stage.tree->SetStyle(tsSimplified); }},
    {L"unsubscribes", [](TreeStage& stage) { stage.handler.End(); }},
    {L"lets go", [](TreeStage& stage) { stage.tree = nullptr; }},
    {L"clears and lets go",
     [](TreeStage& stage) {
         stage.tree->Cls();
         stage.tree = nullptr;
     }},
};

} // namespace

class cNodesReentrancyTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(cNodesReentrancyTest, EveryOperationSurvivesEveryHandler) {
    for (const auto& operation : TreeOperations) {
        for (const auto& step : TreeHandlerSteps) {
            SCOPED_TRACE(testing::PrintToString(String(operation.name) + L", handler " + step.name));
            TreeStage stage;
            bool handling = false;
            int handled = 0;
            stage.handler = stage.tree->NodesChanged.Subscribe([&](const String&, const String&) {
                if (handling) return;
                handling = true;
                ++handled;
                EXPECT_EQ(FaultOf(*stage.tree), "");
                RunQuietly(step, stage);
            });
            EXPECT_SUCCESS(operation.run(stage));
            EXPECT_EQ(handled, 1);
            if (stage.tree) {
                EXPECT_EQ(FaultOf(*stage.tree), "");
            }
        }
    }
}

TEST_F(cNodesReentrancyTest, AddReturnsItsNodeThoughTheHandlerHasRemovedIt) {
    const auto tree = Make<cNodes>();
    const auto handler = tree->NodesChanged.Subscribe([&](const String&, const String& key) {
        if (!key.empty()) tree->Remove(key);
    });
    const auto node = tree->Add({}, tvwFirst, L"a", L"A");
    EXPECT_EQ(node->Text(), L"a");
    EXPECT_EQ(tree->Count(), 0);
    EXPECT_EQ(node->Index(), 1); // one beyond the end
    EXPECT_EQ(tree->Add()->Key(), L"N1");
}

TEST_F(cNodesReentrancyTest, AddReturnsItsNodeThoughTheHandlerHasLetTheTreeGo) {
    auto tree = Make<cNodes>();
    const auto handler = tree->NodesChanged.Subscribe([&](const String&, const String&) { tree = nullptr; });
    const auto node = tree->Add({}, tvwFirst, L"a", L"A");
    EXPECT_EQ(node->Text(), L"a");
    EXPECT_FALSE(node->GetOwner());
    EXPECT_EQ(node->Index(), 0);
}

TEST_F(cNodesReentrancyTest, HandlersAddToTheEndOfWhatTheyFind) {
    const auto tree = Make<cNodes>();
    const auto handler = tree->NodesChanged.Subscribe([&](const String&, const String& key) {
        if (tree->Count() < 4) tree->Add(key, tvwChild, L"below", L"below");
    });
    tree->Add();
    EXPECT_EQ(tree->ExportNodes(), L"4;,1,,;1,2,below,below;2,3,below,below;3,4,below,below");
}

TEST_F(cNodesReentrancyTest, SetTextKeepsWhatAHandlerSetsAfterIt) {
    const auto tree = TreeOf(L"1;,1,a,A");
    const auto node = tree->Node(1);
    const auto handler = tree->NodesChanged.Subscribe([&](const String&, const String&) { node->SetText(L"z"); });
    node->SetText(L"b");
    EXPECT_EQ(node->Text(), L"z");
}

TEST_F(cNodesReentrancyTest, SetTextSurvivesTheReleaseOfNodeAndTree) {
    auto tree = TreeOf(L"1;,1,a,A");
    auto node = tree->Node(1);
    const auto handler = tree->NodesChanged.Subscribe([&](const String&, const String&) {
        node = nullptr;
        tree = nullptr;
    });
    node->SetText(L"b");
    EXPECT_FALSE(tree);
}

TEST_F(cNodesReentrancyTest, EachHandlerSeesEachChange) {
    const auto tree = Make<cNodes>();
    const NodesRecorder first(*tree);
    const auto middle = tree->NodesChanged.Subscribe([&](const String&, const String& key) {
        if (key == L"N1") tree->Add(key, tvwChild, L"b", L"B");
    });
    const NodesRecorder last(*tree);
    tree->Add({}, tvwFirst, L"a", L"A");
    EXPECT_EQ(first.lines, (Lines{L"/N1", L"N1/N2"}));
    EXPECT_EQ(last.lines, (Lines{L"N1/N2", L"/N1"}));
}

} // namespace kestrel::test
