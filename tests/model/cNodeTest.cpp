#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

// N1 (N2 (N4) N3) N5, with N6 a second child of N5's sibling N1 at the end of the list.
constexpr const wchar_t* SmallTree = L"6;,1,a,A;1,2,b,B;1,3,c,C;2,4,d,D;,5,e,E;1,6,f,F";

} // namespace

class cNodeTest : public testing::Test {
  protected:
    [[nodiscard]] Ref<cNode> Node(const wchar_t* key) const { return mvarTree->Node(key); }

    StandIns mvarStandIns;
    Ref<cNodes> mvarTree = TreeOf(SmallTree);
};

using cNodeTest_Alone = cNodeTest;
using cNodeTest_Navigation = cNodeTest;
using cNodeTest_Previous = cNodeTest;
using cNodeTest_Set = cNodeTest;

TEST_F(cNodeTest_Alone, AnswersNeutrally) {
    const auto node = Make<cNode>();
    EXPECT_EQ(node->Index(), 0);
    EXPECT_EQ(node->Layer(), 0);
    EXPECT_EQ(node->Children(), 0);
    EXPECT_EQ(node->Descendants(), 0);
    EXPECT_FALSE(node->Child());
    EXPECT_FALSE(node->Nexts());
    EXPECT_FALSE(node->Previous());
    EXPECT_FALSE(node->PreviousSibling());
    EXPECT_FALSE(node->Parent());
    EXPECT_EQ(node->FirstSibling(), node);
    EXPECT_EQ(node->LastSibling(), node);
    EXPECT_EQ(node->Root(), node);
    EXPECT_EQ(node->Key(), L"");
}

TEST_F(cNodeTest_Alone, TakesAnyTextAndTag) {
    const auto node = Make<cNode>();
    node->SetText(L"a");
    node->SetTag(L"b");
    EXPECT_EQ(node->Text(), L"a");
    EXPECT_EQ(node->Tag(), L"b");
}

TEST_F(cNodeTest_Alone, KnowsItsRootWithoutATree) {
    const auto parent = Make<cNode>();
    const auto node = Make<cNode>();
    node->SetParent(parent);
    EXPECT_EQ(node->Root(), parent);
    EXPECT_EQ(node->Layer(), 0);
}

TEST_F(cNodeTest_Alone, StaysUsableWhenItsTreeHasEnded) {
    const auto node = Node(L"N4");
    mvarTree = nullptr;
    EXPECT_FALSE(node->GetOwner());
    EXPECT_EQ(node->Index(), 0);
    EXPECT_EQ(node->Layer(), 0);
    EXPECT_EQ(KeyOf(node->Root()), L"N1");
    EXPECT_EQ(node->LastSibling(), node);
    EXPECT_SUCCESS(node->SetText(L"x"));
    EXPECT_EQ(node->Text(), L"x");
}

TEST_F(cNodeTest_Navigation, IndexIsThePositionInTheWholeList) {
    for (int position = 1; position <= mvarTree->Count(); ++position)
        EXPECT_EQ(mvarTree->Node(position)->Index(), position);
}

TEST_F(cNodeTest_Navigation, LayerAndRootFollowTheParents) {
    EXPECT_EQ(Node(L"N5")->Layer(), 0);
    EXPECT_EQ(Node(L"N3")->Layer(), 1);
    EXPECT_EQ(Node(L"N4")->Layer(), 2);
    EXPECT_EQ(KeyOf(Node(L"N4")->Root()), L"N1");
    EXPECT_EQ(KeyOf(Node(L"N5")->Root()), L"N5");
    EXPECT_EQ(KeyOf(Node(L"N4")->Parent()), L"N2");
    EXPECT_EQ(KeyOf(Node(L"N1")->Parent()), L"-");
}

