// Two keys that a tree view in a form misses: Enter, which otherwise presses the form's default button, and Shift+F10,
// which not every version of the control hands on as the system's request for a menu.
#pragma once

#include <functional>

#include "dialogs/Subclass.h"

namespace kestrel::dialogs {

class TreeKeys final : public Subclass {
  public:
    // Asked at each press of Enter, whether the tree has a use for it just now; when not, the button is pressed.
    void Attach(HWND tree, std::function<bool()> wantsEnter);

  protected:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    [[nodiscard]] LRESULT DialogCode(WPARAM wParam, LPARAM lParam) const;

    std::function<bool()> mvarWantsEnter;
};

} // namespace kestrel::dialogs
