#include "dialogs/OpenBranches.h"

#include <gtest/gtest.h>

#include "support/StandIns.h"

namespace kestrel::test {

namespace {

using Keys = std::vector<String>;

class OpenBranchesTest : public testing::Test {
  protected:
    // Of four nodes, N1 to N4.
    static Ref<cNodes> Tree() {
        auto tree = Make<cNodes>();
        Fill(*tree);
        return tree;
    }
    static void Fill(cNodes& tree) {
        for (const auto* code : {L"1", L"2", L"3", L"4"})
            tree.Add({}, tvwFirst, code, String(L"Value ") + code);
    }

    dialogs::OpenBranches branches;

  private:
    StandIns mvarStandIns;
};

} // namespace

TEST_F(OpenBranchesTest, EachTreeHasItsOwn) {
    const auto first = Tree();
    const auto second = Tree();
    branches.Keep(first, {L"N1", L"N4"});
    branches.Keep(second, {L"N1"});
    EXPECT_EQ(branches.Take(first), (Keys{L"N1", L"N4"}));
    EXPECT_EQ(branches.Take(first), Keys{}) << "taken once";
    EXPECT_EQ(branches.Take(second), Keys{L"N1"});
    EXPECT_EQ(branches.Take(nullptr), Keys{});
}

TEST_F(OpenBranchesTest, WhatIsKeptLastCounts) {
    const auto tree = Tree();
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
        trees.push_back(Tree());
        branches.Keep(trees.back(), {L"N1"});
        branches.Keep(Tree(), {}); // nothing is open there: it takes no place
    }
    EXPECT_EQ(branches.Take(trees.front()), Keys{});
    for (std::size_t each = 1; each < trees.size(); ++each)
        EXPECT_EQ(branches.Take(trees[each]), Keys{L"N1"}) << each;
}

TEST_F(OpenBranchesTest, KeysThatOtherNodesHaveNowAreForgotten) {
    const auto tree = Tree();
    branches.Keep(tree, {L"N1", L"N3"});
    tree->Cls();
    Fill(*tree);
    EXPECT_EQ(branches.Take(tree), Keys{});
    branches.Keep(tree, {L"N1", L"N3", L"N9"});
    tree->Remove(L"N3");
    EXPECT_EQ(branches.Take(tree), Keys{L"N1"});
}

TEST_F(OpenBranchesTest, NoTreeIsKeptAlive) {
    auto tree = Tree();
    const WeakRef<cNodes> weak(tree);
    branches.Keep(tree, {L"N1"});
    tree = nullptr;
    EXPECT_FALSE(weak.Lock());
}

} // namespace kestrel::test
