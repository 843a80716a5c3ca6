// An ordered collection of plain strings, such as the names of the bands that a band tracks.
//
// Invariants: strings added through Add are unique among themselves, each its own key (compared exactly); strings that
// came through ImportNames or Append have no key and are reached by position only. Positions are 1-based.
#pragma once

#include <vector>

#include "common/Event.h"
#include "common/Exposed.h"
#include "common/KeyedCollection.h"

namespace kestrel {

class Names final : public Exposed {
  public:
    // Appends the text and returns it. A veto fails with 2022 followed by the veto's Description, a text already added
    // with 457.
    String Add(const String& value);
    // An unknown key fails with 5, a position outside 1 to Count() with 9.
    [[nodiscard]] String Item(const IndexKey& indexKey) const { return mvarItems.At(indexKey); }
    [[nodiscard]] std::int32_t Count() const noexcept { return mvarItems.Count(); }
    // The string at the position, 1 to Count(); as long as the collection does not change.
    [[nodiscard]] const String& operator[](std::int32_t position) const { return mvarItems[position]; }
    // Whether NamesText is empty: there is no string, or one without text.
    [[nodiscard]] bool IsBlank() const noexcept { return Count() == 0 || (Count() == 1 && mvarItems[1].empty()); }
    // Fails as Item does; raises nothing.
    void Remove(const IndexKey& indexKey) { mvarItems.Remove(mvarItems.PositionOf(indexKey)); }
    // The strings in order, as they are now.
    [[nodiscard]] std::vector<String> Snapshot() const { return mvarItems.Snapshot(); }

    // Replaces all strings by the pieces of the text between ";", empty and repeated ones included; an empty text
    // leaves none. Raises nothing.
    void ImportNames(const String& definitions);
    // Appends the text without a key; raises nothing, and a text may come again.
    void Append(const String& value) { mvarItems.AppendWithoutKey(value); }
    // All strings joined with ",", which ImportNames does not read: who reads this text adds each name through Add.
    [[nodiscard]] String NamesText() const { return Join(Snapshot(), L","); }

    // Enums; for hosts, raised by nothing here.
    Event<String&> GetEnums;
    // Name, Cancel, Description
    Event<const String&, bool&, String&> BeforeAdd;

  private:
    KeyedCollection<String> mvarItems;
};

} // namespace kestrel
