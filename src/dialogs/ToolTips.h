// The tool tips of a form's controls.
#pragma once

#include <windows.h>

#include "common/String.h"

namespace kestrel::dialogs {

class ToolTips {
  public:
    // Belongs to the form's window and ends with it.
    void Create(HWND form) noexcept;
    // How wide a tip becomes before it takes another line; at once after Create and whenever it changes.
    void SetResolution(int dpi) const noexcept;
    [[nodiscard]] HWND Window() const noexcept { return mvarWindow; }
    // Empty takes the tip away.
    void Set(HWND control, const String& text) const;
    // Empty when the control has none.
    [[nodiscard]] String Text(HWND control) const;

  private:
    HWND mvarForm = nullptr;
    HWND mvarWindow = nullptr;
};

} // namespace kestrel::dialogs
