// How the mouse and the keys work the band strip.

#include <windowsx.h>

#include <algorithm>

#include "dialogs/BandStrip.h"
#include "dialogs/Cursor.h"
#include "dialogs/Form.h"

namespace kestrel::dialogs {

namespace {

constexpr int markerWidth = 4;
constexpr int dragScrollStep = 24;
constexpr UINT_PTR dragTimer = 1;
constexpr UINT dragTimerMilliseconds = 60;

} // namespace

std::optional<LRESULT> BandStrip::BandMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const int x = GET_X_LPARAM(lParam);
    switch (message) {
    case WM_NCHITTEST: return HTCLIENT; // a plain static lets the mouse through
    case WM_GETDLGCODE: return DLGC_WANTARROWS | (IsDragging() ? DLGC_WANTALLKEYS : 0);
    case WM_SETFOCUS: TellFocus(); [[fallthrough]];
    case WM_KILLFOCUS: picBand.Repaint(); return std::nullopt;
    case WM_GETOBJECT: return Reader(wParam, lParam);
    case WM_DESTROY: mvarAccessible.End(); return std::nullopt;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: MouseDown(x); return 0;
    case WM_MOUSEMOVE: MouseMove(x); return 0;
    case WM_LBUTTONUP: MouseUp(x); return 0;
    case WM_RBUTTONDOWN: {
        POINT screen{x, GET_Y_LPARAM(lParam)};
        ClientToScreen(picBand.Window(), &screen);
        MouseDownRight(x, screen);
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
    case WM_CAPTURECHANGED: CancelDrag(); return std::nullopt;
    case WM_TIMER: ScrollWhileDragging(); return 0;
    case WM_KEYDOWN:
        if (KeyDown(static_cast<unsigned>(wParam))) return 0;
        return std::nullopt;
    default: return std::nullopt;
    }
}

void BandStrip::MouseDown(int x) {
    CancelDrag();
    SetFocus(picBand.Window()); // a box that is being typed into is applied first
    const int box = mvarLayout.BoxAt(StripX(x));
    if (box < 0) return;
    mvarActions.select(box);
    if (box >= mvarLayout.Count()) return; // a handler changed the rule
    mvarDragged = box;
    mvarDragX = x;
    mvarGrip = StripX(x) - mvarLayout.Left(box);
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

void BandStrip::MouseMove(int x) {
    if (!IsDragging()) {
        ShowTip(x);
        return;
    }
    mvarDragX = x;
    PlaceCopy();
    PlaceMarker(mvarLayout.LandingEdge(StripX(x)));
}

void BandStrip::MouseUp(int x) {
    ReleaseCursor();
    if (!IsDragging()) return;
    const int dragged = mvarDragged;
    const DropPlace place = mvarLayout.DropAt(StripX(x));
    CancelDrag();
    mvarActions.drop(dragged, place);
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

// Near an end of the view the strip moves on under the mouse.
void BandStrip::ScrollWhileDragging() {
    if (!IsDragging()) return;
    const int edge = mvarForm.Layout().Scaled(dragScrollStep);
    const int width = ViewWidth() - 2 * Margin();
    const int step = mvarDragX < edge ? -edge : mvarDragX > width - edge ? edge : 0;
    const int target = std::clamp(mvarOffset + step, 0, LargestOffset());
    if (target == mvarOffset) return;
    ScrollTo(target);
    MouseMove(mvarDragX);
}

void BandStrip::PlaceCopy() const {
    const int left = mvarDragX - mvarGrip + Margin();
    picMove.Move(BoxArea(left, mvarLayout.Width(mvarDragged)));
    picMove.Repaint();
}

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
