// An ordered collection whose items may carry a unique key: the storage behind every collection of the library but
// trees, whose nodes are found with less memory (NodeList).
//
// Invariants: positions run from 1 to Count(); no two items have the same key; an item without a key is reached by
// position only. `Fold` maps a key to the form in which keys are compared (unchanged for exact keys), `IsSame` tells
// whether it is that form of a key.
// A lookup by key or position takes constant time; a position is found, and a place in the middle filled, in one pass.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/Error.h"
#include "common/IndexKey.h"
#include "common/KeyHash.h"

namespace kestrel {

struct ExactKeys {
    static const String& Fold(const String& key) noexcept { return key; }
    static bool IsSame(const String& folded, const String& key) noexcept { return folded == key; }
};

template <class Item, class Keys = ExactKeys>
class KeyedCollection {
  public:
    [[nodiscard]] std::int32_t Count() const noexcept { return static_cast<std::int32_t>(mvarEntries.size()); }
    [[nodiscard]] bool HasKey(const String& key) const { return FindByKey(key) != nullptr; }

    // Whether it names an item of this collection.
    [[nodiscard]] bool Knows(const IndexKey& indexKey) const {
        if (const auto* position = indexKey.Position()) return *position >= 1 && *position <= Count();
        return indexKey.Key() != nullptr && HasKey(*indexKey.Key());
    }

    // An unknown key or no key at all fails with 5, a position outside 1 to Count() with 9, what names nothing with its
    // own refusal.
    [[nodiscard]] const Item& At(const IndexKey& indexKey) const {
        if (const auto* position = indexKey.Position()) return mvarEntries[CheckedOffset(*position)].item;
        return KeyEntry(indexKey).second;
    }
    // Null when no item has the key.
    [[nodiscard]] const Item* FindByKey(const String& key) const {
        return mvarEntries.size() <= FewKeys ? FindAmongFew(key) : FindAmongMany(key);
    }
    [[nodiscard]] const Item& operator[](std::int32_t position) const {
        return mvarEntries[static_cast<std::size_t>(position) - 1].item;
    }

    // The position of the item named; fails as At does.
    [[nodiscard]] std::int32_t PositionOf(const IndexKey& indexKey) const {
        if (const auto* position = indexKey.Position()) return static_cast<std::int32_t>(CheckedOffset(*position)) + 1;
        const String* key = &KeyEntry(indexKey).first;
        return FindIf([key](const Entry& entry) { return entry.key == key; });
    }

    // The position of the first item that is this one; 0 when there is none.
    [[nodiscard]] std::int32_t Find(const Item& item) const {
        return FindIf([&item](const Entry& entry) { return entry.item == item; });
    }

    // Where the item at `from` stands after a move just before or just after another one. Neither or both of the two
    // places, or an unknown one, fail with 2003, a move that leaves the order unchanged with 2008.
    [[nodiscard]] std::int32_t MovedPosition(std::int32_t from, const IndexKey& before, const IndexKey& after) const {
        const auto& place = before.IsMissing() ? after : before;
        if (before.IsMissing() == after.IsMissing() || !Knows(place)) throw Error(Message::InvalidParameter);
        const auto to = PositionOf(place) + (before.IsMissing() ? 1 : 0); // with the item itself still counted
        if (to == from || to == from + 1) throw Error(Message::NoDragNeeded);
        return to > from ? to - 1 : to;
    }

    void Append(Item item, const String& key) { Insert(std::move(item), key, Count() + 1); }
    void AppendWithoutKey(Item item) { mvarEntries.push_back({std::move(item), nullptr}); }

    // The item takes the position 1 to Count() + 1; those from there on move up. A key already used fails with 457.
    void Insert(Item item, const String& key, std::int32_t position) {
        const auto [place, added] = mvarKeys.emplace(Keys::Fold(key), item);
        if (!added) throw Error(Message::DuplicateKey);
        InsertEntry({std::move(item), &place->first}, position);
    }
    void InsertWithoutKey(Item item, std::int32_t position) { InsertEntry({std::move(item), nullptr}, position); }

    // The item that stood at the position, 1 to Count().
    Item Remove(std::int32_t position) {
        const auto entry = mvarEntries.begin() + (position - 1);
        Item item = std::move(entry->item);
        Forget(*entry);
        mvarEntries.erase(entry);
        return item;
    }

    // The items are let go only after the collection is empty.
    void Clear() {
        const auto entries = std::exchange(mvarEntries, {});
        const auto keys = std::exchange(mvarKeys, {});
    }

    // All items in order, as they are now.
    [[nodiscard]] std::vector<Item> Snapshot() const {
        std::vector<Item> items;
        items.reserve(mvarEntries.size());
        for (const auto& entry : mvarEntries)
            items.push_back(entry.item);
        return items;
    }

  private:
    struct Entry {
        Item item{};
        const String* key = nullptr; // the key as it stands in mvarKeys; null for an item without one
    };

    // So many keys at most are compared one by one sooner than one is hashed.
    static constexpr std::size_t FewKeys = 8;

    [[nodiscard]] const Item* FindAmongFew(const String& key) const {
        for (const auto& entry : mvarEntries)
            if (entry.key != nullptr && Keys::IsSame(*entry.key, key)) return &entry.item;
        return nullptr;
    }
    [[nodiscard]] const Item* FindAmongMany(const String& key) const {
        const auto found = mvarKeys.find(Keys::Fold(key));
        return found != mvarKeys.end() ? &found->second : nullptr;
    }

    [[nodiscard]] std::size_t CheckedOffset(std::int64_t position) const {
        if (position < 1 || position > Count()) throw Error(Message::OutOfRange);
        return static_cast<std::size_t>(position) - 1;
    }

    [[nodiscard]] const std::pair<const String, Item>& KeyEntry(const IndexKey& indexKey) const {
        const auto found = indexKey.Key() != nullptr ? mvarKeys.find(Keys::Fold(*indexKey.Key())) : mvarKeys.end();
        if (found == mvarKeys.end()) throw Error(indexKey.Refusal());
        return *found;
    }

    template <class Predicate>
    [[nodiscard]] std::int32_t FindIf(Predicate matches) const {
        for (std::size_t i = 0; i < mvarEntries.size(); ++i)
            if (matches(mvarEntries[i])) return static_cast<std::int32_t>(i) + 1;
        return 0;
    }

    void InsertEntry(Entry entry, std::int32_t position) {
        mvarEntries.insert(mvarEntries.begin() + (position - 1), std::move(entry));
    }

    void Forget(const Entry& entry) {
        if (entry.key != nullptr) mvarKeys.erase(mvarKeys.find(*entry.key));
    }

    std::vector<Entry> mvarEntries;
    std::unordered_map<String, Item, KeyHash> mvarKeys;
};

} // namespace kestrel
