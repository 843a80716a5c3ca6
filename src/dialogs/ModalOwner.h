// The windows that a modal form stands over: the thread's own are disabled while the form is shown, so that only the
// form can be used.
#pragma once

#include <windows.h>

#include <vector>

namespace kestrel::dialogs {

// The window of this thread that the user works in, or null.
[[nodiscard]] HWND ThreadsActiveWindow() noexcept;

// How a form is brought before all programs; tests put their own in place.
using BringToFront = BOOL(WINAPI*)(HWND);
// Returns the one before.
BringToFront UseBringToFront(BringToFront bring) noexcept;

class ModalOwner {
  public:
    // Disables the form's owner and every other window of the thread that can be seen, places the form over its owner
    // and shows it with the focus on its first control. A form with an owner comes to the front with it; one without is
    // brought before all programs.
    explicit ModalOwner(HWND form);
    // Enabled again once.
    ModalOwner(const ModalOwner&) = delete;
    ModalOwner& operator=(const ModalOwner&) = delete;
    ~ModalOwner() { Enable(); }

    void Enable() noexcept;

  private:
    std::vector<HWND> mvarDisabled;
};

} // namespace kestrel::dialogs
