#include "dialogs/FormLayout.h"

#include <cmath>

namespace kestrel::dialogs {

namespace {

// The average width of a letter and the height of the font, as the system's own dialogs measure them.
SIZE UnitsOf(HWND form, HFONT font) {
    static constexpr wchar_t letters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const WindowContext context(form);
    const Selected selected(context.Get(), font);
    SIZE extent{};
    TEXTMETRICW metrics{};
    GetTextExtentPoint32W(context.Get(), letters, 52, &extent);
    GetTextMetricsW(context.Get(), &metrics);
    return {(extent.cx / 26 + 1) / 2, metrics.tmHeight};
}

// A closed drop-down list tells only the height of its field; what it was laid out with is the list's.
LONG HeightOf(HWND window, const RECT& area) {
    RECT dropped{};
    if (SendMessageW(window, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped)) == 0)
        return area.bottom - area.top;
    return dropped.bottom - dropped.top;
}

} // namespace

UINT DpiOf(HWND window) noexcept {
    using Ask = UINT(WINAPI*)(HWND);
    // Systems before Windows 10 have one resolution for all windows.
    const auto ask = reinterpret_cast<Ask>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const UINT dpi = ask != nullptr ? ask(window) : 0;
    if (dpi != 0) return dpi;
    const WindowContext screen(nullptr);
    return static_cast<UINT>(GetDeviceCaps(screen.Get(), LOGPIXELSY));
}

void FormLayout::Record(HWND form) {
    mvarForm = form;
    mvarDpi = DpiOf(form);
    RECT units{0, 0, 4, 8};
    MapDialogRect(form, &units);
    mvarDesignUnits = mvarUnits = {units.right, units.bottom};
    RECT client{};
    GetClientRect(form, &client);
    mvarDesignSize = {client.right, client.bottom};
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT area{};
        GetWindowRect(child, &area);
        area.bottom = area.top + HeightOf(child, area);
        MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&area), 2);
        mvarPlaces.push_back({child, area});
    }
}

void FormLayout::Apply(const String& fontName, double points, UINT dpi) {
    mvarDpi = dpi;
    MakeFont(fontName, points);
    SendMessageW(mvarForm, WM_SETFONT, reinterpret_cast<WPARAM>(mvarFont.Get()), FALSE);
    for (const auto& place : mvarPlaces)
        SendMessageW(place.window, WM_SETFONT, reinterpret_cast<WPARAM>(mvarFont.Get()), FALSE);
    mvarUnits = UnitsOf(mvarForm, mvarFont.Get());
    Arrange();
}

void FormLayout::MakeFont(const String& name, double points) {
    LOGFONTW description{};
    description.lfHeight = -static_cast<LONG>(std::lround(points * mvarDpi / 72));
    description.lfWeight = FW_NORMAL;
    description.lfCharSet = DEFAULT_CHARSET;
    description.lfQuality = CLEARTYPE_QUALITY;
    name.copy(description.lfFaceName, LF_FACESIZE - 1);
    mvarFont = GdiObject<HFONT>(CreateFontIndirectW(&description));
}

void FormLayout::Arrange() const {
    const auto x = [this](LONG value) { return MulDiv(value, mvarUnits.cx, mvarDesignUnits.cx); };
    const auto y = [this](LONG value) { return MulDiv(value, mvarUnits.cy, mvarDesignUnits.cy); };
    constexpr UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS;
    for (const auto& [window, area] : mvarPlaces)
        SetWindowPos(window, nullptr, x(area.left), y(area.top), x(area.right) - x(area.left),
                     y(area.bottom) - y(area.top), flags);
    RECT outer{0, 0, x(mvarDesignSize.cx), y(mvarDesignSize.cy)};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongW(mvarForm, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(mvarForm, GWL_EXSTYLE)));
    SetWindowPos(mvarForm, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top, flags | SWP_NOMOVE);
    RedrawWindow(mvarForm, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

} // namespace kestrel::dialogs
