// Nodes by a hash of a text of theirs, those of one hash in the order in which they came. All lie in two arrays, so
// that a large tree is looked up through little memory, and texts whose hashes are next to each other through the same.
//
// Nodes are not held: whoever puts one in takes it out, or drops the chains, before it ends.
#pragma once

#include <cstdint>
#include <vector>

namespace kestrel {

class cNode;

class NodeChains {
  public:
    // Makes room for so many in all.
    void Reserve(std::size_t count);
    // Behind those that are there under the hash.
    void Append(std::uint32_t hash, const cNode& node);
    // Takes out the first entry of that node under the hash; there is one.
    void Remove(std::uint32_t hash, const cNode& node);
    void Clear() noexcept;
    [[nodiscard]] std::size_t Count() const noexcept { return mvarCount; }

    // The first node under the hash for which matches(node) holds; null when there is none.
    template <class Predicate>
    [[nodiscard]] const cNode* Find(std::uint32_t hash, Predicate matches) const {
        const Place last = LastOf(hash);
        for (Place place = last; place != None;) {
            const Entry& entry = At(place = At(place).next);
            if (entry.hash == hash && matches(*entry.node)) return entry.node;
            if (place == last) break;
        }
        return nullptr;
    }

  private:
    using Place = std::uint32_t; // in the list of entries, from 1
    static constexpr Place None = 0;
    struct Entry {
        const cNode* node = nullptr;
        std::uint32_t hash = 0;
        Place next = None; // of the same chain, after its last entry the first; of a free entry the next free one
    };

    [[nodiscard]] Place LastOf(std::uint32_t hash) const noexcept {
        return mvarLasts.empty() ? None : mvarLasts[hash & (mvarLasts.size() - 1)];
    }
    [[nodiscard]] const Entry& At(Place place) const noexcept { return mvarEntries[place - 1]; }
    [[nodiscard]] Entry& At(Place place) noexcept { return mvarEntries[place - 1]; }
    [[nodiscard]] Place NewEntry(std::uint32_t hash, const cNode& node);
    void Link(Place place) noexcept;
    void Widen(std::size_t chains);

    std::vector<Place> mvarLasts; // of each chain the last entry; as many as a power of two, or none
    std::vector<Entry> mvarEntries;
    Place mvarFree = None; // the first of the entries that are free
    std::size_t mvarCount = 0;
};

} // namespace kestrel
