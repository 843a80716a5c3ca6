// Where the boxes of the band strip stand: side by side from the left, the first at 0.
#pragma once

#include <vector>

namespace kestrel::dialogs {

// Where a dragged box lands: before a box, or after the last one.
struct DropPlace {
    int target = -1; // the 0-based box, -1 in an empty strip
    bool after = false;
};

class StripLayout {
  public:
    StripLayout() = default;
    explicit StripLayout(const std::vector<int>& widths);

    [[nodiscard]] int Count() const noexcept { return static_cast<int>(mvarEdges.size()) - 1; }
    // The left edge of a box; of Count() the right edge of the last one.
    [[nodiscard]] int Left(int box) const noexcept { return mvarEdges[static_cast<std::size_t>(box)]; }
    [[nodiscard]] int Width(int box) const noexcept { return Left(box + 1) - Left(box); }
    [[nodiscard]] int Total() const noexcept { return mvarEdges.back(); }
    // The box that holds x; the first one left of the strip, -1 right of it.
    [[nodiscard]] int BoxAt(int x) const noexcept;
    // The gap nearest to x: 0 before the first box, Count() after the last.
    [[nodiscard]] int GapNearest(int x) const noexcept;
    [[nodiscard]] DropPlace DropAt(int x) const noexcept;
    // Where the gap lies in which a box lands there.
    [[nodiscard]] int EdgeOf(DropPlace place) const noexcept;
    // How far a view of that width, scrolled by offset, must be scrolled to show the whole box (its left edge at
    // least).
    [[nodiscard]] int OffsetToShow(int box, int offset, int viewWidth) const noexcept;

  private:
    std::vector<int> mvarEdges{0};
};

} // namespace kestrel::dialogs
