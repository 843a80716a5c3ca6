#include "dialogs/Cursor.h"

#include <utility>

namespace kestrel::dialogs {

namespace {

CursorClip theClip = ClipCursor;

} // namespace

CursorClip UseCursorClip(CursorClip clip) noexcept { return std::exchange(theClip, clip); }

void ConfineCursor(HWND control) noexcept {
    RECT area;
    if (GetWindowRect(control, &area) != FALSE) theClip(&area);
}

void ReleaseCursor() noexcept { theClip(nullptr); }

} // namespace kestrel::dialogs
