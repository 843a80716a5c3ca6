// Trees whose nodes form one chain of parents: nothing may go down a chain with a call per layer.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

constexpr int Depth = 200'000;

} // namespace

class cNodesDeepTest : public testing::Test {
  protected:
    [[nodiscard]] Ref<cNode> Last() const { return mvarTree->Node(Depth); }

    StandIns mvarStandIns;
    Ref<cNodes> mvarTree = TreeOf(ChainText(Depth));
};

TEST_F(cNodesDeepTest, ExportsAndNavigates) {
    EXPECT_EQ(mvarTree->ExportNodes(), ChainText(Depth));
    EXPECT_EQ(Last()->Layer(), Depth - 1);
    EXPECT_EQ(KeyOf(Last()->Root()), L"N1");
    EXPECT_EQ(mvarTree->Node(1)->Descendants(), Depth - 1);
    EXPECT_EQ(mvarTree->Node(1)->Children(), 0);
    EXPECT_EQ(KeyOf(Last()->FirstSibling()), Last()->Key());
}

TEST_F(cNodesDeepTest, IsRemovedFromTheMiddleAndFromTheTop) {
    mvarTree->Remove(Depth / 2);
    EXPECT_EQ(mvarTree->Count(), Depth / 2 - 1);
    mvarTree->Remove(1);
    EXPECT_EQ(mvarTree->Count(), 0);
}

TEST_F(cNodesDeepTest, IsDraggedAndCleared) {
    EXPECT_FAILURE(mvarTree->Drag(Last()->Key(), tvwChild, 1), InvalidParameter);
    mvarTree->Drag(1, tvwPrevious, Depth);
    EXPECT_EQ(mvarTree->Node(1)->Layer(), 0);
    EXPECT_EQ(mvarTree->Node(2)->Descendants(), Depth - 2);
    mvarTree->Cls();
    EXPECT_EQ(mvarTree->Count(), 0);
}

TEST_F(cNodesDeepTest, OutlivesItsTreeInItsLastNode) {
    auto last = Last();
    mvarTree = nullptr;
    EXPECT_EQ(last->Root()->Text(), L"c1");
    last = nullptr; // ends the whole chain
    EXPECT_FALSE(last);
}

TEST_F(cNodesDeepTest, OutlivesItsTreeInTheMiddle) {
    auto middle = mvarTree->Node(Depth / 2);
    mvarTree->Remove(1);
    EXPECT_EQ(middle->References(), 1U);
    middle = nullptr;
    EXPECT_EQ(mvarTree->Count(), 0);
}

} // namespace kestrel::test
