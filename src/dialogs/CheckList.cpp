#include "dialogs/CheckList.h"

#include <windows.h>

#include <commctrl.h>

#include "dialogs/Form.h"
#include "dialogs/Monitor.h"
#include "dialogs/Waiting.h"

namespace kestrel::dialogs {

namespace {

// A check box is a state image: 1 unchecked, 2 checked.
UINT CheckState(bool checked) noexcept { return INDEXTOSTATEIMAGEMASK(checked ? 2U : 1U); }

} // namespace

void CheckList::Prepare() const noexcept {
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_INFOTIP | LVS_EX_LABELTIP);
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH;
    column.cx = 100;
    Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    FitColumn();
    ShowColours();
}

void CheckList::SetEnabled(bool enabled) const noexcept {
    if (enabled == IsEnabled()) return;
    Control::SetEnabled(enabled);
    ShowColours();
}

void CheckList::ShowColours() const noexcept {
    const auto [text, background] = ListColours(IsEnabled());
    Send(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(text));
    Send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(background));
    Send(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(background));
    InvalidateRect(Window(), nullptr, TRUE);
}

void CheckList::FitColumn() const noexcept {
    RECT area{};
    GetClientRect(Window(), &area);
    Send(LVM_SETCOLUMNWIDTH, 0, area.right - SystemMetric(SM_CXVSCROLL, Owner().Layout().Dpi()));
}

void CheckList::SetRows(const std::vector<Row>& rows) const {
    std::vector<Row> held;
    held.reserve(static_cast<std::size_t>(Count()));
    for (int index = 0; index < Count(); ++index)
        held.push_back(At(index));
    if (held == rows) return;
    const NoRedraw quiet(Window());
    Send(LVM_DELETEALLITEMS);
    for (const auto& row : rows) {
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = Count();
        item.pszText = const_cast<wchar_t*>(row.text.c_str()); // read only; the structure serves both directions
        const auto index = static_cast<int>(Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
        if (row.checked) Check(index, true);
    }
}

int CheckList::Count() const noexcept { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }

CheckList::Row CheckList::At(int index) const {
    String text(64, L'\0');
    LVITEMW item{};
    LRESULT length = 0;
    for (;; text.resize(text.size() * 2)) { // the control does not tell the length before
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        length = Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
        if (static_cast<std::size_t>(length) + 1 < text.size()) break;
    }
    text.resize(static_cast<std::size_t>(length));
    return {text, IsChecked(index)};
}

bool CheckList::IsChecked(int index) const noexcept {
    const auto state = static_cast<UINT>(Send(LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK));
    return (state & LVIS_STATEIMAGEMASK) == CheckState(true);
}

void CheckList::Check(int index, bool checked) const noexcept {
    LVITEMW item{};
    item.state = CheckState(checked);
    item.stateMask = LVIS_STATEIMAGEMASK;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

bool CheckList::IsCheckChange(const NMHDR& header, int& row) noexcept {
    if (header.code != LVN_ITEMCHANGED) return false;
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    const UINT before = change.uOldState & LVIS_STATEIMAGEMASK;
    const UINT after = change.uNewState & LVIS_STATEIMAGEMASK;
    row = change.iItem;
    return (change.uChanged & LVIF_STATE) != 0 && before != 0 && after != 0 && before != after;
}

} // namespace kestrel::dialogs
