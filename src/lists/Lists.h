// An ordered collection of List items keyed by their names, whose changes can be vetoed, and its one-line text form.
//
// Keys compare exactly; positions are 1-based. While an event is raised the collection is whole; a handler may change
// it. After a handler returns, what it changed counts: an item that it removed meanwhile is not removed again.
//
// Text form: records joined by ";", each Name,ForeignName,Value[,Description]. ForeignName is empty where it equals
// Name without regard to case; Description is left out where it has no text. Nothing is escaped: a name or value that
// holds
// "," or ";" does not survive.
#pragma once

#include <vector>

#include "common/Event.h"
#include "common/KeyedCollection.h"
#include "lists/List.h"

namespace kestrel {

class Lists final : public Exposed {
  public:
    // Makes an item and appends it. An empty Name fails with 2003, a list of style lsMulriple with 2006, a veto with
    // 2022 followed by the veto's Description, a name already used with 457.
    Ref<List> Add(const String& name, const String& foreignName = {}, const String& value = {},
                  const String& description = {});
    // An unknown name fails with 5, a position outside 1 to Count() with 9.
    [[nodiscard]] Ref<List> Item(const IndexKey& indexKey) const { return mvarItems.At(indexKey); }
    [[nodiscard]] std::int32_t Count() const noexcept { return mvarItems.Count(); }
    // Fails as Item does; a veto fails with 2015 followed by the veto's Description and removes nothing.
    void Remove(const IndexKey& indexKey);
    // The items in order, as they are now.
    [[nodiscard]] std::vector<Ref<List>> Snapshot() const { return mvarItems.Snapshot(); }

    Event<> CollectionChanged;
    // Name, Cancel, Description
    Event<String&, bool&, String&> BeforeRemove;
    // Name, Cancel, Description, Index: the position that the item would take
    Event<String&, bool&, String&, std::int32_t&> BeforeAdd;

    // For the rule and the dialogs.
    [[nodiscard]] ListStyles ListStyle() const noexcept { return mvarStyle; }
    void SetListStyle(ListStyles style) noexcept { mvarStyle = style; }
    // Where a new item goes; with neither Before nor After at the end. No item fails with 2003, a veto with 2022, an
    // unknown place as Item does, a name already used with 457.
    void InsertItem(const Ref<List>& item, const IndexKey& before = {}, const IndexKey& after = {});
    // Moves an item just before or just after another one and raises CollectionChanged. Neither or both of Before and
    // After, or an unknown item or place, fail with 2003; a move that leaves the order unchanged with 2008.
    void MoveItem(const IndexKey& indexKey, const IndexKey& before, const IndexKey& after);
    // The item that has that name as its key; nothing when none has.
    [[nodiscard]] Ref<List> Find(const String& name) const;
    // Whether an item has that name as its key.
    [[nodiscard]] bool HasKey(const String& name) const { return mvarItems.HasKey(name); }
    // The position of the item with that name, 0 when there is none.
    [[nodiscard]] std::int32_t FindItemPosition(const String& name) const;
    // The position of this very item, 0 when the list does not hold it.
    [[nodiscard]] std::int32_t FindItemPosition(const Ref<List>& item) const { return mvarItems.Find(item); }
    // Removes every item through Remove, last first.
    void ClearItems();
    // Removes every item past all vetoes; one CollectionChanged when there was any.
    void Empty();
    // Replaces all items by these, without any event.
    void Assign(const std::vector<Ref<List>>& items);
    // Appends the item without any event; by its position only where its name is another one's key.
    void AppendQuietly(const Ref<List>& item);
    // Whether the list holds this very item; in constant time where its name is its key.
    [[nodiscard]] bool Holds(const Ref<List>& item) const;

    [[nodiscard]] String ListsText() const;
    // An empty text changes nothing; otherwise all items go without events and each record is added through Add, whose
    // first failure ends the reading.
    void SetListsText(const String& text);

  private:
    [[nodiscard]] std::int32_t InsertPosition(const IndexKey& before, const IndexKey& after) const;
    void Place(const Ref<List>& item, std::int32_t position);

    KeyedCollection<Ref<List>> mvarItems;
    ListStyles mvarStyle = lsMulriple;
};

} // namespace kestrel