TEST_F(cNodeTest_Navigation, SiblingsAreTheNodesWithTheSameParentInListOrder) {
    EXPECT_EQ(KeyOf(Node(L"N3")->FirstSibling()), L"N2");
    EXPECT_EQ(KeyOf(Node(L"N3")->LastSibling()), L"N6");
    EXPECT_EQ(KeyOf(Node(L"N2")->Nexts()), L"N3");
    EXPECT_EQ(KeyOf(Node(L"N3")->Nexts()), L"N6");
    EXPECT_EQ(KeyOf(Node(L"N6")->Nexts()), L"-");
    EXPECT_EQ(KeyOf(Node(L"N1")->Nexts()), L"N5");
    EXPECT_EQ(KeyOf(Node(L"N5")->Nexts()), L"-");
    EXPECT_EQ(KeyOf(Node(L"N6")->PreviousSibling()), L"N3");
    EXPECT_EQ(KeyOf(Node(L"N2")->PreviousSibling()), L"-");
    EXPECT_EQ(KeyOf(Node(L"N5")->PreviousSibling()), L"N1");
}

TEST_F(cNodeTest_Navigation, OnlyNodeIsItsOwnFirstAndLastSibling) {
    const auto tree = TreeOf(L"1;,1,a,A");
    const auto node = tree->Node(1);
    EXPECT_EQ(node->FirstSibling(), node);
    EXPECT_EQ(node->LastSibling(), node);
    EXPECT_FALSE(node->Nexts());
    EXPECT_FALSE(node->Previous());
    EXPECT_FALSE(node->PreviousSibling());
}

TEST_F(cNodeTest_Navigation, ChildIsTheFirstNodeBelow) {
    EXPECT_EQ(KeyOf(Node(L"N1")->Child()), L"N2");
    EXPECT_EQ(KeyOf(Node(L"N2")->Child()), L"N4");
    EXPECT_EQ(KeyOf(Node(L"N4")->Child()), L"-");
}

TEST_F(cNodeTest_Navigation, ChildrenIsAlwaysNoneAndDescendantsCounts) {
    for (const auto& node : mvarTree->Snapshot())
        EXPECT_EQ(node->Children(), 0) << testing::PrintToString(node->Key());
    EXPECT_EQ(Node(L"N1")->Descendants(), 4);
    EXPECT_EQ(Node(L"N2")->Descendants(), 1);
    EXPECT_EQ(Node(L"N5")->Descendants(), 0);
}

TEST_F(cNodeTest_Navigation, FindsANodeThatHasMoved) {
    const auto last = Node(L"N6");
    EXPECT_EQ(last->Index(), 6);
    mvarTree->Remove(L"N4");
    EXPECT_EQ(last->Index(), 5);
    mvarTree->Drag(L"N2", tvwPrevious, L"N6");
    EXPECT_EQ(last->Index(), 2);
    EXPECT_EQ(Node(L"N2")->Index(), 3);
}

TEST_F(cNodeTest_Navigation, OfANodeThatHasLeftTheTreeIsQuiet) {
    const auto node = Node(L"N3");
    mvarTree->Remove(L"N3");
    EXPECT_EQ(node->Index(), mvarTree->Count() + 1);
    EXPECT_EQ(node->LastSibling(), node);
    EXPECT_EQ(KeyOf(node->FirstSibling()), L"N2");
    EXPECT_FALSE(node->Nexts());
    EXPECT_FALSE(node->Previous());
    EXPECT_FALSE(node->Child());
    EXPECT_EQ(node->Layer(), 1);
    EXPECT_EQ(node->GetOwner(), mvarTree);
}

TEST_F(cNodeTest_Previous, OfTheThirdOfThreeFirstLayerNodesIsNothing) {
    const auto tree = TreeOf(FlatText(3));
    EXPECT_FALSE(tree->Node(3)->Previous());
}

TEST_F(cNodeTest_Previous, OfTheSecondOfThreeFirstLayerNodesFails) {
    const auto tree = TreeOf(FlatText(3));
    EXPECT_FAILURE(tree->Node(2)->Previous(), ObjectNotSet);
}

TEST_F(cNodeTest_Previous, OfTheFirstNodeOfTheListIsNothing) { EXPECT_FALSE(Node(L"N1")->Previous()); }

TEST_F(cNodeTest_Previous, ComparesTheParentsOfNodesBelowByAMemberThatTheyDoNotHave) {
    EXPECT_FAILURE(Node(L"N3")->Previous(), MemberNotSupported); // directly follows its first sibling
    EXPECT_FAILURE(Node(L"N4")->Previous(), MemberNotSupported); // its own first sibling, after a node of another layer
    EXPECT_FAILURE(Node(L"N2")->Previous(), ObjectNotSet);       // after a node without parent
    EXPECT_FALSE(Node(L"N6")->Previous());                       // its first sibling is further away
}

