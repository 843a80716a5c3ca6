#include "dialogs/BandStrip.h"

#include <windowsx.h>

#include <algorithm>

#include "dialogs/Form.h"
#include "platform/Module.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

constexpr int wheelStep = 60;

} // namespace

int BandStrip::Margin() const noexcept { return mvarForm.Layout().Scaled(4); }

void BandStrip::Attach(Actions actions, const String& appendTip) {
    mvarActions = std::move(actions);
    const HWND view = mvarForm.Find(ID_picBkg);
    const auto paintView = [](HDC context, const RECT& client) {
        FillRect(context, &client, GetSysColorBrush(COLOR_WINDOW));
    };
    const auto paintMarker = [](HDC context, const RECT& client) {
        FillRect(context, &client, GetSysColorBrush(COLOR_WINDOWTEXT));
    };
    picBkg.Attach(view, paintView, [this](UINT message, WPARAM w, LPARAM l) { return ViewMessage(message, w, l); });
    picBand.Create(
        view, ID_picBand, WS_VISIBLE | WS_TABSTOP | SS_NOTIFY,
        [this](HDC context, const RECT& client) { PaintBoxes(context, client); },
        [this](UINT message, WPARAM w, LPARAM l) { return BandMessage(message, w, l); });
    imgButton =
        CreateWindowExW(0, L"Button", L"+", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | BS_PUSHBUTTON, 0, 0,
                        0, 0, view, reinterpret_cast<HMENU>(INT_PTR{ID_imgButton}), ThisModule(), nullptr);
    picMove.Create(view, ID_picMove, WS_DISABLED, [this](HDC context, const RECT& client) {
        FillRect(context, &client, GetSysColorBrush(COLOR_WINDOW));
        if (IsDragging())
            mvarPainter.Paint(context, client, mvarBoxes[static_cast<std::size_t>(mvarDragged)], true, false);
    });
    imgPos.Create(view, ID_imgPos, WS_DISABLED, paintMarker);
    mvarForm.Tips().Set(imgButton, appendTip);
    mvarForm.AccessibleNames().Name(imgButton, appendTip); // "+" alone tells nobody what is added
    Resize();
}

