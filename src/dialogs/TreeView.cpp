#include "dialogs/TreeView.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "dialogs/Waiting.h"

namespace kestrel::dialogs {

namespace {

// How many levels are shown as such: a tree view walks its levels by recursion and counts its width in pixels, so that
// it bears some hundreds.
constexpr std::size_t mostLevels = 256;

// Inserted in one step: more than a view shows, and no more than takes a few milliseconds.
constexpr std::size_t mostAtOnce = 1000;

} // namespace

void TreeView::SetItems(std::vector<Item> items) {
    if (items == mvarItems) return;
    const auto expanded = items.empty() ? std::vector<String>() : ExpandedKeys();
    const NoRedraw quiet(Window());
    Itself().Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    mvarHandles.clear();
    mvarKeys.clear();
    mvarItems = std::move(items);
    mvarChildren = ChildPlaces();
    mvarWaiting.clear();
    LetWait(mvarChildren.back(), TVI_ROOT, 1);
    Insert(mostAtOnce);
    Expand(expanded);
}

void TreeView::Expand(const std::vector<String>& keys) {
    for (const auto& key : keys)
        if (const HTREEITEM item = Find(key)) Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

std::vector<std::vector<std::size_t>> TreeView::ChildPlaces() const {
    std::vector<std::vector<std::size_t>> children(mvarItems.size() + 1);
    for (std::size_t place = 0; place < mvarItems.size(); ++place)
        children[std::min(mvarItems[place].parent, mvarItems.size())].push_back(place);
    return children;
}

void TreeView::InsertMore() {
    const NoRedraw quiet(Window());
    Insert(mostAtOnce);
}

// Each parent before its children, however deep the tree is: a parent may stand after its children in the list.
void TreeView::Insert(std::size_t most) {
    const auto itself = Itself();
    for (; most > 0 && IsGrowing(); --most)
        InsertNext(itself);
    if (!IsGrowing()) mvarChildren.clear();
}

void TreeView::InsertNext(const ControlItself& itself) {
    const Waiting next = mvarWaiting.back();
    mvarWaiting.pop_back();
    const Item& item = mvarItems[next.place];
    const HTREEITEM handle = Insert(itself, item, next.parent);
    mvarHandles[item.key] = handle;
    mvarKeys[handle] = item.key;
    if (next.level < mostLevels)
        LetWait(mvarChildren[next.place], handle, next.level + 1);
    else
        LetWait(mvarChildren[next.place], next.parent, next.level);
}

void TreeView::LetWait(const std::vector<std::size_t>& places, HTREEITEM parent, std::size_t level) {
    for (std::size_t left = places.size(); left > 0; --left) // the first is taken from the end
        mvarWaiting.push_back({places[left - 1], parent, level});
}

HTREEITEM TreeView::Insert(const ControlItself& itself, const Item& item, HTREEITEM parent) noexcept {
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = const_cast<wchar_t*>(item.text.c_str()); // read only; the structure serves both directions
    return reinterpret_cast<HTREEITEM>(itself.Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

// An item takes along what the tree view shows below it; what lies too deep to be shown there goes by itself.
void TreeView::Remove(const String& key) {
    Insert(mvarItems.size());
    std::vector<HTREEITEM> handles;
    for (const std::size_t place : Subtree(key))
        handles.push_back(Known(mvarItems[place].key));
    const std::unordered_set<HTREEITEM> going(handles.begin(), handles.end());
    std::vector<HTREEITEM> topmost;
    for (const HTREEITEM handle : handles) {
        if (!going.contains(Parent(handle))) topmost.push_back(handle);
        mvarHandles.erase(KeyOf(handle));
        mvarKeys.erase(handle);
    }
    KeepKnownItems();
    for (std::size_t left = topmost.size(); left > 0; --left) // the selected one last, which passes the selection on
        Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(topmost[left - 1]));
}

// Parents are places in the list, so they move up with it.
void TreeView::KeepKnownItems() {
    std::vector<std::size_t> places(mvarItems.size(), NoParent);
    std::vector<Item> kept;
    for (std::size_t place = 0; place < mvarItems.size(); ++place) {
        if (Known(mvarItems[place].key) == nullptr) continue;
        places[place] = kept.size();
        kept.push_back(std::move(mvarItems[place]));
    }
    for (auto& item : kept)
        if (item.parent < places.size()) item.parent = places[item.parent];
    mvarItems = std::move(kept);
}

std::vector<std::size_t> TreeView::Subtree(const String& key) const {
    const auto top =
        std::find_if(mvarItems.begin(), mvarItems.end(), [&](const Item& item) { return item.key == key; });
    if (top == mvarItems.end()) return {};
    const auto children = ChildPlaces();
    std::vector<std::size_t> places{static_cast<std::size_t>(top - mvarItems.begin())};
    for (std::size_t next = 0; next < places.size(); ++next) {
        const auto& below = children[places[next]];
        places.insert(places.end(), below.begin(), below.end());
    }
    return places;
}

int TreeView::CountDescendants(HTREEITEM item) const {
    return std::max(static_cast<int>(Subtree(KeyOf(item)).size()) - 1, 0);
}

void TreeView::SetEnabled(bool enabled) const noexcept {
    if (enabled == IsEnabled()) return;
    Control::SetEnabled(enabled);
    ShowColours();
}

void TreeView::ShowColours() const noexcept {
    const auto [text, background] = ListColours(IsEnabled());
    Send(TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(text));
    Send(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(background));
}

LRESULT TreeView::Draw(NMTVCUSTOMDRAW& draw) noexcept {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    const bool enabled = IsWindowEnabled(draw.nmcd.hdr.hwndFrom) != FALSE;
    const bool selected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
    const TextColours marked{GetSysColor(COLOR_HIGHLIGHTTEXT), GetSysColor(COLOR_HIGHLIGHT)};
    const auto [text, background] = selected && enabled ? marked : ListColours(enabled);
    draw.clrText = text;
    draw.clrTextBk = background;
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
        if (parents[place] && IsExpanded(Known(mvarItems[place].key))) keys.push_back(mvarItems[place].key);
    return keys;
}

String TreeView::KeyOf(HTREEITEM item) const {
    const auto found = mvarKeys.find(item);
    return found == mvarKeys.end() ? String() : found->second;
}

String TreeView::SelectedKey() const { return KeyOf(Next(nullptr, TVGN_CARET)); }

HTREEITEM TreeView::Find(const String& key) {
    if (IsGrowing() && !key.empty() && Known(key) == nullptr) {
        const NoRedraw quiet(Window());
        Insert(mvarItems.size());
    }
    return Known(key);
}

HTREEITEM TreeView::Known(const String& key) const noexcept {
    const auto found = mvarHandles.find(key);
    return found == mvarHandles.end() ? nullptr : found->second;
}

void TreeView::Select(const String& key) {
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
