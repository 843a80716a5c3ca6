#include <limits>

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

class cNodesDragTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    // N1 (N2 (N4) N3) N5, and N6 a third child of N1 at the end of the list.
    Ref<cNodes> mvarTree = TreeOf(L"6;,1,a,A;1,2,b,B;1,3,c,C;2,4,d,D;,5,e,E;1,6,f,F");
};

TEST_F(cNodesDragTest, PlacesTheNodeAnewWithOneEvent) {
    const NodesRecorder events(*mvarTree);
    mvarTree->Drag(L"N2", tvwPrevious, L"N6");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N6 N2 N3 N4 N5");
    mvarTree->Drag(L"N6", tvwChild, L"N5");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N6 N2 N3 N4 N5");
    EXPECT_EQ(KeyOf(mvarTree->Node(L"N5")->Parent()), L"N6");
    EXPECT_EQ(events.lines, (Lines{L"N1/N6", L"N6/N5"}));
}

TEST_F(cNodesDragTest, LeavesTheDescendantsWhereTheyAre) {
    mvarTree->Drag(L"N5", tvwChild, L"N2");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N3 N4 N5 N6 N2");
    EXPECT_EQ(KeyOf(mvarTree->Node(L"N4")->Parent()), L"N2");
    EXPECT_EQ(mvarTree->Node(L"N4")->Layer(), 2);
    EXPECT_EQ(KeyOf(mvarTree->Node(L"N4")->Root()), L"N5");
}

TEST_F(cNodesDragTest, WithoutRelativeMovesToTheEndOfTheFirstLayer) {
    mvarTree->Drag({}, tvwFirst, L"N2");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N3 N4 N5 N6 N2");
    EXPECT_FALSE(mvarTree->Node(L"N2")->Parent());
}

TEST_F(cNodesDragTest, CountsARelativePositionWithoutTheNode) {
    const auto tree = TreeOf(FlatText(4));
    tree->Drag(2, tvwPrevious, 1); // without N1 the second is N3
    EXPECT_EQ(KeysOf(*tree), L"N2 N1 N3 N4");
    tree->Drag(2, tvwNext, 4); // a position before the node is the same with and without it
    EXPECT_EQ(KeysOf(*tree), L"N2 N1 N4 N3");
}

TEST_F(cNodesDragTest, MovesTheFirstNodeToTheEnd) {
    const auto tree = TreeOf(FlatText(3));
    tree->Drag(L"N3", tvwNext, 1);
    EXPECT_EQ(KeysOf(*tree), L"N2 N3 N1");
    tree->Drag(1, tvwFirst, L"N1");
    EXPECT_EQ(KeysOf(*tree), L"N1 N2 N3");
}

TEST_F(cNodesDragTest, OfNothingMovesNothing) {
    const NodesRecorder events(*mvarTree);
    const String before = mvarTree->ExportNodes();
    mvarTree->Drag(L"N1", tvwChild, {});
    mvarTree->Drag({}, tvwFirst, {});
    EXPECT_EQ(mvarTree->ExportNodes(), before);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodesDragTest, InATreeOfOneNodeOrNoneMovesNothing) {
    const auto tree = Make<cNodes>();
    EXPECT_SUCCESS(tree->Drag(L"N9", tvwNext, L"N8"));
    tree->Add();
    EXPECT_SUCCESS(tree->Drag(L"N9", tvwNext, L"N1"));
    EXPECT_EQ(KeysOf(*tree), L"N1");
}

TEST_F(cNodesDragTest, OfAnUnknownNodeFailsAndMovesNothing) {
    EXPECT_FAILURE(mvarTree->Drag(L"N1", tvwChild, L"N9"), InvalidCall);
    EXPECT_FAILURE(mvarTree->Drag(L"N1", tvwChild, 0), OutOfRange);
    EXPECT_FAILURE(mvarTree->Drag(L"N1", tvwChild, 7), OutOfRange);
    EXPECT_EQ(mvarTree->Count(), 6);
}

TEST_F(cNodesDragTest, UnderItselfOrADescendantIsRefusedBeforeAnythingMoves) {
    const NodesRecorder events(*mvarTree);
    const String before = mvarTree->ExportNodes();
    EXPECT_FAILURE(mvarTree->Drag(L"N1", tvwChild, L"N1"), InvalidParameter);
    EXPECT_FAILURE(mvarTree->Drag(L"N4", tvwChild, L"N1"), InvalidParameter);
    EXPECT_FAILURE(mvarTree->Drag(L"N4", tvwNext, L"N1"), InvalidParameter);
    EXPECT_FAILURE(mvarTree->Drag(L"N2", tvwFirst, L"N1"), InvalidParameter);
    EXPECT_FAILURE(mvarTree->Drag(1, tvwChild, 1), InvalidParameter); // without N1 the first is its child N2
    EXPECT_EQ(mvarTree->ExportNodes(), before);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodesDragTest, ToAPlaceThatIsUnknownOnceItHasLeftLosesTheNode) {
    const auto node = mvarTree->Node(L"N2");
    EXPECT_FAILURE(mvarTree->Drag(6, tvwNext, L"N2"), OutOfRange); // five nodes are left without it
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N3 N4 N5 N6");
    EXPECT_EQ(mvarTree->Node(L"N4")->Parent(), node);
    EXPECT_EQ(node->Index(), 6);
}

TEST_F(cNodesDragTest, BesideItselfLosesTheNode) {
    EXPECT_FAILURE(mvarTree->Drag(L"N6", tvwNext, L"N6"), InvalidCall);
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N2 N3 N4 N5");
}

TEST_F(cNodesDragTest, WhosePlacementFailsLosesTheNodeWithoutEvent) {
    const NodesRecorder events(*mvarTree);
    mvarTree->Node(L"N4")->SetText(L"e");
    EXPECT_FAILURE(mvarTree->Drag(L"N5", tvwNext, L"N4"), SameCode);
    EXPECT_FAILURE(mvarTree->Drag(L"N1", 99, L"N5"), InvalidParameter);
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N2 N3 N6");
    EXPECT_EQ(events.lines, (Lines{L"N2/N4"}));
}

TEST_F(cNodesDragTest, TakesTheValueOfASiblingForADuplicate) {
    mvarTree->Node(L"N4")->SetTag(L"E");
    EXPECT_FAILURE(mvarTree->Drag({}, tvwFirst, L"N4"), SameValue);
    EXPECT_EQ(mvarTree->Count(), 5);
}

TEST_F(cNodesDragTest, TakesPositionsOfAnySize) {
    for (const auto position : {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        const auto tree = TreeOf(FlatText(2));
        EXPECT_FAILURE(tree->Drag(position, tvwNext, 1), OutOfRange);
        EXPECT_EQ(KeysOf(*tree), L"N2");
    }
}

TEST_F(cNodesDragTest, ReordersTheFirstLayerForConversion) {
    const auto tree = TreeOf(L"3;,1,a,A;1,2,a,B;,3,b,C");
    tree->Drag(L"N3", tvwChild, L"N1"); // the list now begins with a node of a lower layer
    EXPECT_EQ(KeysOf(*tree), L"N2 N3 N1");
    String value = L"b";
    EXPECT_EQ(tree->Conversion(csCodeToValue, value), L"N3");
    value = L"a";
    EXPECT_FAILURE(tree->Conversion(csCodeToValue, value), NoRelatedRelation);
}

} // namespace kestrel::test
