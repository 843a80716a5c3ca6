// What screen readers are told about the band strip.

#include "common/Ports.h"
#include "dialogs/BandStrip.h"
#include "dialogs/Texts.h"

namespace kestrel::dialogs {

namespace {

RECT OnScreen(HWND window, RECT area) noexcept {
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
    return area;
}

} // namespace

std::optional<LRESULT> BandStrip::Reader(WPARAM wParam, LPARAM lParam) {
    return mvarAccessible.Answer(wParam, lParam, [this] { return new StripAccessible(picBand.Window(), *this); });
}

void BandStrip::TellItems(const std::vector<ItemEvent>& events) noexcept {
    for (const auto& each : events)
        NotifyWinEvent(each.event, picBand.Window(), OBJID_CLIENT, each.child);
    const bool reordered = !events.empty() && events.back().event == EVENT_OBJECT_REORDER;
    if (reordered) mvarSelected = -1; // another band may stand in the selected place
}

void BandStrip::TellSelection() const noexcept {
    if (mvarSelected >= 0 && mvarSelected < mvarLayout.Count())
        NotifyWinEvent(EVENT_OBJECT_SELECTION, picBand.Window(), OBJID_CLIENT, mvarSelected + 1);
    TellFocus();
}

void BandStrip::TellFocus() const noexcept {
    const bool inBox = mvarSelected >= 0 && mvarSelected < mvarLayout.Count();
    if (HasFocus())
        NotifyWinEvent(EVENT_OBJECT_FOCUS, picBand.Window(), OBJID_CLIENT, inBox ? mvarSelected + 1 : CHILDID_SELF);
}

std::vector<String> BandStrip::BoxNames() const {
    std::vector<String> names;
    names.reserve(mvarBoxes.size());
    for (const auto& box : mvarBoxes)
        names.push_back(SpokenText(box));
    return names;
}

String BandStrip::Caption() const { return TheStrings().Text(text::StripCaption); }
String BandStrip::ActionName() const { return TheStrings().Text(text::SelectAction); }
String BandStrip::BoxName(int box) const { return SpokenText(mvarBoxes[static_cast<std::size_t>(box)]); }

RECT BandStrip::BoxPlace(int box) const {
    const int left = mvarLayout.Left(box) - mvarOffset;
    return OnScreen(picBand.Window(), {left, 0, left + mvarLayout.Width(box), picBand.Client().bottom});
}

RECT BandStrip::VisiblePlace() const {
    const RECT view = OnScreen(picBkg.Window(), picBkg.Client());
    const RECT boxes = OnScreen(picBand.Window(), picBand.Client());
    RECT seen{};
    IntersectRect(&seen, &view, &boxes);
    return seen;
}

// What is being typed elsewhere is applied before the box is selected, and that may change the boxes.
void BandStrip::ChooseBox(int box) {
    CancelDrag();
    TakeFocus();
    if (box < mvarLayout.Count()) mvarActions.select(box);
}

} // namespace kestrel::dialogs
