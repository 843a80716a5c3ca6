// Where the controls of a form stand, and how they grow with its font: a form is laid out in units of its font, so that
// a larger font or a finer screen enlarges everything alike.
#pragma once

#include <windows.h>

#include <vector>

#include "common/String.h"
#include "dialogs/Handles.h"

namespace kestrel::dialogs {

class FormLayout {
  public:
    // Notes the form's places as its template made them.
    void Record(HWND form);
    // Gives the form and all its controls the font and the places that belong to it.
    void Apply(const String& fontName, double points, UINT dpi);
    // A length of the design, at 96 dots per inch, in pixels of the form.
    [[nodiscard]] int Scaled(int length) const noexcept { return MulDiv(length, static_cast<int>(mvarDpi), 96); }
    [[nodiscard]] HFONT Font() const noexcept { return mvarFont.Get(); }
    [[nodiscard]] UINT Dpi() const noexcept { return mvarDpi; }

  private:
    struct Place {
        HWND window;
        RECT area;
    };
    void MakeFont(const String& name, double points);
    void Arrange() const;

    HWND mvarForm = nullptr;
    SIZE mvarDesignUnits{};
    SIZE mvarUnits{};
    SIZE mvarDesignSize{};
    std::vector<Place> mvarPlaces;
    GdiObject<HFONT> mvarFont;
    UINT mvarDpi = 96;
};

// The dots per inch of the window's screen.
[[nodiscard]] UINT DpiOf(HWND window) noexcept;

} // namespace kestrel::dialogs
