#include "dialogs/OpenBranches.h"

#include <gtest/gtest.h>

#include "support/StandIns.h"

namespace kestrel::test {

namespace {

using Keys = std::vector<String>;

class OpenBranchesTest : public testing::Test {
  protected:
    dialogs::OpenBranches branches;

  private:
    StandIns mvarStandIns;
};

} // namespace

TEST_F(OpenBranchesTest, EachTreeHasItsOwn) {
    const auto first = Make<cNodes>();
    const auto second = Make<cNodes>();
    branches.Keep(first, {L"N1", L"N4"});
    branches.Keep(second, {L"N1"});
    EXPECT_EQ(branches.Take(first), (Keys{L"N1", L"N4"}));
    EXPECT_EQ(branches.Take(first), Keys{}) << "taken once";
    EXPECT_EQ(branches.Take(second), Keys{L"N1"});
    EXPECT_EQ(branches.Take(nullptr), Keys{});
}

TEST_F(OpenBranchesTest, WhatIsKeptLastCounts) {
    const auto tree = Make<cNodes>();
    branches.Keep(tree, {L"N1"});
    branches.Keep(tree, {L"N2"});
    EXPECT_EQ(branches.Take(tree), Keys{L"N2"});
    branches.Keep(tree, {L"N1"});
    branches.Keep(tree, {});
    EXPECT_EQ(branches.Take(tree), Keys{}) << "all were closed";
}

TEST_F(OpenBranchesTest, OnlyTheLastTreesAreRemembered) {
    std::vector<Ref<cNodes>> trees;
    for (std::size_t each = 0; each <= dialogs::OpenBranches::MostTrees; ++each) {
        trees.push_back(Make<cNodes>());
        branches.Keep(trees.back(), {L"N1"});
        branches.Keep(Make<cNodes>(), {}); // nothing is open there: it takes no place
    }
    EXPECT_EQ(branches.Take(trees.front()), Keys{});
    for (std::size_t each = 1; each < trees.size(); ++each)
        EXPECT_EQ(branches.Take(trees[each]), Keys{L"N1"}) << each;
}

TEST_F(OpenBranchesTest, NoTreeIsKeptAlive) {
    auto tree = Make<cNodes>();
    const WeakRef<cNodes> weak(tree);
    branches.Keep(tree, {L"N1"});
    tree = nullptr;
    EXPECT_FALSE(weak.Lock());
}

} // namespace kestrel::test
