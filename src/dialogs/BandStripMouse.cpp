// How the mouse and the keys work the band strip.

#include <windowsx.h>

#include <algorithm>
#include <cstdlib>

#include "dialogs/BandStrip.h"
#include "dialogs/Cursor.h"
#include "dialogs/Form.h"
#include "dialogs/Monitor.h"

namespace kestrel::dialogs {

namespace {

constexpr int markerWidth = 4;
constexpr int dragScrollStep = 24;
constexpr UINT_PTR dragTimer = 1;
constexpr UINT dragTimerMilliseconds = 60;

} // namespace

std::optional<LRESULT> BandStrip::BandMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT mouse{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    switch (message) {
    case WM_NCHITTEST: return HTCLIENT; // a plain static lets the mouse through
    case WM_GETDLGCODE: return DLGC_WANTARROWS | (IsDragging() ? DLGC_WANTALLKEYS : 0);
    case WM_SETFOCUS: TellFocus(); [[fallthrough]];
    case WM_KILLFOCUS: picBand.Repaint(); return std::nullopt;
    case WM_GETOBJECT: return Reader(wParam, lParam);
    case WM_DESTROY: mvarAccessible.End(); return std::nullopt;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: MouseDown(mouse); return 0;
    case WM_MOUSEMOVE: MouseMove(mouse, (wParam & MK_LBUTTON) != 0); return 0;
    case WM_LBUTTONUP: MouseUp(mouse); return 0;
    case WM_RBUTTONDOWN: {
        POINT screen = mouse;
        ClientToScreen(picBand.Window(), &screen);
        MouseDownRight(mouse.x, screen);
        return 0;
    }
    case WM_RBUTTONUP: return 0; // the menu came with the press
    case WM_CONTEXTMENU: {
        const int box = std::clamp(mvarSelected, 0, std::max(0, mvarLayout.Count() - 1));
        POINT screen{mvarLayout.Left(box) - mvarOffset + Margin(), mvarPainter.Height()};
        ClientToScreen(picBand.Window(), &screen);
        mvarActions.menu(screen);
        return 0;
    }
    case WM_CANCELMODE:
    case WM_CAPTURECHANGED: CancelDrag(); return std::nullopt;
    case WM_TIMER: ScrollWhileDragging(); return 0;
    case WM_KEYDOWN:
        if (KeyDown(static_cast<unsigned>(wParam))) return 0;
        return std::nullopt;
    default: return std::nullopt;
    }
}

void BandStrip::MouseDown(POINT mouse) {
    CancelDrag();
    SetFocus(picBand.Window()); // a box that is being typed into is applied first
    const int box = mvarLayout.BoxAt(StripX(mouse.x));
    if (box < 0) return;
    mvarActions.select(box);
    if (box >= mvarLayout.Count()) return; // a handler changed the rule
    mvarDragged = box;
    mvarMouse = mouse;
    mvarPress = {StripX(mouse.x), mouse.y};
    mvarMoved = false;
    PlaceCopy();
    picMove.Show(true);
    SetCapture(picBand.Window());
    SetTimer(picBand.Window(), dragTimer, dragTimerMilliseconds, nullptr);
    ConfineCursor(picBkg.Window());
}

void BandStrip::MouseDownRight(int x, POINT screen) {
    CancelDrag();
    SetFocus(picBand.Window());
    const int box = mvarLayout.BoxAt(StripX(x));
    if (box >= 0) mvarActions.select(box);
    mvarActions.menu(screen);
}

// The button can have come up unseen, over a box that a handler of the host showed during the press.
void BandStrip::MouseMove(POINT mouse, bool buttonDown) {
    if (!buttonDown) CancelDrag();
    if (IsDragging())
        Follow(mouse);
    else
        ShowTip(mouse.x);
}

void BandStrip::Follow(POINT mouse) {
    mvarMouse = mouse;
    mvarMoved = mvarMoved || !IsNearPress(mouse);
    PlaceCopy();
    PlaceMarker(mvarLayout.EdgeOf(LandingAt(mouse)));
}

void BandStrip::MouseUp(POINT mouse) {
    ReleaseCursor();
    if (!IsDragging()) return;
    const int dragged = mvarDragged;
    const DropPlace place = LandingAt(mouse);
    CancelDrag();
    mvarActions.drop(dragged, place);
}

bool BandStrip::IsNearPress(POINT mouse) const noexcept {
    const UINT dpi = mvarForm.Layout().Dpi();
    return std::abs(StripX(mouse.x) - mvarPress.x) <= SystemMetric(SM_CXDRAG, dpi) &&
           std::abs(mouse.y - mvarPress.y) <= SystemMetric(SM_CYDRAG, dpi);
}

DropPlace BandStrip::LandingAt(POINT mouse) const noexcept {
    return IsNearPress(mouse) ? DropPlace{mvarDragged, false} : mvarLayout.DropAt(StripX(mouse.x));
}

void BandStrip::CancelDrag() noexcept {
    if (!IsDragging()) return;
    mvarDragged = -1;
    ReleaseCursor();
    KillTimer(picBand.Window(), dragTimer);
    picMove.Show(false);
    imgPos.Show(false);
    if (GetCapture() == picBand.Window()) ReleaseCapture();
}

// Near an end of the view the strip moves on under the mouse, unless that has only been pressed there.
void BandStrip::ScrollWhileDragging() {
    if (!IsDragging() || !mvarMoved) return;
    const int edge = mvarForm.Layout().Scaled(dragScrollStep);
    const int width = ViewWidth() - 2 * Margin();
    const int step = mvarMouse.x < edge ? -edge : mvarMouse.x > width - edge ? edge : 0;
    const int target = std::clamp(mvarOffset + step, 0, LargestOffset());
    if (target == mvarOffset) return;
    ScrollTo(target);
    Follow(mvarMouse);
}

// Once it is moved it hangs lower than the boxes, whose names can be read above it, and ends where the view does.
void BandStrip::PlaceCopy() const {
    const int grip = mvarPress.x - mvarLayout.Left(mvarDragged);
    RECT area = BoxArea(mvarMouse.x - grip + Margin(), mvarLayout.Width(mvarDragged));
    if (mvarMoved) OffsetRect(&area, 0, mvarPainter.NameBottom());
    area.bottom = std::min(area.bottom, picBkg.Client().bottom);
    picMove.Move(area);
    picMove.Repaint();
}

// Above the copy.
void BandStrip::PlaceMarker(int x) const {
    const int width = mvarForm.Layout().Scaled(markerWidth);
    const int edge = mvarLayout.Left(mvarLayout.GapNearest(x)) - mvarOffset + Margin();
    imgPos.Move(BoxArea(std::max(0, edge - width / 2), width));
    imgPos.Show(true);
}

bool BandStrip::KeyDown(unsigned key) {
    const bool control = GetKeyState(VK_CONTROL) < 0;
    const int last = mvarLayout.Count() - 1;
    switch (key) {
    case VK_ESCAPE: CancelDrag(); return true;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: {
        const int step = key == VK_LEFT || key == VK_UP ? -1 : 1;
        if (control)
            mvarActions.move(step);
        else if (mvarSelected + step >= 0 && mvarSelected + step <= last)
            mvarActions.select(mvarSelected + step);
        return true;
    }
    case VK_HOME:
    case VK_END:
        if (last >= 0) mvarActions.select(key == VK_HOME ? 0 : last);
        return true;
    case VK_DELETE: mvarActions.remove(); return true;
    default: return false;
    }
}

} // namespace kestrel::dialogs
