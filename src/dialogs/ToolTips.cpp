#include "dialogs/ToolTips.h"

#include <windows.h>

#include <commctrl.h>

#include "platform/Module.h"

namespace kestrel::dialogs {

namespace {

constexpr int widestTip = 400; // at 96 dpi
// Several sentences take longer to read than the few seconds that the system shows a tip; it takes no longer time.
constexpr LPARAM longestMilliseconds = 32767;

TTTOOLINFOW ToolOf(HWND form, HWND control) noexcept {
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE; // what every version of the controls accepts
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    return tool;
}

} // namespace

void ToolTips::Create(HWND form) noexcept {
    mvarForm = form;
    mvarWindow = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0,
                                 0, 0, form, nullptr, ThisModule(), nullptr);
    SendMessageW(mvarWindow, TTM_SETDELAYTIME, TTDT_AUTOPOP, longestMilliseconds);
}

void ToolTips::SetResolution(int dpi) const noexcept {
    SendMessageW(mvarWindow, TTM_SETMAXTIPWIDTH, 0, MulDiv(widestTip, dpi, 96));
}

void ToolTips::Set(HWND control, const String& text) const {
    auto tool = ToolOf(mvarForm, control);
    const auto parameter = reinterpret_cast<LPARAM>(&tool);
    tool.lpszText = const_cast<wchar_t*>(text.c_str()); // read only; the structure serves both directions
    const bool known = !Text(control).empty();
    if (text.empty())
        SendMessageW(mvarWindow, TTM_DELTOOLW, 0, parameter);
    else
        SendMessageW(mvarWindow, known ? TTM_UPDATETIPTEXTW : TTM_ADDTOOLW, 0, parameter);
}

String ToolTips::Text(HWND control) const {
    wchar_t text[1024] = {};
    auto tool = ToolOf(mvarForm, control);
    tool.lpszText = text;
    SendMessageW(mvarWindow, TTM_GETTEXTW, 1024, reinterpret_cast<LPARAM>(&tool));
    return text;
}

} // namespace kestrel::dialogs
