#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

class cNodesAddTest : public testing::Test {
  protected:
    Ref<cNode> Add(const IndexKey& relative, int relationship, const wchar_t* text) {
        return mvarTree->Add(relative, relationship, text, text + String(L"!"));
    }

    StandIns mvarStandIns;
    Ref<cNodes> mvarTree = Make<cNodes>();
};

TEST_F(cNodesAddTest, WithoutArgumentsMakesAnEmptyFirstLayerNode) {
    const NodesRecorder events(*mvarTree);
    const auto node = mvarTree->Add();
    EXPECT_EQ(node->Key(), L"N1");
    EXPECT_EQ(node->Text(), L"");
    EXPECT_EQ(node->Tag(), L"");
    EXPECT_FALSE(node->Parent());
    EXPECT_EQ(node->GetOwner(), mvarTree);
    EXPECT_EQ(mvarTree->Node(1), node);
    EXPECT_EQ(mvarTree->Node(L"N1"), node);
    EXPECT_EQ(events.lines, (Lines{L"/N1"}));
}

TEST_F(cNodesAddTest, WithoutArgumentsTwiceIsRefused) {
    mvarTree->Add();
    EXPECT_FAILURE(mvarTree->Add(), SameCode);
    EXPECT_EQ(mvarTree->Count(), 1);
}

TEST_F(cNodesAddTest, UsesAKeyNumberEvenWhenItFails) {
    mvarTree->Add();
    EXPECT_FAILURE(mvarTree->Add(), SameCode);
    EXPECT_FAILURE(Add(L"N9", tvwFirst, L"a"), InvalidCall);
    EXPECT_EQ(Add({}, tvwFirst, L"a")->Key(), L"N4");
}

TEST_F(cNodesAddTest, WithoutRelativeAppendsToTheFirstLayerWhateverTheRelationship) {
    Add({}, tvwFirst, L"a");
    Add(L"N1", tvwChild, L"b");
    const auto node = Add({}, tvwChild, L"c");
    EXPECT_FALSE(node->Parent());
    EXPECT_SUCCESS(Add({}, 99, L"d"));
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N2 N3 N4");
}

TEST_F(cNodesAddTest, PlacesByRelationship) {
    // N1 with the children N3 and N4, and N2.
    mvarTree->ImportNodes(L"4;,1,a,A;1,3,b,B;,2,c,C;1,4,d,D");
    EXPECT_EQ(Add(L"N4", tvwFirst, L"first")->Key(), L"N5");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N5 N3 N2 N4");
    Add(L"N3", tvwLast, L"last");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N5 N3 N2 N4 N6");
    Add(L"N3", tvwNext, L"next");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N5 N3 N7 N2 N4 N6");
    Add(L"N3", tvwPrevious, L"previous");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N5 N8 N3 N7 N2 N4 N6");
    Add(L"N3", tvwChild, L"child");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N5 N8 N3 N7 N2 N4 N6 N9");
    for (const auto* key : {L"N5", L"N6", L"N7", L"N8"})
        EXPECT_EQ(KeyOf(mvarTree->Node(key)->Parent()), L"N1");
    EXPECT_EQ(KeyOf(mvarTree->Node(L"N9")->Parent()), L"N3");
}

TEST_F(cNodesAddTest, PlacesInTheFirstLayerByRelationship) {
    mvarTree->ImportNodes(L"3;,1,a,A;1,2,b,B;,3,c,C");
    Add(L"N3", tvwFirst, L"first");
    Add(L"N1", tvwLast, L"last");
    Add(L"N1", tvwNext, L"next");
    Add(L"N3", tvwPrevious, L"previous");
    EXPECT_EQ(KeysOf(*mvarTree), L"N4 N1 N6 N2 N7 N3 N5");
    for (const auto* key : {L"N4", L"N5", L"N6", L"N7"})
        EXPECT_FALSE(mvarTree->Node(key)->Parent());
}

TEST_F(cNodesAddTest, TakesRelativeAsAPosition) {
    Add({}, tvwFirst, L"a");
    Add({}, tvwFirst, L"b");
    Add(2, tvwPrevious, L"c");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N3 N2");
}

TEST_F(cNodesAddTest, RaisesTheParentsKeyAndTheNewKey) {
    const NodesRecorder events(*mvarTree);
    Add({}, tvwFirst, L"a");
    Add(L"N1", tvwChild, L"b");
    Add(L"N2", tvwChild, L"c");
    Add(L"N2", tvwNext, L"d");
    EXPECT_EQ(events.lines, (Lines{L"/N1", L"N1/N2", L"N2/N3", L"N1/N4"}));
}

