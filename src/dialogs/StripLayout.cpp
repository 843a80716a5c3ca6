#include "dialogs/StripLayout.h"

#include <algorithm>
#include <cstdlib>

namespace kestrel::dialogs {

StripLayout::StripLayout(const std::vector<int>& widths) {
    mvarEdges.reserve(widths.size() + 1);
    for (const int width : widths)
        mvarEdges.push_back(mvarEdges.back() + width);
}

int StripLayout::BoxAt(int x) const noexcept {
    const auto right = std::upper_bound(mvarEdges.begin() + 1, mvarEdges.end(), x);
    return right == mvarEdges.end() ? -1 : static_cast<int>(right - mvarEdges.begin()) - 1;
}

int StripLayout::GapNearest(int x) const noexcept {
    const auto nearer = [x](int left, int right) { return std::abs(left - x) < std::abs(right - x); };
    return static_cast<int>(std::min_element(mvarEdges.begin(), mvarEdges.end(), nearer) - mvarEdges.begin());
}

DropPlace StripLayout::DropAt(int x) const noexcept {
    const int box = BoxAt(x);
    return box >= 0 ? DropPlace{box, false} : DropPlace{Count() - 1, true};
}

int StripLayout::EdgeOf(DropPlace place) const noexcept { return Left(place.target + (place.after ? 1 : 0)); }

int StripLayout::OffsetToShow(int box, int offset, int viewWidth) const noexcept {
    const int left = Left(box);
    const int right = left + Width(box);
    if (right > offset + viewWidth) offset = right - viewWidth;
    return std::min(offset, left);
}

} // namespace kestrel::dialogs
