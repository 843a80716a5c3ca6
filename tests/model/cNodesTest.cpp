#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

class cNodesTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    // N1 (N2 (N4) N3) N5, and N6 a third child of N1 at the end of the list.
    Ref<cNodes> mvarTree = TreeOf(L"6;,1,a,A;1,2,b,B;1,3,c,C;2,4,d,D;,5,e,E;1,6,f,F");
};

using cNodesTest_Node = cNodesTest;
using cNodesTest_Remove = cNodesTest;
using cNodesTest_RemoveItem = cNodesTest;
using cNodesTest_Cls = cNodesTest;
using cNodesTest_Style = cNodesTest;
using cNodesTest_Notify = cNodesTest;

TEST_F(cNodesTest_Node, IsFoundByKeyAndByPosition) {
    EXPECT_EQ(mvarTree->Node(4)->Key(), L"N4");
    EXPECT_EQ(mvarTree->Node(L"N6"), mvarTree->Node(6));
    for (const int position : {0, -1, 7})
        EXPECT_FAILURE(mvarTree->Node(position), OutOfRange) << position;
    for (const auto* key : {L"N7", L"n1", L"1", L""})
        EXPECT_FAILURE(mvarTree->Node(key), InvalidCall) << testing::PrintToString(String(key));
    EXPECT_FAILURE(mvarTree->Node(IndexKey()), InvalidCall);
}

TEST_F(cNodesTest_Remove, TakesTheWholeSubtreeWithOneEvent) {
    const NodesRecorder events(*mvarTree);
    mvarTree->Remove(L"N2");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N3 N5 N6");
    mvarTree->Remove(1);
    EXPECT_EQ(KeysOf(*mvarTree), L"N5");
    EXPECT_EQ(events.lines, (Lines{L"N1/N1", L"/"}));
}

TEST_F(cNodesTest_Remove, TakesOnlyTheNodeWhenNothingIsBelow) {
    mvarTree->Remove(L"N3");
    EXPECT_EQ(KeysOf(*mvarTree), L"N1 N2 N4 N5 N6");
}

TEST_F(cNodesTest_Remove, StartsTheKeysAnewOnlyWhenTheTreeIsEmpty) {
    mvarTree->Remove(L"N1");
    EXPECT_EQ(mvarTree->Add({}, tvwFirst, L"x", L"X")->Key(), L"N7");
    mvarTree->Remove(L"N7");
    mvarTree->Remove(L"N5");
    EXPECT_EQ(mvarTree->Add()->Key(), L"N1");
}

TEST_F(cNodesTest_Remove, OfAnUnknownNodeFailsWithoutEvent) {
    const NodesRecorder events(*mvarTree);
    EXPECT_FAILURE(mvarTree->Remove(L"N9"), InvalidCall);
    EXPECT_FAILURE(mvarTree->Remove(0), OutOfRange);
    EXPECT_FAILURE(mvarTree->Remove(7), OutOfRange);
    EXPECT_EQ(mvarTree->Count(), 6);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodesTest_RemoveItem, TakesTheWholeSubtreeWithoutEvent) {
    const NodesRecorder events(*mvarTree);
    mvarTree->RemoveItem(L"N1");
    EXPECT_EQ(KeysOf(*mvarTree), L"N5");
    EXPECT_EQ(events.lines, Lines{});
    EXPECT_FAILURE(mvarTree->RemoveItem(L"N1"), InvalidCall);
    EXPECT_FAILURE(mvarTree->RemoveItem(2), OutOfRange);
}

TEST_F(cNodesTest_RemoveItem, KeepsTheKeyCounter) {
    mvarTree->RemoveItem(L"N1");
    mvarTree->RemoveItem(L"N5");
    EXPECT_EQ(mvarTree->ExportNodes(), L"6");
    EXPECT_EQ(mvarTree->Add()->Key(), L"N7");
}

TEST_F(cNodesTest_RemoveItem, LeavesNodesWhoseParentHasLeftTheList) {
    const auto lost = mvarTree->Node(L"N2");
    EXPECT_FAILURE(mvarTree->Drag(L"N9", tvwNext, L"N2"), InvalidCall);
    ASSERT_EQ(KeysOf(*mvarTree), L"N1 N3 N4 N5 N6");
    mvarTree->RemoveItem(L"N1");
    EXPECT_EQ(KeysOf(*mvarTree), L"N4 N5"); // nothing in the list leads from N1 to N4
    EXPECT_EQ(lost->Descendants(), 1);
}

TEST_F(cNodesTest_Cls, RemovesAllAndStartsTheKeysAnewWithOneEvent) {
    const NodesRecorder events(*mvarTree);
    mvarTree->Cls();
    EXPECT_EQ(mvarTree->Count(), 0);
    EXPECT_EQ(mvarTree->ExportNodes(), L"0");
    EXPECT_EQ(events.lines, (Lines{L"/"}));
    mvarTree->Cls();
    EXPECT_EQ(events.lines, (Lines{L"/", L"/"}));
}

TEST_F(cNodesTest_Style, IsSetWhileTheTreeIsEmpty) {
    const auto tree = Make<cNodes>();
    EXPECT_EQ(tree->Style(), tsNormal);
    for (const int style : {1, 2, 0}) {
        tree->SetStyle(style);
        EXPECT_EQ(tree->Style(), style);
    }
    EXPECT_FAILURE(tree->SetStyle(3), InvalidParameter);
    EXPECT_FAILURE(tree->SetStyle(-1), InvalidParameter);
    EXPECT_EQ(tree->Style(), tsNormal);
}

TEST_F(cNodesTest_Style, CannotBeChangedOnceThereIsANode) {
    EXPECT_FAILURE(mvarTree->SetStyle(tsNormal), CantBeChanged);
    EXPECT_FAILURE(mvarTree->SetStyle(9), CantBeChanged);
    mvarTree->Cls();
    EXPECT_SUCCESS(mvarTree->SetStyle(tsSimplified));
}

TEST_F(cNodesTest_Notify, RaisesTheNodesOwnPlace) {
    const NodesRecorder events(*mvarTree);
    mvarTree->NotifyChanged(L"N4");
    mvarTree->NotifyChanged(L"N5");
    mvarTree->NotifyChanged(L"N9");
    EXPECT_EQ(events.lines, (Lines{L"N2/N4", L"/N5"}));
}

} // namespace kestrel::test
