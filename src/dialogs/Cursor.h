// Keeps the mouse within a control while something is dragged there.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// How the confinement reaches the system; tests put their own in place.
using CursorClip = BOOL(WINAPI*)(const RECT*);
// Returns the one before.
CursorClip UseCursorClip(CursorClip clip) noexcept;

// Confines the mouse cursor to the control's rectangle on the screen; nothing when the control has none.
void ConfineCursor(HWND control) noexcept;
// Frees the cursor.
void ReleaseCursor() noexcept;

} // namespace kestrel::dialogs
