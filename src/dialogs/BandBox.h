// A box of the band strip: what it shows, how wide it must be, how it is painted.
#pragma once

#include <windows.h>

#include <vector>

#include "bands/Band.h"

namespace kestrel::dialogs {

struct BandBox {
    String name;
    String style;
    String sample;
    String findings{}; // about the band, one sentence on each line; empty when nothing was found
};
[[nodiscard]] BandBox BoxOf(const Band& band);
// All that the box shows, for a tool tip where the box is too narrow.
[[nodiscard]] String TextOf(const BandBox& box);
// What is to be read in the box's tool tip: its texts where it has to cut one of them, and the findings.
[[nodiscard]] String TipOf(const BandBox& box, bool clips);
// What a screen reader says for the box: everything in one line, what is empty left out.
[[nodiscard]] String SpokenText(const BandBox& box);

// Measures and paints boxes with one font at one resolution.
class BandBoxPainter {
  public:
    BandBoxPainter() = default;
    BandBoxPainter(HWND window, HFONT font, int dpi) noexcept;

    // Of each box, wide enough for its texts, within limits.
    [[nodiscard]] std::vector<int> WidthsOf(const std::vector<BandBox>& boxes) const;
    [[nodiscard]] int Height() const noexcept { return 3 * mvarLineHeight + 2 * Scaled(6); }
    // Where the name ends, from the top of the box.
    [[nodiscard]] int NameBottom() const noexcept { return Scaled(6) + mvarLineHeight; }
    // Whether the box has to cut one of its texts.
    [[nodiscard]] bool Clips(const BandBox& box) const;
    // Texts centred one below the other, and a mark in a corner where there are findings; the selected box in the
    // colours of a selection, with a frame when its strip has the keyboard.
    void Paint(HDC context, const RECT& area, const BandBox& box, bool selected, bool focused) const;

  private:
    [[nodiscard]] int Scaled(int length) const noexcept { return MulDiv(length, mvarDpi, 96); }

    HWND mvarWindow = nullptr;
    HFONT mvarFont = nullptr;
    int mvarDpi = 96;
    int mvarLineHeight = 0;
};

// Prints the text in the middle of the area, cut with "…" when it is too long.
void PrintCentered(HDC context, RECT area, const String& text) noexcept;

} // namespace kestrel::dialogs
