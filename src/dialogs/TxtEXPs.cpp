#include "dialogs/TxtEXPs.h"

#include "common/Ports.h"
#include "dialogs/Control.h"

namespace kestrel::dialogs {

namespace {

// Sent to oneself: what waited in the message queue has run when it arrives.
UINT SelectAgain() noexcept {
    static const UINT message = RegisterWindowMessageW(L"Kestrel.TxtEXPs.SelectAgain");
    return message;
}

bool ShiftHeld() noexcept {
    return GetKeyState(VK_SHIFT) < 0 || GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0;
}

bool IsOfClass(HWND window, const wchar_t* name) noexcept {
    wchar_t actual[16] = {};
    GetClassNameW(window, actual, 16);
    return lstrcmpiW(actual, name) == 0;
}

// The window that the keyboard writes into: of a combo box its text field where it has one.
HWND InputWindowOf(HWND control) noexcept {
    COMBOBOXINFO combo{};
    combo.cbSize = sizeof combo;
    const bool isCombo = IsOfClass(control, L"ComboBox") && GetComboBoxInfo(control, &combo) != FALSE;
    return isCombo && combo.hwndItem != nullptr && IsOfClass(combo.hwndItem, L"Edit") ? combo.hwndItem : control;
}

} // namespace

wchar_t FilteredCharacter(wchar_t character, bool upperCased, bool numericOnly) noexcept {
    if (upperCased && character >= L'a' && character <= L'z') character = static_cast<wchar_t>(character - L'a' + L'A');
    if (character == VK_RETURN) return 0;
    const bool digit = character >= L'0' && character <= L'9';
    const bool allowed = digit || character == L',' || character == L'.' || character == VK_BACK;
    return numericOnly && !allowed ? L'\0' : character;
}

FieldMove MoveFor(unsigned key, const String& text, std::size_t start, std::size_t end) {
    if (key == VK_RETURN) return Trim(text).empty() ? FieldMove::Refuse : FieldMove::Next;
    if (start != end) return FieldMove::None;
    if (key == VK_LEFT && start == 0) return FieldMove::Previous;
    if (key == VK_RIGHT && end == text.size()) return FieldMove::Next;
    return FieldMove::None;
}

String TidiedText(const String& text, bool trimSpaces, const String& format) {
    String tidied = trimSpaces ? Trim(text) : text;
    return format.empty() ? tidied : TheText().Format(tidied, format);
}

void TxtEXPs::Attach(HWND control) noexcept {
    const HWND input = InputWindowOf(control);
    mvarIsList = !IsOfClass(input, L"Edit");
    Subclass::Attach(input);
}

std::optional<LRESULT> TxtEXPs::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == SelectAgain()) {
        if (GetFocus() == Window()) SendMessageW(Window(), EM_SETSEL, 0, -1);
        return 0;
    }
    switch (message) {
    case WM_GETDLGCODE: return DialogCode(lParam);
    case WM_SETFOCUS: {
        const LRESULT result = Default(message, wParam, lParam);
        Entered();
        return result;
    }
    case WM_KEYDOWN:
        if (KeyDown(static_cast<unsigned>(wParam))) return 0;
        return std::nullopt;
    case WM_CHAR: return KeyPress(wParam, lParam);
    case WM_KILLFOCUS: Left(); return std::nullopt;
    default: return std::nullopt;
    }
}

// Enter belongs to the field and not to the form's default button.
std::optional<LRESULT> TxtEXPs::DialogCode(LPARAM lParam) const {
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    const LRESULT code = Default(WM_GETDLGCODE, 0, lParam);
    const bool enter = message != nullptr && message->wParam == VK_RETURN &&
                       (message->message == WM_KEYDOWN || message->message == WM_CHAR);
    return mvarEnterAsTab && enter ? code | DLGC_WANTMESSAGE : code;
}

void TxtEXPs::Entered() const noexcept {
    if (mvarIsList) return;
    SendMessageW(Window(), EM_SETSEL, 0, -1);
    PostMessageW(Window(), SelectAgain(), 0, 0); // the click that brought the focus sets the caret after this
}

FieldMove TxtEXPs::MoveOf(unsigned key) const {
    if (!mvarEnterAsTab || ShiftHeld() || (mvarIsList && key != VK_RETURN)) return FieldMove::None;
    if (key != VK_RETURN && key != VK_LEFT && key != VK_RIGHT) return FieldMove::None;
    DWORD start = 0;
    DWORD end = 0;
    if (!mvarIsList)
        SendMessageW(Window(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return MoveFor(key, WindowText(Window()), start, end);
}

bool TxtEXPs::KeyDown(unsigned key) const {
    const FieldMove move = MoveOf(key);
    if (move == FieldMove::None) return false;
    if (key == VK_RETURN && !mvarIsList) {
        const String text = WindowText(Window());
        const String trimmed = Trim(text);
        if (trimmed != text) SetWindowTextW(Window(), trimmed.c_str());
    }
    if (move == FieldMove::Refuse)
        MessageBeep(MB_OK);
    else
        MoveFocus(move == FieldMove::Previous);
    return true;
}

void TxtEXPs::MoveFocus(bool back) const noexcept {
    SendMessageW(GetAncestor(Window(), GA_ROOT), WM_NEXTDLGCTL, back ? TRUE : FALSE, FALSE);
}

std::optional<LRESULT> TxtEXPs::KeyPress(WPARAM character, LPARAM lParam) const noexcept {
    const auto typed = static_cast<wchar_t>(character);
    const wchar_t filtered = FilteredCharacter(typed, mvarUpperCased, mvarNumericOnly);
    if (filtered == 0) return 0;
    if (filtered == typed) return std::nullopt;
    return Default(WM_CHAR, filtered, lParam);
}

void TxtEXPs::Left() const {
    if (mvarIsList) return;
    const String text = WindowText(Window());
    const String tidied = TidiedText(text, mvarTrimSpaces, mvarFormat);
    if (tidied != text) SetWindowTextW(Window(), tidied.c_str());
}

} // namespace kestrel::dialogs
