#include "relations/NodeList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "support/Failures.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

Ref<cNode> NodeOf(const String& key) {
    auto node = Make<cNode>();
    node->SetKey(key);
    return node;
}

String KeysOf(const NodeList& list) {
    String keys;
    for (const auto& node : list.All())
        keys += node->Key();
    return keys;
}

class NodeListTest : public testing::Test {
  protected:
    NodeListTest() { Fill(L"abc"); }
    void Fill(StringView keys) {
        for (const wchar_t key : keys)
            mvarList.Insert(NodeOf(String(1, key)), mvarList.Count() + 1);
    }
    StandIns mvarStandIns;
    NodeList mvarList;
};

} // namespace

TEST_F(NodeListTest, FindsNodesByKeyAndByPosition) {
    EXPECT_EQ(mvarList.Count(), 3);
    EXPECT_EQ(mvarList.At(1)->Key(), L"a");
    EXPECT_EQ(mvarList.At(L"c"), mvarList[3]);
    EXPECT_EQ(mvarList.Find(L"b"), mvarList[2].Get());
    EXPECT_EQ(mvarList.Find(L"B"), nullptr);
    EXPECT_TRUE(mvarList.Knows(3) && mvarList.Knows(L"a"));
    EXPECT_FALSE(mvarList.Knows(4) || mvarList.Knows(0) || mvarList.Knows(L"d") || mvarList.Knows(IndexKey()));
}

TEST_F(NodeListTest, RefusesWhatNamesNothing) {
    for (const std::int64_t position :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{4}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min(), std::int64_t{4294967297}})
        EXPECT_FAILURE(mvarList.At(position), OutOfRange) << position;
    EXPECT_FAILURE(mvarList.At(L"d"), InvalidCall);
    EXPECT_FAILURE(mvarList.At(L""), InvalidCall);
    EXPECT_FAILURE(mvarList.At(IndexKey()), InvalidCall);
    EXPECT_FAILURE(mvarList.At(IndexKey::Unusable(Message::InvalidParameter)), InvalidParameter);
}

TEST_F(NodeListTest, RefusesASecondNodeWithTheKeyAndStaysAsItWas) {
    EXPECT_FAILURE(mvarList.Insert(NodeOf(L"b"), 1), DuplicateKey);
    EXPECT_EQ(KeysOf(mvarList), L"abc");
    EXPECT_EQ(mvarList.At(L"b"), mvarList[2]);
}

TEST_F(NodeListTest, InsertsAtThePositionAndFreesTheKeyOfWhatItRemoves) {
    mvarList.Insert(NodeOf(L"z"), 1);
    mvarList.Insert(NodeOf(L"m"), 3);
    EXPECT_EQ(KeysOf(mvarList), L"zambc");
    mvarList.Remove(3);
    EXPECT_EQ(mvarList.Find(L"m"), nullptr);
    mvarList.Insert(NodeOf(L"m"), 5);
    EXPECT_EQ(KeysOf(mvarList), L"zabcm");
}

TEST_F(NodeListTest, RemovesSeveralNodesInOnePass) {
    Fill(L"de");
    mvarList.Remove(std::vector<bool>{true, false, true, false, true});
    EXPECT_EQ(KeysOf(mvarList), L"bd");
    EXPECT_EQ(mvarList.Find(L"a"), nullptr);
    EXPECT_EQ(mvarList.Find(L"d"), mvarList[2].Get());
    mvarList.Remove(std::vector<bool>{true, true});
    EXPECT_EQ(mvarList.Count(), 0);
}

TEST_F(NodeListTest, IsEmptyAndUsableAfterClear) {
    mvarList.Clear();
    EXPECT_EQ(mvarList.Count(), 0);
    EXPECT_EQ(mvarList.Find(L"a"), nullptr);
    Fill(L"a");
    EXPECT_EQ(mvarList.At(L"a"), mvarList[1]);
}

// Against a plain list under random changes.
TEST_F(NodeListTest, KeepsWhatAPlainListKeeps) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same lists in every run
    std::vector<String> expected{L"a", L"b", L"c"};
    for (int step = 0; step < 5'000; ++step) {
        const auto place = random() % (expected.size() + 1);
        const String key = L"N" + ToText(static_cast<std::int64_t>(random() % 300));
        const bool known = std::find(expected.begin(), expected.end(), key) != expected.end();
        EXPECT_EQ(mvarList.Find(key) != nullptr, known);
        if (!known) {
            mvarList.Insert(NodeOf(key), static_cast<std::int32_t>(place) + 1);
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(place), key);
        } else if (place < expected.size()) {
            mvarList.Remove(static_cast<std::int32_t>(place) + 1);
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
        }
        ASSERT_EQ(static_cast<std::size_t>(mvarList.Count()), expected.size());
    }
    for (std::size_t place = 0; place < expected.size(); ++place)
        EXPECT_EQ(mvarList.At(IndexKey(expected[place])), mvarList[static_cast<std::int32_t>(place) + 1]);
}

} // namespace kestrel::test
