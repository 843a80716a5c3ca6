#include <memory>

#include <gtest/gtest.h>

#include "common/Event.h"

namespace kestrel::test {

TEST(EventTest_Raise, CallsTheHandlersInOrderOnTheSameArguments) {
    Event<int&> event;
    const auto first = event.Subscribe([](int& value) { value = value * 10 + 1; });
    const auto second = event.Subscribe([](int& value) { value = value * 10 + 2; });
    int value = 0;
    event.Raise(value);
    EXPECT_EQ(value, 12);
}

TEST(EventTest_Raise, CallsNoHandlerWhoseSubscriptionHasEnded) {
    Event<> event;
    int calls = 0;
    {
        const auto scoped = event.Subscribe([&] { ++calls; });
        EXPECT_TRUE(event.HasSubscribers());
        event.Raise();
    }
    EXPECT_FALSE(event.HasSubscribers());
    event.Raise();
    EXPECT_EQ(calls, 1);
}

TEST(EventTest_Raise, SkipsAHandlerThatAnEarlierOneUnsubscribed) {
    Event<> event;
    Subscription second;
    int calls = 0;
    const auto first = event.Subscribe([&] { second.End(); });
    second = event.Subscribe([&] { ++calls; });
    event.Raise();
    EXPECT_EQ(calls, 0);
}

TEST(EventTest_Raise, LeavesAHandlerSubscribedMeanwhileForTheNextTime) {
    Event<> event;
    std::vector<Subscription> late;
    int calls = 0;
    const auto first = event.Subscribe([&] { late.push_back(event.Subscribe([&] { ++calls; })); });
    event.Raise();
    EXPECT_EQ(calls, 0);
    event.Raise();
    EXPECT_EQ(calls, 1);
}

TEST(EventTest_Raise, LetsAHandlerEndItsOwnSubscription) {
    Event<> event;
    int calls = 0;
    Subscription own;
    own = event.Subscribe([&] {
        ++calls;
        own.End();
    });
    event.Raise();
    event.Raise();
    EXPECT_EQ(calls, 1);
}

TEST(EventTest_Raise, CanBeNested) {
    Event<int> event;
    int sum = 0;
    const auto handler = event.Subscribe([&](int depth) {
        sum += depth;
        if (depth > 0) event.Raise(depth - 1);
    });
    event.Raise(4);
    EXPECT_EQ(sum, 10);
}

TEST(EventTest_Raise, OutlivesTheEventThatAHandlerEnds) {
    auto event = std::make_unique<Event<>>();
    int calls = 0;
    const auto first = event->Subscribe([&] { event.reset(); });
    const auto second = event->Subscribe([&] { ++calls; });
    event->Raise();
    EXPECT_EQ(calls, 1);
}

TEST(EventTest_Subscription, MayOutliveItsEvent) {
    auto event = std::make_unique<Event<>>();
    auto subscription = event->Subscribe([] {});
    event.reset();
    EXPECT_NO_THROW(subscription.End());
}

TEST(EventTest_Subscription, EndsTheOneThatItReplaces) {
    Event<int&> event;
    auto subscription = event.Subscribe([](int& value) { value += 1; });
    subscription = event.Subscribe([](int& value) { value += 10; });
    int value = 0;
    event.Raise(value);
    EXPECT_EQ(value, 10);
}

} // namespace kestrel::test
