// A typed event: an ordered list of handlers, called one after the other on the caller's thread with the same
// arguments.
//
// Invariants: a raise calls the handlers that were subscribed when it began and still are when their turn comes; a
// handler may subscribe, end any subscription (its own too), raise again, or end the object that owns the event.
// A handler that throws (for want of memory) ends the raise: its failure is that of the operation.
#pragma once

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

// The handlers of an event, whatever their arguments.
class Handlers {
  public:
    struct Slot {
        std::shared_ptr<bool> active; // as long as its subscription has not ended
    };
    using List = std::vector<std::shared_ptr<Slot>>;

    // The slot comes last; those whose subscriptions have ended go.
    [[nodiscard]] Subscription Add(std::shared_ptr<Slot> slot);
    [[nodiscard]] bool HasAny() const noexcept;
    // The list as it is now, null when nobody has ever subscribed. It stays so for as long as somebody shares it.
    [[nodiscard]] const std::shared_ptr<List>& Shared() const noexcept { return mvarList; }

  private:
    std::shared_ptr<List> mvarList;
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
        return mvarHandlers.Add(std::make_shared<Slot>(std::move(handler)));
    }

    [[nodiscard]] bool HasSubscribers() const noexcept { return mvarHandlers.HasAny(); }

    // By-reference arguments are seen by each handler as the handler before left them.
    void Raise(Args... args) const {
        const auto slots = mvarHandlers.Shared(); // a handler may subscribe another, or end this event with its owner
        if (!slots) return;
        for (const auto& slot : *slots)
            if (*slot->active) static_cast<const Slot&>(*slot).handler(args...);
    }

  private:
    struct Slot : Handlers::Slot {
        explicit Slot(Handler called) : handler(std::move(called)) {}
        Handler handler;
    };

    Handlers mvarHandlers;
};

} // namespace kestrel
