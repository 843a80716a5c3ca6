#include "dialogs/support/Screen.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dialogs/CheckList.h"
#include "dialogs/Control.h"

namespace kestrel::test {

namespace {

bool IsOfClass(HWND window, const wchar_t* name) {
    wchar_t actual[32] = {};
    GetClassNameW(window, actual, 32);
    return lstrcmpiW(actual, name) == 0;
}

Visitor* theVisitor = nullptr;

HTREEITEM NextItem(HWND tree, HTREEITEM item, UINT direction) {
    return reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_GETNEXTITEM, direction, reinterpret_cast<LPARAM>(item)));
}

String ItemText(HWND tree, HTREEITEM item) {
    wchar_t text[256] = {};
    TVITEMW wanted{};
    wanted.mask = TVIF_TEXT | TVIF_HANDLE;
    wanted.hItem = item;
    wanted.pszText = text;
    wanted.cchTextMax = 256;
    SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
    return text;
}

void CollectTexts(HWND tree, HTREEITEM first, const String& indent, std::vector<String>& texts) {
    for (HTREEITEM item = first; item != nullptr; item = NextItem(tree, item, TVGN_NEXT)) {
        texts.push_back(indent + ItemText(tree, item));
        CollectTexts(tree, NextItem(tree, item, TVGN_CHILD), indent + L"  ", texts);
    }
}

HTREEITEM FindText(HWND tree, HTREEITEM first, const String& text) {
    for (HTREEITEM item = first; item != nullptr; item = NextItem(tree, item, TVGN_NEXT)) {
        if (ItemText(tree, item) == text) return item;
        if (const HTREEITEM below = FindText(tree, NextItem(tree, item, TVGN_CHILD), text)) return below;
    }
    return nullptr;
}

} // namespace

