// The windows that a modal form stands over: the thread's own are disabled while the form is shown, so that only the
// form can be used.
#pragma once

#include <windows.h>

#include <vector>

namespace kestrel::dialogs {

// The window of this thread that the user works in, or null.
[[nodiscard]] HWND ThreadsActiveWindow() noexcept;

class ModalOwner {
  public:
    // Disables the form's owner and every other window of the thread that can be seen, places the form over its owner
    // and shows it with the focus on its first control.
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
