// An object that sees a window's messages before the window does.
//
// The window need not outlive the object nor the object the window: whichever ends first lets go of the other.
#pragma once

#include <windows.h>

#include <optional>

namespace kestrel::dialogs {

class Subclass {
  public:
    Subclass() noexcept = default;
    // The window holds this object's address.
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;
    virtual ~Subclass() { Detach(); }

    // Null when not attached or when the window has ended.
    [[nodiscard]] HWND Window() const noexcept { return mvarWindow; }

  protected:
    void Attach(HWND window) noexcept;
    void Detach() noexcept;
    // A result ends the message, nothing passes it on to the window. May throw: the message is passed on then.
    virtual std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // What the window itself does with the message.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const noexcept;

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR object) noexcept;

    HWND mvarWindow = nullptr;
};

} // namespace kestrel::dialogs
