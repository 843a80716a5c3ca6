#include "dialogs/ModalOwner.h"

#include <algorithm>

namespace kestrel::dialogs {

namespace {

RECT WorkArea(HWND window) noexcept {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

// In the middle of the owner or of the screen, and wholly on the screen where it fits.
void Centre(HWND form, HWND owner) noexcept {
    const RECT work = WorkArea(owner != nullptr ? owner : form);
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

} // namespace

HWND ThreadsActiveWindow() noexcept {
    const HWND active = GetActiveWindow();
    // A child of another process's window can be active; what is disabled is the window at the top.
    return active != nullptr ? GetAncestor(active, GA_ROOT) : nullptr;
}

ModalOwner::ModalOwner(HWND form) noexcept : mvarOwner(GetWindow(form, GW_OWNER)) {
    if (mvarOwner != nullptr && IsWindowEnabled(mvarOwner) != FALSE) {
        EnableWindow(mvarOwner, FALSE);
        mvarDisabled = true;
    }
    Centre(form, mvarOwner);
    ShowWindow(form, SW_SHOW);
    SetForegroundWindow(form);
    const HWND focus = GetFocus();
    if (focus == nullptr || focus == form || IsChild(form, focus) == FALSE) {
        const HWND first = GetNextDlgTabItem(form, nullptr, FALSE);
        if (first != nullptr) SetFocus(first);
    }
}

void ModalOwner::Enable() noexcept {
    if (mvarDisabled && IsWindow(mvarOwner) != FALSE) EnableWindow(mvarOwner, TRUE);
    mvarDisabled = false;
}

} // namespace kestrel::dialogs
