// The system's library for accessibility. Few hosts ever need it, so it is loaded when a screen reader first asks for
// an object, from the folder of the system and from nowhere else.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include "platform/ComPtr.h"

namespace kestrel::dialogs {

// What a window answers to WM_GETOBJECT with that wParam to hand the object out; 0 (the window has no object) when the
// system cannot, for instance on a thread without COM.
[[nodiscard]] LRESULT ResultOfObject(WPARAM wParam, IAccessible* object) noexcept;

// The object that the system has for the client area of a window of that class; null when it has none.
[[nodiscard]] ComPtr<IAccessible> StandardObject(HWND window) noexcept;

} // namespace kestrel::dialogs