TEST_F(cNodesAddTest, RefusesAnUnknownRelative) {
    Add({}, tvwFirst, L"a");
    EXPECT_FAILURE(Add(L"N7", tvwChild, L"b"), InvalidCall);
    EXPECT_FAILURE(Add(0, tvwChild, L"b"), OutOfRange);
    EXPECT_FAILURE(Add(2, tvwChild, L"b"), OutOfRange);
    EXPECT_EQ(mvarTree->Count(), 1);
}

TEST_F(cNodesAddTest, RefusesAnUnknownRelationship) {
    Add({}, tvwFirst, L"a");
    const NodesRecorder events(*mvarTree);
    for (const int relationship : {-1, 5, 99})
        EXPECT_FAILURE(Add(L"N1", relationship, L"b"), InvalidParameter) << relationship;
    EXPECT_EQ(mvarTree->Count(), 1);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodesAddTest, RefusesChildrenInASimplifiedTree) {
    mvarTree->SetStyle(tsSimplified);
    Add({}, tvwFirst, L"a");
    EXPECT_FAILURE(Add(L"N1", tvwChild, L"b"), InvalidParameter);
    EXPECT_SUCCESS(Add(L"N1", tvwNext, L"b"));
}

TEST_F(cNodesAddTest, RefusesTheCodeOfASibling) {
    mvarTree->ImportNodes(L"4;,1,a,A;1,2,b,B;,3,c,C;2,4,d,D");
    EXPECT_FAILURE(mvarTree->Add({}, tvwFirst, L"c", L"x"), SameCode);
    EXPECT_FAILURE(mvarTree->Add(L"N3", tvwNext, L"a", L"x"), SameCode);
    EXPECT_FAILURE(mvarTree->Add(L"N1", tvwChild, L"b", L"x"), SameCode);
    EXPECT_FAILURE(mvarTree->Add(L"N4", tvwFirst, L"d", L"x"), SameCode);
    EXPECT_EQ(mvarTree->Count(), 4);
}

TEST_F(cNodesAddTest, RefusesTheValueOfASiblingEvenWithAnotherCode) {
    mvarTree->ImportNodes(L"3;,1,a,A;1,2,b,B;,3,c,C");
    EXPECT_FAILURE(mvarTree->Add({}, tvwFirst, L"x", L"C"), SameValue);
    EXPECT_FAILURE(mvarTree->Add(L"N1", tvwChild, L"x", L"B"), SameValue);
}

TEST_F(cNodesAddTest, TestsCodeAndValueSiblingBySibling) {
    mvarTree->ImportNodes(L"2;,1,a,A;,2,b,B");
    EXPECT_FAILURE(mvarTree->Add({}, tvwFirst, L"b", L"A"), SameValue); // the first sibling has the value already
    EXPECT_FAILURE(mvarTree->Add({}, tvwFirst, L"a", L"B"), SameCode);
    EXPECT_FAILURE(mvarTree->Add({}, tvwFirst, L"a", L"A"), SameCode);
}

TEST_F(cNodesAddTest, AcceptsTheSameCodeUnderAnotherParentAndInAnotherCase) {
    mvarTree->ImportNodes(L"3;,1,a,A;1,2,b,B;,3,c,C");
    EXPECT_SUCCESS(mvarTree->Add(L"N3", tvwChild, L"b", L"B"));
    EXPECT_SUCCESS(mvarTree->Add({}, tvwFirst, L"b", L"B"));
    EXPECT_SUCCESS(mvarTree->Add({}, tvwFirst, L"A", L"a"));
}

TEST_F(cNodesAddTest, ReportsADuplicateBeforeABadRelationship) {
    Add({}, tvwFirst, L"a");
    EXPECT_FAILURE(Add(L"N1", 99, L"a"), SameCode);
}

TEST_F(cNodesAddTest, RefusesAKeyThatAnImportHasUsed) {
    mvarTree->ImportNodes(L"0;,1,a,A");
    EXPECT_FAILURE(Add({}, tvwFirst, L"b"), DuplicateKey);
    EXPECT_EQ(KeysOf(*mvarTree), L"N1");
    EXPECT_EQ(Add({}, tvwFirst, L"b")->Key(), L"N2");
}

TEST_F(cNodesAddTest, FailsWhenNoKeyNumberIsLeft) {
    mvarTree->ImportNodes(L"2147483646");
    EXPECT_EQ(Add({}, tvwFirst, L"a")->Key(), L"N2147483647");
    EXPECT_FAILURE(Add({}, tvwFirst, L"b"), Overflow);
    EXPECT_EQ(mvarTree->Count(), 1);
}

} // namespace kestrel::test
