// Where the controls of a form stand, and how they grow with its font: a form is laid out in units of its font, so that
// a larger font or a finer screen enlarges everything alike. What the units alone do not tell is done here too: the
// boxes of a row are equally high, a spin bar stands within the room of its box, and a form that is too tall for its
// screen gives way at one line.
#pragma once

#include <windows.h>

#include <limits>
#include <vector>

#include "common/String.h"
#include "dialogs/Handles.h"

namespace kestrel::dialogs {

class FormLayout {
  public:
    // Where the screen is too low, all that begins or ends below the control moves up, so that the control and what
    // stands beside it grow lower: by that many units of the dialog at most. Before Record.
    void MayGiveWay(int id, int units) noexcept;
    // Notes the form's places as its template made them.
    void Record(HWND form);
    // Gives the form and all its controls the font and the places that belong to it. Returns the font before, which
    // whoever draws with it may need until he has been told of the new one.
    [[nodiscard]] GdiObject<HFONT> Apply(const String& fontName, double points, UINT dpi);
    // A length of the design, at 96 dots per inch, in pixels of the form.
    [[nodiscard]] int Scaled(int length) const noexcept { return MulDiv(length, static_cast<int>(mvarDpi), 96); }
    [[nodiscard]] HFONT Font() const noexcept { return mvarFont.Get(); }
    [[nodiscard]] UINT Dpi() const noexcept { return mvarDpi; }

  private:
    enum class Kind { Plain, DropDown, Spin };
    struct Place {
        HWND window;
        Kind kind;
        RECT area; // in units of the dialog, as the template has it
    };
    [[nodiscard]] static Kind KindOf(HWND window) noexcept;
    [[nodiscard]] RECT UnitsFrom(HWND window) const noexcept;
    // Units of the dialog in pixels of the form.
    [[nodiscard]] LONG X(LONG units) const noexcept { return MulDiv(units, mvarBase.cx, 4); }
    [[nodiscard]] LONG Y(LONG units) const noexcept { return MulDiv(units, mvarBase.cy, 8); }
    // In pixels of the form, after it has given way.
    [[nodiscard]] RECT AreaOf(const Place& place) const noexcept;
    void ChooseGivenWay() noexcept;
    void Arrange() const;
    void PlaceDropDown(const Place& place) const noexcept;
    void PlaceSpin(HWND spin, const Place& box) const noexcept;
    void SizeForm() const noexcept;

    HWND mvarForm = nullptr;
    SIZE mvarBase{}; // of 4 units in width and 8 in height, in pixels
    SIZE mvarSize{}; // of the form, in units
    int mvarGivingId = 0;
    int mvarGivingUnits = 0;
    LONG mvarLine = std::numeric_limits<LONG>::max(); // below which the form gives way, in units
    LONG mvarGivenWay = 0;                            // by how many pixels
    std::vector<Place> mvarPlaces;
    GdiObject<HFONT> mvarFont;
    UINT mvarDpi = 96;
};

} // namespace kestrel::dialogs
