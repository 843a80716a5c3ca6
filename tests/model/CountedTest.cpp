#include <gtest/gtest.h>

#include "common/Counted.h"

namespace kestrel::test {

namespace {

class Item final : public Counted {
  public:
    explicit Item(int* ended = nullptr) : mvarEnded(ended) {}
    ~Item() override {
        foundItself = static_cast<bool>(self.Lock());
        if (mvarEnded != nullptr) *mvarEnded += foundItself ? 100 : 1;
    }

    WeakRef<Item> self;
    bool foundItself = false;

  private:
    int* mvarEnded;
};

} // namespace

TEST(CountedTest_Ref, KeepsTheObjectUntilTheLastOneGoes) {
    int ended = 0;
    auto first = Make<Item>(&ended);
    auto second = first;
    EXPECT_EQ(first->References(), 2U);
    EXPECT_EQ(first, second);
    first = nullptr;
    EXPECT_EQ(ended, 0);
    second = nullptr;
    EXPECT_EQ(ended, 1);
}

TEST(CountedTest_Ref, MovesWithoutCounting) {
    auto first = Make<Item>();
    const auto second = std::move(first);
    EXPECT_EQ(second->References(), 1U);
}

TEST(CountedTest_Ref, CanBeAssignedToItself) {
    int ended = 0;
    auto item = Make<Item>(&ended);
    const auto& same = item;
    item = same;
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(item->References(), 1U);
}

TEST(CountedTest_Ref, IsNothingByDefault) {
    const Ref<Item> none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none, Ref<Item>(nullptr));
}

TEST(CountedTest_WeakRef, DoesNotKeepTheObject) {
    int ended = 0;
    auto item = Make<Item>(&ended);
    const WeakRef<Item> weak(item);
    EXPECT_EQ(weak.Lock(), item);
    EXPECT_EQ(item->References(), 1U);
    item = nullptr;
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(weak.Lock());
}

TEST(CountedTest_WeakRef, FindsNothingWhileTheObjectIsEnding) {
    int ended = 0;
    auto item = Make<Item>(&ended);
    item->self = WeakRef<Item>(item);
    item = nullptr;
    EXPECT_EQ(ended, 1);
}

TEST(CountedTest_WeakRef, OfNothingLocksToNothing) {
    EXPECT_FALSE(WeakRef<Item>().Lock());
    EXPECT_FALSE(WeakRef<Item>(Ref<Item>()).Lock());
}

} // namespace kestrel::test
