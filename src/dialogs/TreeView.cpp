#include "dialogs/TreeView.h"

#include <cstring>

#include "dialogs/Waiting.h"

namespace kestrel::dialogs {

void TreeView::SetItems(std::vector<Item> items) {
    if (items == mvarItems) return;
    const auto expanded = ExpandedKeys();
    const NoRedraw quiet(Window());
    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    mvarHandles.clear();
    mvarItems = std::move(items);
    InsertAll();
    for (const auto& key : expanded)
        if (const HTREEITEM item = Find(key)) Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

// Level by level from the top, however deep the tree is: a parent may stand after its children in the list.
void TreeView::InsertAll() {
    std::vector<std::vector<std::size_t>> children(mvarItems.size());
    std::vector<HTREEITEM> handles(mvarItems.size());
    std::vector<std::size_t> open;
    for (std::size_t place = 0; place < mvarItems.size(); ++place) {
        const std::size_t parent = mvarItems[place].parent;
        (parent < mvarItems.size() ? children[parent] : open).push_back(place);
    }
    for (std::size_t next = 0; next < open.size(); ++next) {
        const std::size_t place = open[next];
        const Item& item = mvarItems[place];
        handles[place] = Insert(item, place, item.parent < handles.size() ? handles[item.parent] : TVI_ROOT);
        mvarHandles[item.key] = handles[place];
        open.insert(open.end(), children[place].begin(), children[place].end());
    }
}

HTREEITEM TreeView::Insert(const Item& item, std::size_t place, HTREEITEM parent) const noexcept {
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM;
    insertion.item.pszText = const_cast<wchar_t*>(item.text.c_str()); // read only; the structure serves both directions
    insertion.item.lParam = static_cast<LPARAM>(place);
    return reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

bool TreeView::IsExpanded(HTREEITEM item) const noexcept {
    return (Send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

std::vector<String> TreeView::ExpandedKeys() const {
    std::vector<String> keys;
    for (const auto& [key, item] : mvarHandles)
        if (IsExpanded(item)) keys.push_back(key);
    return keys;
}

String TreeView::KeyOf(HTREEITEM item) const {
    TVITEMW wanted{};
    wanted.mask = TVIF_PARAM | TVIF_HANDLE;
    wanted.hItem = item;
    if (item == nullptr || Send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted)) == FALSE) return {};
    const auto place = static_cast<std::size_t>(wanted.lParam);
    return place < mvarItems.size() ? mvarItems[place].key : String();
}

String TreeView::SelectedKey() const { return KeyOf(Next(nullptr, TVGN_CARET)); }

HTREEITEM TreeView::Find(const String& key) const noexcept {
    const auto found = mvarHandles.find(key);
    return found == mvarHandles.end() ? nullptr : found->second;
}

void TreeView::Select(const String& key) const noexcept {
    const HTREEITEM item = Find(key);
    if (item == nullptr) return;
    Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    Send(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
}

HTREEITEM TreeView::HitTest(POINT screen) const noexcept {
    TVHITTESTINFO hit{};
    hit.pt = screen;
    ScreenToClient(Window(), &hit.pt);
    Send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    return (hit.flags & TVHT_ONITEM) != 0 ? hit.hItem : nullptr;
}

POINT TreeView::MenuPoint() const noexcept {
    RECT area{};
    const HTREEITEM selected = Next(nullptr, TVGN_CARET);
    std::memcpy(&area, &selected, sizeof(HTREEITEM)); // the message takes its question in its answer's place
    const bool visible = Send(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&area)) != FALSE;
    POINT point{visible ? area.left : 0, visible ? area.bottom : 0};
    ClientToScreen(Window(), &point);
    return point;
}

} // namespace kestrel::dialogs