void BandStrip::Resize() {
    if (imgButton == nullptr) return;
    const HFONT font = mvarForm.Layout().Font();
    SendMessageW(imgButton, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    mvarPainter = BandBoxPainter(picBand.Window(), font, static_cast<int>(mvarForm.Layout().Dpi()));
    MeasureBoxes();
    Arrange();
}

void BandStrip::SetBoxes(std::vector<BandBox> boxes, int selected) {
    CancelDrag();
    const auto before = BoxNames();
    mvarBoxes = std::move(boxes);
    MeasureBoxes();
    TellItems(EventsBetween(before, BoxNames()));
    Select(selected);
}

void BandStrip::SetFindings(std::vector<String> findings) {
    if (findings.size() != mvarBoxes.size()) return;
    const auto before = BoxNames();
    for (std::size_t box = 0; box < findings.size(); ++box)
        mvarBoxes[box].findings = std::move(findings[box]);
    TellItems(EventsBetween(before, BoxNames()));
    picBand.Repaint();
}

void BandStrip::Select(int box) {
    const bool another = mvarSelected != box;
    mvarSelected = box;
    if (box >= 0 && box < mvarLayout.Count())
        mvarOffset = mvarLayout.OffsetToShow(box, mvarOffset, ViewWidth() - 2 * Margin());
    Arrange();
    if (another) TellSelection();
}

void BandStrip::MeasureBoxes() { mvarLayout = StripLayout(mvarPainter.WidthsOf(mvarBoxes)); }

RECT BandStrip::BoxArea(int left, int width) const noexcept {
    return {left, Top(), left + width, Top() + mvarPainter.Height()};
}

// In the middle of what the scroll bar leaves.
int BandStrip::Top() const noexcept {
    return std::max<int>(Margin() / 2, (picBkg.Client().bottom - mvarPainter.Height()) / 2);
}

int BandStrip::ViewWidth() const noexcept { return picBkg.Client().right; }

int BandStrip::LargestOffset() const noexcept {
    const int content = mvarLayout.Total() + 3 * Margin() + mvarPainter.Height() / 2; // with the button
    return std::max(0, content - ViewWidth());
}

void BandStrip::Arrange() {
    mvarOffset = std::clamp(mvarOffset, 0, LargestOffset());
    SetScrollBar();
    const int height = mvarPainter.Height();
    const int end = Margin() + mvarLayout.Total() - mvarOffset;
    picBand.Move(BoxArea(Margin(), std::max(0, std::min(end, ViewWidth()) - Margin())));
    const RECT button = BoxArea(end + Margin(), height / 2);
    SetWindowPos(imgButton, nullptr, button.left, button.top + height / 4, height / 2, height / 2,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    picBand.Repaint();
    picBkg.Repaint();
}

void BandStrip::SetScrollBar() const noexcept {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_PAGE | SIF_POS | SIF_RANGE;
    info.nMax = LargestOffset() + ViewWidth() - 1;
    info.nPage = static_cast<UINT>(ViewWidth());
    info.nPos = mvarOffset;
    SetScrollInfo(picBkg.Window(), SB_HORZ, &info, TRUE);
}

void BandStrip::ScrollTo(int offset) {
    mvarOffset = offset;
    Arrange();
}

int BandStrip::ScrollTarget(int request) const noexcept {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    switch (request) {
    case SB_LINELEFT: return mvarOffset - wheelStep;
    case SB_LINERIGHT: return mvarOffset + wheelStep;
    case SB_PAGELEFT: return mvarOffset - ViewWidth();
    case SB_PAGERIGHT: return mvarOffset + ViewWidth();
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: GetScrollInfo(picBkg.Window(), SB_HORZ, &info); return info.nTrackPos;
    case SB_LEFT: return 0;
    case SB_RIGHT: return LargestOffset();
    default: return mvarOffset;
    }
}

std::optional<LRESULT> BandStrip::ViewMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_HSCROLL: ScrollTo(ScrollTarget(LOWORD(wParam))); return 0;
    case WM_MOUSEWHEEL: ScrollTo(mvarOffset - GET_WHEEL_DELTA_WPARAM(wParam) * wheelStep / WHEEL_DELTA); return 0;
    case WM_RBUTTONDOWN: { // beside the boxes
        POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        const int x = place.x - Margin();
        ClientToScreen(picBkg.Window(), &place);
        MouseDownRight(x, place);
        return 0;
    }
    case WM_RBUTTONUP: return 0;                                                        // the menu came with the press
    case WM_NCHITTEST: return DefWindowProcW(picBkg.Window(), message, wParam, lParam); // the scroll bar can be used
    case WM_COMMAND:                                                                    // of the button
        return SendMessageW(mvarForm.Window(), message, wParam, lParam);
    default: return std::nullopt;
    }
}

void BandStrip::PaintBoxes(HDC context, const RECT& client) const {
    FillRect(context, &client, GetSysColorBrush(COLOR_WINDOW));
    const bool focused = GetFocus() == picBand.Window();
    const int first = std::max(0, mvarLayout.BoxAt(mvarOffset));
    for (int box = first; box < mvarLayout.Count(); ++box) {
        const int left = mvarLayout.Left(box) - mvarOffset;
        if (left >= client.right) break;
        const RECT area{left, 0, left + mvarLayout.Width(box), client.bottom};
        mvarPainter.Paint(context, area, mvarBoxes[static_cast<std::size_t>(box)], box == mvarSelected, focused);
    }
}

void BandStrip::EnableAppend(bool enabled) const noexcept {
    if (!enabled && GetFocus() == imgButton) SendMessageW(mvarForm.Window(), WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(imgButton, enabled ? TRUE : FALSE);
}

void BandStrip::ShowTip(int x) const {
    const int place = mvarLayout.BoxAt(StripX(x));
    const BandBox box = place >= 0 ? mvarBoxes[static_cast<std::size_t>(place)] : BandBox();
    const String text = TipOf(box, mvarPainter.Clips(box));
    if (mvarForm.Tips().Text(picBand.Window()) != text) mvarForm.Tips().Set(picBand.Window(), text);
}

} // namespace kestrel::dialogs