HWND Screen::Control(int id) const noexcept {
    if (const HWND direct = GetDlgItem(mvarForm, id)) return direct;
    for (HWND child = GetWindow(mvarForm, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        if (const HWND within = GetDlgItem(child, id)) return within;
    return nullptr;
}

String Screen::Caption() const { return dialogs::WindowText(mvarForm); }

String Screen::Text(int id) const {
    const HWND control = Control(id);
    EXPECT_NE(control, nullptr) << "no control " << id;
    return dialogs::WindowText(control);
}

std::vector<String> Screen::Rows(int id) const {
    const HWND control = Control(id);
    const bool combo = IsOfClass(control, L"ComboBox");
    std::vector<String> rows;
    const LRESULT count = SendMessageW(control, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0);
    for (LRESULT row = 0; row < count; ++row) {
        wchar_t text[256] = {};
        SendMessageW(control, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(text));
        rows.emplace_back(text);
    }
    return rows;
}

int Screen::Row(int id) const {
    const HWND control = Control(id);
    return static_cast<int>(SendMessageW(control, IsOfClass(control, L"ComboBox") ? CB_GETCURSEL : LB_GETCURSEL, 0, 0));
}

int Screen::Checked(int id) const { return static_cast<int>(SendMessageW(Control(id), BM_GETCHECK, 0, 0)); }

void Screen::Click(int id) const {
    ASSERT_NE(Control(id), nullptr) << "no control " << id;
    ASSERT_TRUE(Enabled(id)) << "control " << id << " is disabled";
    SendMessageW(Control(id), BM_CLICK, 0, 0);
}

void Screen::Choose(int menuId) const { SendMessageW(mvarForm, WM_COMMAND, MAKEWPARAM(menuId, 0), 0); }

void Screen::Pick(int id, int row) const {
    ASSERT_TRUE(Enabled(id)) << "control " << id << " is disabled";
    SendMessageW(Control(id), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(mvarForm, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(Control(id)));
}

void Screen::SelectRow(int id, int row) const {
    const bool several = (GetWindowLongW(Control(id), GWL_STYLE) & LBS_EXTENDEDSEL) != 0;
    if (several)
        SendMessageW(Control(id), LB_SETSEL, TRUE, row);
    else
        SendMessageW(Control(id), LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(mvarForm, WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(Control(id)));
}

void Screen::Focus(int id) const { SendMessageW(mvarForm, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE); }

void Screen::Type(int id, const String& text) const {
    ASSERT_TRUE(Enabled(id)) << "control " << id << " is disabled";
    Focus(id);
    ASSERT_TRUE(Focused(id)) << "control " << id << " does not take the focus";
    SetWindowTextW(Control(id), text.c_str());
    SendMessageW(mvarForm, WM_NEXTDLGCTL, 0, FALSE);
}

// As a loop does with a message that it got.
void Screen::Key(int id, unsigned key) const {
    MSG message{};
    message.hwnd = Control(id);
    message.message = WM_KEYDOWN;
    message.wParam = key;
    if (IsDialogMessageW(mvarForm, &message) == FALSE) DispatchMessageW(&message);
}

void Screen::Character(int id, wchar_t character) const { SendMessageW(Control(id), WM_CHAR, character, 0); }

std::vector<String> Screen::TreeTexts(int id) const {
    std::vector<String> texts;
    CollectTexts(Control(id), NextItem(Control(id), nullptr, TVGN_ROOT), {}, texts);
    return texts;
}

HTREEITEM Screen::TreeItem(int id, const String& text) const {
    return FindText(Control(id), NextItem(Control(id), nullptr, TVGN_ROOT), text);
}

void Screen::SelectTreeItem(int id, const String& text) const {
    const HTREEITEM item = TreeItem(id, text);
    ASSERT_NE(item, nullptr) << "no such item";
    SendMessageW(Control(id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

String Screen::SelectedTreeText(int id) const {
    const HTREEITEM item = NextItem(Control(id), nullptr, TVGN_CARET);
    return item == nullptr ? String() : ItemText(Control(id), item);
}

std::vector<String> Screen::CheckRows(int id) const {
    std::vector<String> rows;
    const LRESULT count = SendMessageW(Control(id), LVM_GETITEMCOUNT, 0, 0);
    for (int row = 0; row < count; ++row) {
        wchar_t text[256] = {};
        LVITEMW item{};
        item.pszText = text;
        item.cchTextMax = 256;
        SendMessageW(Control(id), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        const auto state = SendMessageW(Control(id), LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK);
        rows.push_back((state == INDEXTOSTATEIMAGEMASK(2) ? L"+" : L"-") + String(text));
    }
    return rows;
}

void Screen::CheckRow(int id, int row, bool checked) const {
    LVITEMW item{};
    item.state = INDEXTOSTATEIMAGEMASK(checked ? 2U : 1U);
    item.stateMask = LVIS_STATEIMAGEMASK;
    SendMessageW(Control(id), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void RunPendingMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

Visitor::Visitor() : mvarTimer(SetTimer(nullptr, 0, 10, Tick)) { theVisitor = this; }

Visitor::~Visitor() {
    KillTimer(nullptr, mvarTimer);
    theVisitor = nullptr;
}

BOOL CALLBACK Visitor::Look(HWND window, LPARAM visitor) {
    auto* self = reinterpret_cast<Visitor*>(visitor);
    const auto& seen = self->mvarVisited;
    const bool fresh = std::find(seen.begin(), seen.end(), window) == seen.end();
    const bool ready = IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE;
    if (!fresh || !ready || !IsOfClass(window, L"#32770")) return TRUE;
    self->Visit(window);
    return FALSE;
}

void CALLBACK Visitor::Tick(HWND, UINT, UINT_PTR, DWORD) {
    if (theVisitor != nullptr && !theVisitor->mvarSteps.empty())
        EnumThreadWindows(GetCurrentThreadId(), Look, reinterpret_cast<LPARAM>(theVisitor));
}

void Visitor::Visit(HWND form) {
    mvarVisited.push_back(form);
    const Step step = std::move(mvarSteps.front());
    mvarSteps.pop_front();
    step(Screen(form));
    if (IsWindow(form) != FALSE && IsWindowVisible(form) != FALSE) PostMessageW(form, WM_CLOSE, 0, 0);
}

} // namespace kestrel::test
