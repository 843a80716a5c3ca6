// What the user sees while something takes long or is rebuilt; each ends with its scope.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// The hourglass.
class WaitCursor {
  public:
    WaitCursor() noexcept : mvarBefore(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    // Taken back once.
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor() { SetCursor(mvarBefore); }

  private:
    HCURSOR mvarBefore;
};

// Freezes the drawing of a window, so that a rebuild appears at once. Only one window can be frozen at a time: inside
// another freeze it does nothing.
class FrozenDrawing {
  public:
    explicit FrozenDrawing(HWND window) noexcept : mvarFrozen(LockWindowUpdate(window) != FALSE) {}
    // Thawed once.
    FrozenDrawing(const FrozenDrawing&) = delete;
    FrozenDrawing& operator=(const FrozenDrawing&) = delete;
    ~FrozenDrawing() {
        if (mvarFrozen) LockWindowUpdate(nullptr);
    }

  private:
    bool mvarFrozen;
};

// Keeps a list or tree from repainting with every row.
class NoRedraw {
  public:
    explicit NoRedraw(HWND control) noexcept : mvarControl(control) {
        SendMessageW(mvarControl, WM_SETREDRAW, FALSE, 0);
    }
    // Switched on again once.
    NoRedraw(const NoRedraw&) = delete;
    NoRedraw& operator=(const NoRedraw&) = delete;
    ~NoRedraw() {
        SendMessageW(mvarControl, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(mvarControl, nullptr, TRUE);
    }

  private:
    HWND mvarControl;
};

} // namespace kestrel::dialogs
