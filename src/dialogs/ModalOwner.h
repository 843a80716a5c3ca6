// The window that a modal form stands over: disabled while the form is shown, so that only the form can be used.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// The window of this thread that the user works in, or null.
[[nodiscard]] HWND ThreadsActiveWindow() noexcept;

class ModalOwner {
  public:
    // Disables the form's owner, places the form over it and shows it with the focus on its first control.
    explicit ModalOwner(HWND form) noexcept;
    // Enabled again once.
    ModalOwner(const ModalOwner&) = delete;
    ModalOwner& operator=(const ModalOwner&) = delete;
    ~ModalOwner() { Enable(); }

    void Enable() noexcept;

  private:
    HWND mvarOwner;
    bool mvarDisabled = false;
};

} // namespace kestrel::dialogs
