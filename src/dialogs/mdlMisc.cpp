#include "dialogs/mdlMisc.h"

#include <algorithm>

#include "common/Numbers.h"
#include "common/Ports.h"
#include "dialogs/Form.h"
#include "dialogs/mdlExtend.h"

namespace kestrel::dialogs {

namespace {

constexpr int fontNameText = 20;
constexpr int fontPointsText = 21;
constexpr int dropDownMargin = 10;
constexpr int screenMargin = 20;

std::optional<String> TextOf(const String& tag) {
    const double number = LeadingNumber(tag).value_or(0);
    if (number < 1) return std::nullopt;
    String text = TheStrings().Text(ToInteger(number).value_or(0));
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

void LocaliseControl(Form& form, const FormControl& control) {
    if (LocaliseItems(control.window)) return;
    if (const auto caption = CaptionFor(IsLabel(control.window), control.tag))
        SetWindowTextW(control.window, caption->c_str());
    if (const auto tip = TextOf(control.toolTip)) form.Tips().Set(control.window, *tip);
}

int WidestRow(HWND combo, int rows, HDC context) {
    const ControlItself itself(combo);
    int widest = 0;
    String text;
    for (int row = 0; row < rows; ++row) {
        const LRESULT length = itself.Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(row));
        text.assign(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, L'\0');
        itself.Send(CB_GETLBTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
        SIZE extent{};
        GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()) - 1, &extent);
        widest = std::max(widest, static_cast<int>(extent.cx));
    }
    return widest;
}

} // namespace

bool IsLabel(HWND control) {
    wchar_t name[16] = {};
    GetClassNameW(control, name, 16);
    return lstrcmpiW(name, L"Static") == 0;
}

std::optional<String> CaptionFor(bool isLabel, const String& tag) {
    auto text = TextOf(tag);
    if (text && isLabel) *text += L':';
    return text;
}

void LocaliseForm(Form& form) {
    const auto points = LeadingNumber(TheStrings().Text(fontPointsText));
    form.SetFont(TheStrings().Text(fontNameText), points.value_or(9));
    if (const auto caption = TextOf(form.Tag())) form.SetCaption(*caption);
    for (const auto& control : form.Controls())
        LocaliseControl(form, control);
}

void LocaliseMenu(HMENU menu) {
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        wchar_t caption[64] = {};
        const auto place = static_cast<UINT>(position);
        GetMenuStringW(menu, place, caption, 64, MF_BYPOSITION);
        auto text = TextOf(caption);
        MENUITEMINFOW item{};
        item.cbSize = sizeof item;
        item.fMask = MIIM_STRING;
        if (text) {
            item.dwTypeData = text->data();
            SetMenuItemInfoW(menu, place, TRUE, &item);
        }
        if (const HMENU below = GetSubMenu(menu, position)) LocaliseMenu(below);
    }
}

long FitDropDownWidth(HWND combo) {
    const auto rows = static_cast<int>(SendMessageW(combo, CB_GETCOUNT, 0, 0));
    const WindowContext context(combo);
    if (context.Get() == nullptr || rows < 1) return 1;
    const Selected font(context.Get(), reinterpret_cast<HFONT>(SendMessageW(combo, WM_GETFONT, 0, 0)));
    const int wanted = WidestRow(combo, rows, context.Get()) + dropDownMargin;
    if (wanted < SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0)) return 1;
    const int width = std::min(wanted, GetSystemMetrics(SM_CXSCREEN) - screenMargin);
    return static_cast<long>(SendMessageW(combo, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width), 0));
}

} // namespace kestrel::dialogs
