#include "dialogs/TreeView.h"

#include <cstring>

#include "dialogs/Waiting.h"

namespace kestrel::dialogs {

namespace {

// A third of the colour of a selection on the window's own: the greys of some colour schemes cannot be told from white.
COLORREF PaleHighlight() noexcept {
    const COLORREF full = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF none = GetSysColor(COLOR_WINDOW);
    const auto mix = [](int highlight, int window) { return static_cast<BYTE>((highlight + 2 * window) / 3); };
    return RGB(mix(GetRValue(full), GetRValue(none)), mix(GetGValue(full), GetGValue(none)),
               mix(GetBValue(full), GetBValue(none)));
}

} // namespace

void TreeView::SetItems(std::vector<Item> items) {
    if (items == mvarItems) return;
    const auto expanded = items.empty() ? std::vector<String>() : ExpandedKeys();
    const NoRedraw quiet(Window());
    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    mvarHandles.clear();
    mvarKeys.clear();
    mvarItems = std::move(items);
    InsertAll();
    Expand(expanded);
}

void TreeView::Expand(const std::vector<String>& keys) const noexcept {
    for (const auto& key : keys)
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
        handles[place] = Insert(item, item.parent < handles.size() ? handles[item.parent] : TVI_ROOT);
        mvarHandles[item.key] = handles[place];
        mvarKeys[handles[place]] = item.key;
        open.insert(open.end(), children[place].begin(), children[place].end());
    }
}

HTREEITEM TreeView::Insert(const Item& item, HTREEITEM parent) const noexcept {
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = const_cast<wchar_t*>(item.text.c_str()); // read only; the structure serves both directions
    return reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

void TreeView::Remove(const String& key) {
    const HTREEITEM item = Find(key);
    if (item == nullptr) return;
    for (const HTREEITEM each : Subtree(item)) {
        mvarHandles.erase(KeyOf(each));
        mvarKeys.erase(each);
    }
    KeepKnownItems();
    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
}

// Parents are places in the list, so they move up with it.
void TreeView::KeepKnownItems() {
    std::vector<std::size_t> places(mvarItems.size(), NoParent);
    std::vector<Item> kept;
    for (std::size_t place = 0; place < mvarItems.size(); ++place) {
        if (Find(mvarItems[place].key) == nullptr) continue;
        places[place] = kept.size();
        kept.push_back(std::move(mvarItems[place]));
    }
    for (auto& item : kept)
        if (item.parent < places.size()) item.parent = places[item.parent];
    mvarItems = std::move(kept);
}

std::vector<HTREEITEM> TreeView::Subtree(HTREEITEM item) const {
    std::vector<HTREEITEM> items{item};
    for (std::size_t next = 0; next < items.size(); ++next)
        for (HTREEITEM child = Child(items[next]); child != nullptr; child = NextSibling(child))
            items.push_back(child);
    return items;
}

LRESULT TreeView::Draw(NMTVCUSTOMDRAW& draw) noexcept {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    const bool selected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
    if (selected && GetFocus() != draw.nmcd.hdr.hwndFrom) {
        draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
        draw.clrTextBk = PaleHighlight();
    }
    return CDRF_DODEFAULT;
}

bool TreeView::IsExpanded(HTREEITEM item) const noexcept {
    return (Send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

// Only parents can be; asking for every item is slow in a large tree.
std::vector<String> TreeView::ExpandedKeys() const {
    std::vector<bool> parents(mvarItems.size());
    for (const auto& item : mvarItems)
        if (item.parent < parents.size()) parents[item.parent] = true;
    std::vector<String> keys;
    for (std::size_t place = 0; place < mvarItems.size(); ++place)
        if (parents[place] && IsExpanded(Find(mvarItems[place].key))) keys.push_back(mvarItems[place].key);
    return keys;
}

String TreeView::KeyOf(HTREEITEM item) const {
    const auto found = mvarKeys.find(item);
    return found == mvarKeys.end() ? String() : found->second;
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
