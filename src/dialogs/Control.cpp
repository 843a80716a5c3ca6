#include "dialogs/Control.h"

#include "dialogs/Form.h"
#include "dialogs/Waiting.h"
#include "dialogs/mdlMisc.h"

namespace kestrel::dialogs {

namespace {

LPARAM TextParameter(const String& text) noexcept { return reinterpret_cast<LPARAM>(text.c_str()); }

// The text of a row by the messages of its control that tell its length and copy it.
String RowText(const ControlItself& list, UINT lengthMessage, UINT textMessage, int index) {
    const LRESULT length = list.Send(lengthMessage, static_cast<WPARAM>(index));
    if (length <= 0) return {};
    String text(static_cast<std::size_t>(length) + 1, L'\0');
    list.Send(textMessage, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace

String WindowText(HWND window) {
    const int length = GetWindowTextLengthW(window);
    if (length <= 0) return {};
    String text(static_cast<std::size_t>(length) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), length + 1)));
    return text;
}

TextColours ListColours(bool enabled) noexcept {
    return {GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT),
            GetSysColor(enabled ? COLOR_WINDOW : COLOR_BTNFACE)};
}

HWND Control::Window() const noexcept { return mvarForm->Find(mvarId); }

void Control::SetText(const String& text) const {
    if (Text() != text) SetWindowTextW(Window(), text.c_str());
}

void Control::SetEnabled(bool enabled) const noexcept {
    const HWND window = Window();
    if (window == nullptr || IsEnabled() == enabled) return;
    const bool hadFocus = !enabled && (HasFocus() || IsChild(window, ::GetFocus()) != FALSE);
    if (hadFocus) SendMessageW(mvarForm->Window(), WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(window, enabled ? TRUE : FALSE);
}

void Control::SetFocus() const noexcept {
    if (Window() != nullptr) SendMessageW(mvarForm->Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Window()), TRUE);
}

int OptionButtons::Chosen() const noexcept {
    for (int index = 0; index < mvarCount; ++index)
        if ((*this)(index).Value() == BST_CHECKED) return index;
    return -1;
}

void OptionButtons::Choose(int index) const noexcept {
    for (int each = 0; each < mvarCount; ++each)
        (*this)(each).SetValue(each == index ? BST_CHECKED : BST_UNCHECKED);
}

void ComboBox::SetRows(const std::vector<String>& rows) const {
    if (Rows() != rows) {
        const NoRedraw quiet(Window());
        const auto itself = Itself();
        itself.Send(CB_RESETCONTENT);
        for (const auto& row : rows)
            itself.Send(CB_ADDSTRING, 0, TextParameter(row));
        FitDropDownWidth(Window());
    }
    SetListIndex(-1);
}

std::vector<String> ComboBox::Rows() const {
    std::vector<String> rows;
    const auto count = static_cast<int>(Send(CB_GETCOUNT));
    rows.reserve(static_cast<std::size_t>(count));
    const auto itself = Itself();
    for (int index = 0; index < count; ++index)
        rows.push_back(RowOf(itself, index));
    return rows;
}

String ComboBox::RowOf(const ControlItself& itself, int index) {
    return RowText(itself, CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
}

void ListBox::SetRows(const std::vector<String>& rows) const {
    const NoRedraw quiet(Window());
    Send(LB_RESETCONTENT);
    for (const auto& row : rows)
        Send(LB_ADDSTRING, 0, TextParameter(row));
}

String ListBox::Row(int index) const { return RowText(Itself(), LB_GETTEXTLEN, LB_GETTEXT, index); }

std::vector<int> ListBox::SelectedRows() const {
    const LRESULT count = Send(LB_GETSELCOUNT);
    std::vector<int> rows(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (!rows.empty()) Send(LB_GETSELITEMS, rows.size(), reinterpret_cast<LPARAM>(rows.data()));
    return rows;
}

} // namespace kestrel::dialogs
