#include "relations/NodeChains.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "relations/cNode.h"

namespace kestrel::test {

namespace {

// All nodes under the hash, in the order in which they are found.
std::vector<const cNode*> Under(const NodeChains& chains, std::uint32_t hash) {
    std::vector<const cNode*> found;
    static_cast<void>(chains.Find(hash, [&](const cNode& node) {
        found.push_back(&node);
        return false;
    }));
    return found;
}

class NodeChainsTest : public testing::Test {
  protected:
    NodeChainsTest() {
        for (int node = 0; node < 100; ++node)
            mvarNodes.push_back(Make<cNode>());
    }
    std::vector<Ref<cNode>> mvarNodes;
    NodeChains mvarChains;
};

} // namespace

TEST_F(NodeChainsTest, FindNothingWhileEmpty) {
    EXPECT_TRUE(Under(mvarChains, 7).empty());
    EXPECT_EQ(mvarChains.Count(), 0U);
}

TEST_F(NodeChainsTest, FindTheFirstThatMatchesInTheOrderInWhichTheyCame) {
    for (const auto& node : mvarNodes)
        mvarChains.Append(5, *node);
    EXPECT_EQ(mvarChains.Find(5, [](const cNode&) { return true; }), mvarNodes[0].Get());
    EXPECT_EQ(mvarChains.Find(5, [this](const cNode& node) { return &node == mvarNodes[70].Get(); }),
              mvarNodes[70].Get());
    EXPECT_EQ(mvarChains.Find(5, [](const cNode&) { return false; }), nullptr);
    EXPECT_TRUE(std::equal(mvarNodes.begin(), mvarNodes.end(), Under(mvarChains, 5).begin()));
}

// However few of its bits a table goes by.
TEST_F(NodeChainsTest, TellHashesApartThatShareAllBitsButOne) {
    for (unsigned bit = 0; bit < 32; ++bit)
        mvarChains.Append(std::uint32_t{1} << bit, *mvarNodes[bit]);
    for (unsigned bit = 0; bit < 32; ++bit)
        EXPECT_EQ(Under(mvarChains, std::uint32_t{1} << bit), (std::vector<const cNode*>{mvarNodes[bit].Get()}));
    EXPECT_TRUE(Under(mvarChains, 0).empty());
}

TEST_F(NodeChainsTest, KeepWhatOneMapWithListsKeeps) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same chains in every run
    std::map<std::uint32_t, std::vector<const cNode*>> expected;
    for (int step = 0; step < 20'000; ++step) {
        const auto hash = static_cast<std::uint32_t>(random() % 40 * 0x10001);
        auto& list = expected[hash];
        if (random() % 5 < 3) {
            const cNode* node = mvarNodes[random() % mvarNodes.size()].Get();
            list.push_back(node);
            mvarChains.Append(hash, *node);
        } else if (!list.empty()) {
            const cNode* node = list[random() % list.size()];
            list.erase(std::find(list.begin(), list.end(), node));
            mvarChains.Remove(hash, *node);
        }
        // As sets: who comes after others were taken out may find a place before them when the table grows.
        auto found = Under(mvarChains, hash);
        auto wanted = list;
        std::sort(found.begin(), found.end());
        std::sort(wanted.begin(), wanted.end());
        ASSERT_EQ(found, wanted);
    }
    std::size_t count = 0;
    for (const auto& [hash, list] : expected)
        count += list.size();
    EXPECT_EQ(mvarChains.Count(), count);
    mvarChains.Clear();
    EXPECT_EQ(mvarChains.Count(), 0U);
    EXPECT_TRUE(Under(mvarChains, 0).empty());
    mvarChains.Append(3, *mvarNodes[3]);
    EXPECT_EQ(Under(mvarChains, 3), (std::vector<const cNode*>{mvarNodes[3].Get()}));
}

} // namespace kestrel::test
