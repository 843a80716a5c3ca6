#include "dialogs/ModalOwner.h"

#include <algorithm>
#include <utility>

#include "dialogs/Guard.h"
#include "dialogs/Monitor.h"

namespace kestrel::dialogs {

namespace {

BringToFront theBringToFront = SetForegroundWindow;

// In the middle of the owner or of the screen, and wholly on the screen where it fits.
void Centre(HWND form, HWND owner) noexcept {
    const RECT work = WorkAreaOf(owner != nullptr ? owner : form);
    RECT over = work;
    if (owner != nullptr && IsWindowVisible(owner) != FALSE && IsIconic(owner) == FALSE) GetWindowRect(owner, &over);
    RECT area{};
    GetWindowRect(form, &area);
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    const LONG x = std::max(work.left, std::min((over.left + over.right - width) / 2, work.right - width));
    const LONG y = std::max(work.top, std::min((over.top + over.bottom - height) / 2, work.bottom - height));
    SetWindowPos(form, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

struct Search {
    HWND form;
    HWND owner;
    std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND window, LPARAM search) noexcept {
    return Guarded(FALSE, [=] {
        auto& [form, owner, found] = *reinterpret_cast<Search*>(search);
        const bool usable = IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE;
        if (usable && window != form && window != owner) found.push_back(window);
        return TRUE;
    });
}

// Those that the user could work in beside the form; its owner may be another thread's.
std::vector<HWND> OtherWindows(HWND form) {
    Search search{form, GetWindow(form, GW_OWNER), {}};
    if (search.owner != nullptr && IsWindowEnabled(search.owner) != FALSE) search.found.push_back(search.owner);
    EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&search));
    return std::move(search.found);
}

// Where the user works in another program meanwhile, a form with an owner does not push itself before that.
void Show(HWND form) noexcept {
    ShowWindow(form, SW_SHOW);
    if (GetWindow(form, GW_OWNER) == nullptr) theBringToFront(form);
}

// By the message that also marks the default button and selects the text. A form that has given the focus to another
// control keeps it there.
void FocusFirst(HWND form) noexcept {
    const HWND focus = GetFocus();
    const HWND first = GetNextDlgTabItem(form, nullptr, FALSE);
    if (first != nullptr && (focus == first || IsChild(form, focus) == FALSE))
        SendMessageW(form, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
}

} // namespace

HWND ThreadsActiveWindow() noexcept {
    const HWND active = GetActiveWindow();
    // A child of another process's window can be active; what is disabled is the window at the top.
    return active != nullptr ? GetAncestor(active, GA_ROOT) : nullptr;
}

BringToFront UseBringToFront(BringToFront bring) noexcept { return std::exchange(theBringToFront, bring); }

ModalOwner::ModalOwner(HWND form) : mvarDisabled(OtherWindows(form)) {
    for (const HWND window : mvarDisabled)
        EnableWindow(window, FALSE);
    Centre(form, GetWindow(form, GW_OWNER));
    Show(form);
    FocusFirst(form);
}

void ModalOwner::Enable() noexcept {
    for (const HWND window : mvarDisabled)
        if (IsWindow(window) != FALSE) EnableWindow(window, TRUE);
    mvarDisabled.clear();
}

} // namespace kestrel::dialogs
