// The names under which screen readers find the controls of a form. Buttons and labels are called by their own texts
// and text boxes by the label before them: that much the system knows. What it would call by a row, or by nothing
// (lists, trees, drop-down lists, spin bars), is called by what stands before it: a label or the frame around it. Where
// nothing does, the form's caption tells.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "common/String.h"

namespace kestrel::dialogs {

// The text of a control as it is read out: without the mark of its access key.
[[nodiscard]] String WithoutAccessKey(const String& text);

// What stands before the control; for a spin bar, before the box that it belongs to.
[[nodiscard]] String NameBefore(HWND control);

class ControlNames {
  public:
    ControlNames() noexcept;
    // The windows hold the addresses of its parts.
    ControlNames(const ControlNames&) = delete;
    ControlNames& operator=(const ControlNames&) = delete;
    ~ControlNames();

    // Names the controls of the form that need it, as their labels read at the time that they are asked.
    void NameAll(HWND form);
    // Gives a control that name, whatever its own text.
    void Name(HWND control, const String& name);
    // What a reader may tell beyond the control's name, asked for each time.
    void Describe(HWND control, std::function<String()> description);

  private:
    class NamedControl;
    std::vector<std::unique_ptr<NamedControl>> mvarControls;
};

} // namespace kestrel::dialogs