TEST_F(cNodeTest_Set, TextAnnouncesOneChange) {
    const NodesRecorder events(*mvarTree);
    Node(L"N3")->SetText(L"x");
    EXPECT_EQ(Node(L"N3")->Text(), L"x");
    Node(L"N5")->SetText(L"y");
    EXPECT_EQ(events.lines, (Lines{L"N1/N3", L"/N5"}));
}

TEST_F(cNodeTest_Set, TheSameTextAnnouncesNothing) {
    const NodesRecorder events(*mvarTree);
    Node(L"N3")->SetText(L"c");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodeTest_Set, TheSameTextIsNeverRefused) {
    const auto tree = TreeOf(L"2;,1,a,A;,2,a,A");
    EXPECT_SUCCESS(tree->Node(1)->SetText(L"a"));
    EXPECT_SUCCESS(tree->Node(2)->SetTag(L"A"));
}

TEST_F(cNodeTest_Set, TextOfASiblingIsRefused) {
    const NodesRecorder events(*mvarTree);
    EXPECT_FAILURE(Node(L"N5")->SetText(L"a"), SameCode);
    EXPECT_FAILURE(Node(L"N2")->SetText(L"f"), SameCode);
    EXPECT_EQ(Node(L"N5")->Text(), L"e");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodeTest_Set, BothSidesCanBeTriedBeforeOneIsSet) {
    const NodesRecorder events(*mvarTree);
    const auto node = Node(L"N5");
    EXPECT_FAILURE(node->RefuseTaken(L"a", L"A"), SameCode);
    EXPECT_FAILURE(node->RefuseTaken(L"x", L"A"), SameValue);
    EXPECT_SUCCESS(node->RefuseTaken(L"x", L"X"));
    EXPECT_SUCCESS(node->RefuseTaken(node->Text(), node->Tag()));
    EXPECT_EQ(node->Text(), L"e");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodeTest_Set, TextUnderAnotherParentIsAccepted) {
    EXPECT_SUCCESS(Node(L"N4")->SetText(L"b"));
    EXPECT_SUCCESS(Node(L"N5")->SetText(L"b"));
}

TEST_F(cNodeTest_Set, TextIsComparedExactly) {
    EXPECT_SUCCESS(Node(L"N5")->SetText(L"A"));
    EXPECT_SUCCESS(Node(L"N5")->SetText(L""));
}

TEST_F(cNodeTest_Set, TagAnnouncesOneChange) {
    const NodesRecorder events(*mvarTree);
    Node(L"N4")->SetTag(L"x");
    Node(L"N4")->SetTag(L"x");
    EXPECT_EQ(Node(L"N4")->Tag(), L"x");
    EXPECT_EQ(events.lines, (Lines{L"N2/N4"}));
}

TEST_F(cNodeTest_Set, TagOfASiblingIsRefused) {
    EXPECT_FAILURE(Node(L"N3")->SetTag(L"B"), SameValue);
    EXPECT_FAILURE(Node(L"N1")->SetTag(L"E"), SameValue);
    EXPECT_SUCCESS(Node(L"N4")->SetTag(L"B"));
    EXPECT_SUCCESS(Node(L"N3")->SetTag(L"b"));
    EXPECT_EQ(Node(L"N1")->Tag(), L"A");
}

TEST_F(cNodeTest_Set, AfterTheNodeHasLeftAnnouncesNothing) {
    const auto node = Node(L"N5");
    mvarTree->Remove(L"N5");
    const NodesRecorder events(*mvarTree);
    EXPECT_SUCCESS(node->SetText(L"x"));
    EXPECT_EQ(node->Text(), L"x");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodeTest_Set, AfterTheNodeHasLeftIsNotTakenForANewerNodeWithItsKey) {
    const auto tree = Make<cNodes>();
    const auto old = tree->Add({}, tvwFirst, L"a", L"A");
    tree->Remove(1);
    tree->Add({}, tvwFirst, L"b", L"B");
    ASSERT_EQ(tree->Node(1)->Key(), old->Key());
    const NodesRecorder events(*tree);
    old->SetText(L"x");
    EXPECT_EQ(events.lines, Lines{});
}

} // namespace kestrel::test
