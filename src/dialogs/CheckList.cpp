#include "dialogs/CheckList.h"

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
    const auto itself = Itself();
    std::vector<Row> held;
    const int count = Count();
    held.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        held.push_back(RowAt(itself, index));
    if (held == rows) return;
    const NoRedraw quiet(Window());
    itself.Send(LVM_DELETEALLITEMS);
    itself.Send(LVM_SETITEMCOUNT, rows.size());
    int last = 0;
    for (const auto& row : rows) {
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = last++;
        item.pszText = const_cast<wchar_t*>(row.text.c_str()); // read only; the structure serves both directions
        const auto index = static_cast<int>(itself.Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
        if (row.checked) Check(itself, index, true);
    }
}

CheckList::Row CheckList::RowAt(const ControlItself& itself, int index) {
    String text(64, L'\0');
    LVITEMW item{};
    LRESULT length = 0;
    for (;; text.resize(text.size() * 2)) { // the control does not tell the length before
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        length = itself.Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
        if (static_cast<std::size_t>(length) + 1 < text.size()) break;
    }
    text.resize(static_cast<std::size_t>(length));
    return {text, IsChecked(itself, index)};
}

bool CheckList::IsChecked(const ControlItself& itself, int index) noexcept {
    const auto state =
        static_cast<UINT>(itself.Send(LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK));
    return (state & LVIS_STATEIMAGEMASK) == CheckState(true);
}

void CheckList::Check(const ControlItself& itself, int index, bool checked) noexcept {
    LVITEMW item{};
    item.state = CheckState(checked);
    item.stateMask = LVIS_STATEIMAGEMASK;
    itself.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
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
