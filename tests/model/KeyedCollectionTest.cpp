#include <gtest/gtest.h>

#include "common/KeyedCollection.h"
#include "engine/BandKeys.h"
#include "support/Failures.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

using Strings = KeyedCollection<String>;

Strings ThreeItems() {
    Strings items;
    items.Append(L"one", L"a");
    items.Append(L"two", L"b");
    items.Append(L"three", L"c");
    return items;
}

} // namespace

class KeyedCollectionTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(KeyedCollectionTest, FindsItemsByKeyAndByPosition) {
    const auto items = ThreeItems();
    EXPECT_EQ(items.Count(), 3);
    EXPECT_EQ(items.At(1), L"one");
    EXPECT_EQ(items.At(3), L"three");
    EXPECT_EQ(items.At(L"b"), L"two");
    EXPECT_EQ(items.PositionOf(L"c"), 3);
    EXPECT_EQ(items.PositionOf(2), 2);
    EXPECT_EQ(items.Find(L"three"), 3);
    EXPECT_EQ(items.Find(L"four"), 0);
}

// A few keys are compared one by one, many are hashed: nobody can tell.
TEST_F(KeyedCollectionTest, FindsAKeyAmongAFewAsAmongMany) {
    KeyedCollection<String> exact;
    KeyedCollection<String, BandKeys> folded;
    for (int count = 1; count <= 20; ++count) {
        const String name = L"Band " + ToText(count);
        exact.Append(name, name);
        folded.Append(name, name);
        exact.AppendWithoutKey(L"no key");
        for (int wanted = 1; wanted <= 21; ++wanted) {
            const String number = ToText(wanted);
            const bool isThere = wanted <= count;
            EXPECT_EQ(exact.HasKey(L"Band " + number), isThere) << count;
            EXPECT_FALSE(exact.HasKey(L"band " + number)) << count;
            for (const wchar_t* spelling : {L"Band ", L"bAND "}) {
                const auto* found = folded.FindByKey(spelling + number);
                EXPECT_EQ(found != nullptr ? *found : String(), isThere ? L"Band " + number : String()) << count;
            }
        }
        EXPECT_FALSE(exact.HasKey(L""));
    }
}

TEST_F(KeyedCollectionTest, RefusesPositionsOutsideTheRange) {
    const auto items = ThreeItems();
    for (const std::int64_t position :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{4}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min(), std::int64_t{4294967297}}) {
        EXPECT_FAILURE(items.At(position), OutOfRange) << position;
        EXPECT_FAILURE(items.PositionOf(position), OutOfRange) << position;
    }
    EXPECT_FAILURE(Strings().At(1), OutOfRange);
}

TEST_F(KeyedCollectionTest, RefusesUnknownKeysAndNoKey) {
    const auto items = ThreeItems();
    EXPECT_FAILURE(items.At(L"d"), InvalidCall);
    EXPECT_FAILURE(items.At(L""), InvalidCall);
    EXPECT_FAILURE(items.At(IndexKey()), InvalidCall);
    EXPECT_FAILURE(items.PositionOf(L"A"), InvalidCall);
}

TEST_F(KeyedCollectionTest, RefusesASecondItemWithTheKeyAndStaysAsItWas) {
    auto items = ThreeItems();
    EXPECT_FAILURE(items.Append(L"four", L"b"), DuplicateKey);
    EXPECT_FAILURE(items.Insert(L"four", L"b", 1), DuplicateKey);
    EXPECT_EQ(items.Snapshot(), (std::vector<String>{L"one", L"two", L"three"}));
    EXPECT_EQ(items.At(L"b"), L"two");
}

TEST_F(KeyedCollectionTest, InsertsAtThePositionAndMovesTheRestUp) {
    auto items = ThreeItems();
    items.Insert(L"zero", L"z", 1);
    items.Insert(L"between", L"m", 3);
    items.Insert(L"last", L"l", 6);
    EXPECT_EQ(items.Snapshot(), (std::vector<String>{L"zero", L"one", L"between", L"two", L"three", L"last"}));
    EXPECT_EQ(items.PositionOf(L"b"), 4);
}

TEST_F(KeyedCollectionTest, ReachesItemsWithoutKeyByPositionOnly) {
    Strings items;
    items.AppendWithoutKey(L"one");
    items.AppendWithoutKey(L"one");
    items.InsertWithoutKey(L"zero", 1);
    EXPECT_EQ(items.At(1), L"zero");
    EXPECT_EQ(items.At(3), L"one");
    EXPECT_FAILURE(items.At(L"one"), InvalidCall);
    EXPECT_FAILURE(items.At(L""), InvalidCall);
    items.Append(L"one", L"one");
    EXPECT_EQ(items.PositionOf(L"one"), 4);
}

TEST_F(KeyedCollectionTest, FreesTheKeyOfWhatItRemoves) {
    auto items = ThreeItems();
    EXPECT_EQ(items.Remove(2), L"two");
    EXPECT_FALSE(items.HasKey(L"b"));
    items.Append(L"again", L"b");
    EXPECT_EQ(items.Snapshot(), (std::vector<String>{L"one", L"three", L"again"}));
}

TEST_F(KeyedCollectionTest, IsEmptyAndUsableAfterClear) {
    auto items = ThreeItems();
    items.Clear();
    EXPECT_EQ(items.Count(), 0);
    items.Append(L"one", L"a");
    EXPECT_EQ(items.At(L"a"), L"one");
}

TEST_F(KeyedCollectionTest, ComparesKeysAsItsPolicyFoldsThem) {
    KeyedCollection<String, BandKeys> items;
    items.Append(L"year", L"Year");
    EXPECT_EQ(items.At(L"YEAR"), L"year");
    EXPECT_EQ(items.PositionOf(L"yEAR"), 1);
    EXPECT_FAILURE(items.Append(L"other", L"year"), DuplicateKey);
    items.Remove(1);
    EXPECT_FALSE(items.HasKey(L"Year"));
}

TEST_F(KeyedCollectionTest, TakesKeysWithNulsAndAMillionCharacters) {
    Strings items;
    const String nul(1, L'\0');
    const String longKey(1'000'000, L'k');
    items.Append(L"nul", nul);
    items.Append(L"two nuls", nul + nul);
    items.Append(L"long", longKey);
    EXPECT_EQ(items.At(nul + nul), L"two nuls");
    EXPECT_EQ(items.At(longKey), L"long");
    EXPECT_FAILURE(items.At(longKey + L"k"), InvalidCall);
}

} // namespace kestrel::test
