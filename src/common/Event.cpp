#include "common/Event.h"

#include <algorithm>

namespace kestrel {

// A list that a raise goes through is left to it, and another one takes its place.
Subscription Handlers::Add(std::shared_ptr<Slot> slot) {
    if (mvarList.use_count() != 1) mvarList = mvarList ? std::make_shared<List>(*mvarList) : std::make_shared<List>();
    mvarList->erase(
        std::remove_if(mvarList->begin(), mvarList->end(), [](const auto& other) { return !*other->active; }),
        mvarList->end());
    auto active = std::make_shared<bool>(true);
    slot->active = active;
    mvarList->push_back(std::move(slot));
    return Subscription(std::move(active));
}

bool Handlers::HasAny() const noexcept {
    return mvarList && std::any_of(mvarList->begin(), mvarList->end(), [](const auto& slot) { return *slot->active; });
}

} // namespace kestrel
