#include "dialogs/Monitor.h"

#include <utility>

#include "dialogs/Handles.h"

namespace kestrel::dialogs {

namespace {

// DDC_DISABLE_ALL, which older headers do not know.
constexpr int disableAll = 1;

template <class Function>
void Look(Function& function, const char* name) noexcept {
    const HMODULE user = GetModuleHandleW(L"user32.dll"); // loaded as long as this library is
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(user, name)));
}

MonitorFunctions FunctionsOfTheSystem() noexcept {
    MonitorFunctions functions;
    Look(functions.dpiForWindow, "GetDpiForWindow");
    Look(functions.metricForDpi, "GetSystemMetricsForDpi");
    Look(functions.adjustForDpi, "AdjustWindowRectExForDpi");
    Look(functions.setDialogBehaviour, "SetDialogDpiChangeBehavior");
    functions.monitorInfo = GetMonitorInfoW;
    return functions;
}

MonitorFunctions& Functions() noexcept {
    static MonitorFunctions functions = FunctionsOfTheSystem();
    return functions;
}

} // namespace

MonitorFunctions UseMonitorFunctions(const MonitorFunctions& functions) noexcept {
    return std::exchange(Functions(), functions);
}

UINT DpiOf(HWND window) noexcept {
    const UINT dpi = Functions().dpiForWindow != nullptr ? Functions().dpiForWindow(window) : 0;
    if (dpi != 0) return dpi;
    const WindowContext screen(nullptr);
    return static_cast<UINT>(GetDeviceCaps(screen.Get(), LOGPIXELSY));
}

int SystemMetric(int metric, UINT dpi) noexcept {
    return Functions().metricForDpi != nullptr ? Functions().metricForDpi(metric, dpi) : GetSystemMetrics(metric);
}

SIZE WithFrame(HWND window, SIZE client, UINT dpi) noexcept {
    RECT area{0, 0, client.cx, client.cy};
    const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
    const auto extendedStyle = static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
    if (Functions().adjustForDpi != nullptr)
        Functions().adjustForDpi(&area, style, FALSE, extendedStyle, dpi);
    else
        AdjustWindowRectEx(&area, style, FALSE, extendedStyle);
    return {area.right - area.left, area.bottom - area.top};
}

RECT WorkAreaOf(HWND window) noexcept {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    Functions().monitorInfo(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

void KeepSystemFromRescaling(HWND dialog) noexcept {
    if (Functions().setDialogBehaviour != nullptr) Functions().setDialogBehaviour(dialog, disableAll, disableAll);
}

} // namespace kestrel::dialogs
