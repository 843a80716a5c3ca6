#include "relations/NodeChains.h"

#include <utility>

namespace kestrel {

void NodeChains::Reserve(std::size_t count) {
    mvarEntries.reserve(count);
    std::size_t chains = 16;
    while (chains < count)
        chains *= 2;
    if (chains > mvarLasts.size()) Widen(chains);
}

void NodeChains::Append(std::uint32_t hash, const cNode& node) {
    if (mvarCount == mvarLasts.size()) Widen(mvarLasts.empty() ? 16 : mvarLasts.size() * 2);
    Link(NewEntry(hash, node));
    ++mvarCount;
}

NodeChains::Place NodeChains::NewEntry(std::uint32_t hash, const cNode& node) {
    if (mvarFree == None) {
        mvarEntries.push_back({&node, hash, None});
        return static_cast<Place>(mvarEntries.size());
    }
    const Place place = mvarFree;
    mvarFree = std::exchange(At(place), {&node, hash, None}).next;
    return place;
}

void NodeChains::Link(Place place) noexcept {
    Entry& entry = At(place);
    Place& last = mvarLasts[entry.hash & (mvarLasts.size() - 1)];
    entry.next = last != None ? std::exchange(At(last).next, place) : place;
    last = place;
}

void NodeChains::Remove(std::uint32_t hash, const cNode& node) {
    Place& last = mvarLasts[hash & (mvarLasts.size() - 1)];
    Place before = last;
    while (At(At(before).next).node != &node || At(At(before).next).hash != hash)
        before = At(before).next;
    const Place place = At(before).next;
    At(before).next = At(place).next;
    if (place == last) last = place == before ? None : before;
    At(place) = {nullptr, 0, std::exchange(mvarFree, place)};
    --mvarCount;
}

void NodeChains::Clear() noexcept {
    mvarLasts = {};
    mvarEntries = {};
    mvarFree = None;
    mvarCount = 0;
}

// Entries come in their places' order, which is that in which they came as long as none was taken out.
void NodeChains::Widen(std::size_t chains) {
    mvarLasts.assign(chains, None);
    for (std::size_t offset = 0; offset < mvarEntries.size(); ++offset)
        if (mvarEntries[offset].node != nullptr) Link(static_cast<Place>(offset) + 1);
}

} // namespace kestrel
