#include "dialogs/FormLayout.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "dialogs/Monitor.h"

namespace kestrel::dialogs {

namespace {

constexpr LONG boxHeight = 13; // of the templates' boxes, in units of the dialog
constexpr LONG spinWidth = 10; // of their spin bars
constexpr UINT placing = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS;

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

LONG HeightOf(HWND window) noexcept {
    RECT area{};
    GetWindowRect(window, &area);
    return area.bottom - area.top;
}

// A closed drop-down list tells only the height of its field; what it was laid out with is the list's.
LONG DroppedHeightOf(HWND combo) noexcept {
    RECT dropped{};
    SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
    return dropped.bottom - dropped.top;
}

GdiObject<HFONT> MakeFont(const String& name, double points, UINT dpi) {
    LOGFONTW description{};
    description.lfHeight = -static_cast<LONG>(std::lround(points * dpi / 72));
    description.lfWeight = FW_NORMAL;
    description.lfCharSet = DEFAULT_CHARSET;
    description.lfQuality = CLEARTYPE_QUALITY;
    name.copy(description.lfFaceName, LF_FACESIZE - 1);
    return GdiObject<HFONT>(CreateFontIndirectW(&description));
}

void PutAt(HWND window, const RECT& area) noexcept {
    SetWindowPos(window, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top, placing);
}

} // namespace

FormLayout::Kind FormLayout::KindOf(HWND window) noexcept {
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    if (lstrcmpiW(name, WC_COMBOBOXW) == 0) return Kind::DropDown;
    return lstrcmpiW(name, UPDOWN_CLASSW) == 0 ? Kind::Spin : Kind::Plain;
}

void FormLayout::MayGiveWay(int id, int units) noexcept {
    mvarGivingId = id;
    mvarGivingUnits = units;
}

void FormLayout::Record(HWND form) {
    mvarForm = form;
    mvarDpi = DpiOf(form);
    RECT base{0, 0, 4, 8};
    MapDialogRect(form, &base);
    mvarBase = {base.right, base.bottom};
    RECT client{};
    GetClientRect(form, &client);
    mvarSize = {MulDiv(client.right, 4, mvarBase.cx), MulDiv(client.bottom, 8, mvarBase.cy)};
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        mvarPlaces.push_back({child, KindOf(child), UnitsFrom(child)});
        if (mvarGivingUnits > 0 && GetDlgCtrlID(child) == mvarGivingId) mvarLine = mvarPlaces.back().area.bottom;
    }
}

// The template's own numbers, which the pixels have rounded: edges that stand in one line there stay so everywhere.
RECT FormLayout::UnitsFrom(HWND window) const noexcept {
    RECT area{};
    GetWindowRect(window, &area);
    const LONG width = MulDiv(area.right - area.left, 4, mvarBase.cx);
    const bool list = KindOf(window) == Kind::DropDown;
    const LONG height = MulDiv(list ? DroppedHeightOf(window) : HeightOf(window), 8, mvarBase.cy);
    MapWindowPoints(nullptr, mvarForm, reinterpret_cast<POINT*>(&area), 1);
    const LONG left = MulDiv(area.left, 4, mvarBase.cx);
    const LONG top = MulDiv(area.top, 8, mvarBase.cy);
    return {left, top, left + width, top + height};
}

GdiObject<HFONT> FormLayout::Apply(const String& fontName, double points, UINT dpi) {
    mvarDpi = dpi;
    auto before = std::exchange(mvarFont, MakeFont(fontName, points, dpi));
    SendMessageW(mvarForm, WM_SETFONT, reinterpret_cast<WPARAM>(mvarFont.Get()), FALSE);
    for (const auto& place : mvarPlaces)
        SendMessageW(place.window, WM_SETFONT, reinterpret_cast<WPARAM>(mvarFont.Get()), FALSE);
    mvarBase = UnitsOf(mvarForm, mvarFont.Get());
    ChooseGivenWay();
    Arrange();
    SizeForm();
    RedrawWindow(mvarForm, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    return before;
}

void FormLayout::ChooseGivenWay() noexcept {
    const HWND owner = GetWindow(mvarForm, GW_OWNER);
    const RECT work = WorkAreaOf(owner != nullptr ? owner : mvarForm);
    const SIZE whole = WithFrame(mvarForm, {X(mvarSize.cx), Y(mvarSize.cy)}, mvarDpi);
    mvarGivenWay = std::clamp(whole.cy - (work.bottom - work.top), 0L, Y(mvarGivingUnits));
}

RECT FormLayout::AreaOf(const Place& place) const noexcept {
    const auto y = [this](LONG units) { return Y(units) - (units >= mvarLine ? mvarGivenWay : 0); };
    return {X(place.area.left), y(place.area.top), X(place.area.right), y(place.area.bottom)};
}

void FormLayout::Arrange() const {
    for (std::size_t index = 0; index < mvarPlaces.size(); ++index) {
        const auto& place = mvarPlaces[index];
        switch (place.kind) {
        case Kind::DropDown: PlaceDropDown(place); break;
        case Kind::Spin: PlaceSpin(place.window, mvarPlaces[index - 1]); break;
        case Kind::Plain: PutAt(place.window, AreaOf(place)); break;
        }
    }
}

// The system makes the field as high as its font wants it; it shall be as high as the text boxes.
void FormLayout::PlaceDropDown(const Place& place) const noexcept {
    RECT area = AreaOf(place);
    area.bottom = area.top + Y(place.area.bottom - place.area.top); // the list drops over whatever stands below
    PutAt(place.window, area);
    constexpr auto field = static_cast<WPARAM>(-1);
    const LONG height = Y(place.area.top + boxHeight) - Y(place.area.top);
    SendMessageW(place.window, CB_SETITEMHEIGHT, field, height);
    const LONG border = HeightOf(place.window) - height; // the field stands in one, differently wide in each system
    SendMessageW(place.window, CB_SETITEMHEIGHT, field, height - border);
}

// The bar chooses a width of its own when it is made: it gets its share of the box, up to the very edge.
void FormLayout::PlaceSpin(HWND spin, const Place& box) const noexcept {
    RECT area = AreaOf(box);
    const LONG edge = area.right - X(spinWidth);
    PutAt(spin, {edge, area.top, area.right, area.bottom});
    area.right = edge;
    PutAt(box.window, area);
}

void FormLayout::SizeForm() const noexcept {
    const SIZE client{X(mvarSize.cx), Y(mvarSize.cy) - mvarGivenWay};
    const SIZE whole = WithFrame(mvarForm, client, mvarDpi);
    SetWindowPos(mvarForm, nullptr, 0, 0, whole.cx, whole.cy, placing | SWP_NOMOVE | SWP_FRAMECHANGED);
    // The frames of some hosts' windows do not follow the screen: what is left over or missing is seen inside.
    RECT inner{};
    GetClientRect(mvarForm, &inner);
    const SIZE rest{client.cx - inner.right, client.cy - inner.bottom};
    if (rest.cx != 0 || rest.cy != 0)
        SetWindowPos(mvarForm, nullptr, 0, 0, whole.cx + rest.cx, whole.cy + rest.cy, placing | SWP_NOMOVE);
}

} // namespace kestrel::dialogs
