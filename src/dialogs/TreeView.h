// A tree view whose items carry keys.
//
// A large tree comes in steps, so that nobody waits for it: the first items at once, the others by InsertMore. Whoever
// asks for one that has not come yet gets it with all the others.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <unordered_map>

#include "dialogs/Control.h"

namespace kestrel::dialogs {

class TreeView : public Control {
  public:
    using Control::Control;

    static constexpr std::size_t NoParent = static_cast<std::size_t>(-1);
    struct Item {
        String key;
        String text;
        std::size_t parent = NoParent; // the place of the parent in the list of items; it may stand anywhere
        friend bool operator==(const Item& left, const Item& right) = default;
    };
    // Replaces all items; those it already has stay. Siblings stand in the order of the list. Items that were expanded
    // before stay so. What lies deeper than 256 levels is shown on the last of them, behind its parent.
    void SetItems(std::vector<Item> items);
    // Whether items of the list wait to be inserted.
    [[nodiscard]] bool IsGrowing() const noexcept { return !mvarWaiting.empty(); }
    // Inserts the next of those that wait; nothing when there is none.
    void InsertMore();
    // Removes an item and all below it; nothing when there is no such item.
    void Remove(const String& key);
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(Send(TVM_GETCOUNT)); }
    // Empty when nothing is selected.
    [[nodiscard]] String SelectedKey() const;
    // The keys of the items whose branches stand open.
    [[nodiscard]] std::vector<String> ExpandedKeys() const;
    // Opens the branches of those items; keys of which there is no item are passed over.
    void Expand(const std::vector<String>& keys);
    // Makes the item visible and selects it; nothing when there is no such item.
    void Select(const String& key);
    [[nodiscard]] HTREEITEM Find(const String& key);
    [[nodiscard]] String KeyOf(HTREEITEM item) const;

    // How many items stand below it, on all levels.
    [[nodiscard]] int CountDescendants(HTREEITEM item) const;
    [[nodiscard]] HTREEITEM Child(HTREEITEM item) const noexcept { return Next(item, TVGN_CHILD); }
    [[nodiscard]] HTREEITEM NextSibling(HTREEITEM item) const noexcept { return Next(item, TVGN_NEXT); }
    [[nodiscard]] HTREEITEM Parent(HTREEITEM item) const noexcept { return Next(item, TVGN_PARENT); }
    // The item at a point of the screen, or null.
    [[nodiscard]] HTREEITEM HitTest(POINT screen) const noexcept;
    // A disabled tree looks it.
    void SetEnabled(bool enabled) const noexcept;
    // Follows a change of the system's colours.
    void ShowColours() const noexcept;
    // Answers the tree's question how to draw: the selected item is marked clearly while the focus is elsewhere, too.
    static LRESULT Draw(NMTVCUSTOMDRAW& draw) noexcept;
    // Where a menu for the selected item belongs, on the screen.
    [[nodiscard]] POINT MenuPoint() const noexcept;

  private:
    [[nodiscard]] HTREEITEM Next(HTREEITEM item, UINT direction) const noexcept {
        return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, direction, reinterpret_cast<LPARAM>(item)));
    }
    static HTREEITEM Insert(const ControlItself& itself, const Item& item, HTREEITEM parent) noexcept;
    // The places in the list of what stands directly below each item; last, of what stands below none.
    [[nodiscard]] std::vector<std::vector<std::size_t>> ChildPlaces() const;
    // The place of the item in the list, then those of all below it; empty when there is no such item.
    [[nodiscard]] std::vector<std::size_t> Subtree(const String& key) const;
    struct Waiting {
        std::size_t place;
        HTREEITEM parent;
        std::size_t level;
    };
    void Insert(std::size_t most);
    void InsertNext(const ControlItself& itself);
    void LetWait(const std::vector<std::size_t>& places, HTREEITEM parent, std::size_t level);
    [[nodiscard]] HTREEITEM Known(const String& key) const noexcept;
    void KeepKnownItems();
    [[nodiscard]] bool IsExpanded(HTREEITEM item) const noexcept;

    std::vector<Item> mvarItems;
    std::vector<std::vector<std::size_t>> mvarChildren; // as ChildPlaces returns them, while items wait
    std::vector<Waiting> mvarWaiting;                   // the next one at the end
    std::unordered_map<String, HTREEITEM> mvarHandles;
    std::unordered_map<HTREEITEM, String> mvarKeys;
};

} // namespace kestrel::dialogs
