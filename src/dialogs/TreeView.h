// A tree view whose items carry keys.
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
    // before stay so.
    void SetItems(std::vector<Item> items);
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(Send(TVM_GETCOUNT)); }
    // Empty when nothing is selected.
    [[nodiscard]] String SelectedKey() const;
    // Makes the item visible and selects it; nothing when there is no such item.
    void Select(const String& key) const noexcept;
    [[nodiscard]] HTREEITEM Find(const String& key) const noexcept;
    [[nodiscard]] String KeyOf(HTREEITEM item) const;

    [[nodiscard]] HTREEITEM Child(HTREEITEM item) const noexcept { return Next(item, TVGN_CHILD); }
    [[nodiscard]] HTREEITEM NextSibling(HTREEITEM item) const noexcept { return Next(item, TVGN_NEXT); }
    [[nodiscard]] HTREEITEM Parent(HTREEITEM item) const noexcept { return Next(item, TVGN_PARENT); }
    // The item at a point of the screen, or null.
    [[nodiscard]] HTREEITEM HitTest(POINT screen) const noexcept;
    // Where a menu for the selected item belongs, on the screen.
    [[nodiscard]] POINT MenuPoint() const noexcept;

  private:
    [[nodiscard]] HTREEITEM Next(HTREEITEM item, UINT direction) const noexcept {
        return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, direction, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM Insert(const Item& item, std::size_t place, HTREEITEM parent) const noexcept;
    void InsertAll();
    [[nodiscard]] bool IsExpanded(HTREEITEM item) const noexcept;
    [[nodiscard]] std::vector<String> ExpandedKeys() const;

    std::vector<Item> mvarItems; // by the place that each tree item carries
    std::unordered_map<String, HTREEITEM> mvarHandles;
};

} // namespace kestrel::dialogs
