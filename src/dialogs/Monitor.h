// The screen that a window is on: its resolution, and what the system's parts measure there.
//
// Since Windows 10 each screen can have a resolution of its own. What tells of it is looked for when it is first
// needed, so that the library also loads where it is missing; one resolution counts for all windows there.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// How these questions reach the system; tests put their own in place. The first four are null where there are none.
struct MonitorFunctions {
    UINT(WINAPI* dpiForWindow)(HWND) = nullptr;
    int(WINAPI* metricForDpi)(int metric, UINT dpi) = nullptr;
    BOOL(WINAPI* adjustForDpi)(RECT* area, DWORD style, BOOL menu, DWORD extendedStyle, UINT dpi) = nullptr;
    BOOL(WINAPI* setDialogBehaviour)(HWND dialog, int mask, int values) = nullptr;
    BOOL(WINAPI* monitorInfo)(HMONITOR monitor, MONITORINFO* info) = nullptr;
};
// Returns those before.
MonitorFunctions UseMonitorFunctions(const MonitorFunctions& functions) noexcept;

// The dots per inch of the window's screen.
[[nodiscard]] UINT DpiOf(HWND window) noexcept;
// One of the system's measures (SM_...) at that resolution, in pixels.
[[nodiscard]] int SystemMetric(int metric, UINT dpi) noexcept;
// The size of the window, with its frame, when what the frame encloses has the size given.
[[nodiscard]] SIZE WithFrame(HWND window, SIZE client, UINT dpi) noexcept;
// What task bars leave of the window's screen.
[[nodiscard]] RECT WorkAreaOf(HWND window) noexcept;
// The form follows another resolution by itself: the system keeps its hands off it and its controls.
void KeepSystemFromRescaling(HWND dialog) noexcept;

} // namespace kestrel::dialogs
