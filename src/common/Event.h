// A typed event: an ordered list of handlers, called one after the other on the caller's thread with the same
// arguments.
//
// Invariants: a raise calls the handlers that were subscribed when it began and still are when their turn comes; a
// handler may subscribe, end any subscription (its own too), raise again, or end the object that owns the event.
// A handler that throws (for want of memory) ends the raise: its failure is that of the operation.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace kestrel {

// Ends a subscription when it goes out of scope; outliving the event is harmless.
class Subscription {
  public:
    Subscription() noexcept = default;
    explicit Subscription(std::shared_ptr<bool> active) noexcept : mvarActive(std::move(active)) {}
    Subscription(Subscription&& other) noexcept = default;
    Subscription& operator=(Subscription&& other) noexcept {
        End();
        mvarActive = std::move(other.mvarActive);
        return *this;
    }
    // One subscription has one owner: a copy would end it twice.
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { End(); }

    void End() noexcept {
        if (mvarActive) *mvarActive = false;
        mvarActive.reset();
    }

  private:
    std::shared_ptr<bool> mvarActive;
};

template <class... Args>
class Event {
  public:
    using Handler = std::function<void(Args...)>;

    Event() = default;
    // Subscribers belong to one object's event.
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    [[nodiscard]] Subscription Subscribe(Handler handler) {
        DropEnded();
        auto active = std::make_shared<bool>(true);
        mvarSlots.push_back(std::make_shared<Slot>(Slot{std::move(handler), active}));
        return Subscription(std::move(active));
    }

    [[nodiscard]] bool HasSubscribers() const noexcept {
        return std::any_of(mvarSlots.begin(), mvarSlots.end(), [](const auto& slot) { return *slot->active; });
    }

    // By-reference arguments are seen by each handler as the handler before left them.
    void Raise(Args... args) const {
        if (mvarSlots.empty()) return;
        const auto snapshot = mvarSlots; // a handler may change the list, or end this event with its owner
        for (const auto& slot : snapshot)
            if (*slot->active) slot->handler(args...);
    }

  private:
    struct Slot {
        Handler handler;
        std::shared_ptr<bool> active;
    };

    void DropEnded() {
        mvarSlots.erase(
            std::remove_if(mvarSlots.begin(), mvarSlots.end(), [](const auto& slot) { return !*slot->active; }),
            mvarSlots.end());
    }

    std::vector<std::shared_ptr<Slot>> mvarSlots;
};

} // namespace kestrel
