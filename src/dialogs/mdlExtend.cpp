#include "dialogs/mdlExtend.h"

#include <windows.h>

#include <commctrl.h>

#include "dialogs/mdlMisc.h"

namespace kestrel::dialogs {

namespace {

// A number has few digits; what is longer is no number and stays.
constexpr int longestText = 64;

template <class Structure>
LPARAM Parameter(Structure& structure) noexcept {
    return reinterpret_cast<LPARAM>(&structure);
}

LRESULT Send(HWND control, UINT message, LRESULT place, LPARAM parameter = 0) noexcept {
    return SendMessageW(control, message, static_cast<WPARAM>(place), parameter);
}

void LocaliseTabTip(HWND tabs, LRESULT place) {
    const auto tips = reinterpret_cast<HWND>(Send(tabs, TCM_GETTOOLTIPS, 0));
    if (tips == nullptr) return;
    wchar_t text[longestText] = {};
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE; // what every version of the controls accepts
    tool.hwnd = tabs;
    tool.uId = static_cast<UINT_PTR>(place);
    tool.lpszText = text;
    Send(tips, TTM_GETTEXTW, longestText, Parameter(tool));
    auto tip = CaptionFor(false, text);
    if (!tip) return;
    tool.lpszText = tip->data();
    Send(tips, TTM_UPDATETIPTEXTW, 0, Parameter(tool));
}

void LocaliseTabs(HWND tabs) {
    const LRESULT count = Send(tabs, TCM_GETITEMCOUNT, 0);
    for (LRESULT place = 0; place < count; ++place) {
        wchar_t text[longestText] = {};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = longestText;
        Send(tabs, TCM_GETITEMW, place, Parameter(item));
        auto caption = CaptionFor(false, text);
        if (caption) {
            item.pszText = caption->data();
            Send(tabs, TCM_SETITEMW, place, Parameter(item));
        }
        LocaliseTabTip(tabs, place);
    }
}

void LocaliseButtons(HWND toolbar) {
    const LRESULT count = Send(toolbar, TB_BUTTONCOUNT, 0);
    for (LRESULT place = 0; place < count; ++place) {
        TBBUTTON button{};
        wchar_t text[longestText] = {};
        TBBUTTONINFOW info{};
        info.cbSize = sizeof info;
        info.dwMask = TBIF_TEXT;
        info.pszText = text;
        info.cchText = longestText;
        Send(toolbar, TB_GETBUTTON, place, Parameter(button));
        Send(toolbar, TB_GETBUTTONINFOW, button.idCommand, Parameter(info));
        auto tip = CaptionFor(false, text);
        if (!tip) continue;
        info.pszText = tip->data();
        Send(toolbar, TB_SETBUTTONINFOW, button.idCommand, Parameter(info));
    }
}

void LocaliseColumns(HWND list) {
    const LRESULT count = Send(reinterpret_cast<HWND>(Send(list, LVM_GETHEADER, 0)), HDM_GETITEMCOUNT, 0);
    for (LRESULT place = 0; place < count; ++place) {
        wchar_t text[longestText] = {};
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = text;
        column.cchTextMax = longestText;
        Send(list, LVM_GETCOLUMNW, place, Parameter(column));
        auto heading = CaptionFor(false, text);
        if (!heading) continue;
        column.pszText = heading->data();
        Send(list, LVM_SETCOLUMNW, place, Parameter(column));
    }
}

struct Kind {
    const wchar_t* className;
    void (*localise)(HWND);
};
constexpr Kind kinds[] = {
    {WC_TABCONTROLW, LocaliseTabs}, {TOOLBARCLASSNAMEW, LocaliseButtons}, {WC_LISTVIEWW, LocaliseColumns}};

} // namespace

bool LocaliseItems(HWND control) {
    wchar_t name[32] = {};
    GetClassNameW(control, name, 32);
    for (const auto& kind : kinds) {
        if (lstrcmpiW(name, kind.className) != 0) continue;
        kind.localise(control);
        return true;
    }
    return false;
}

} // namespace kestrel::dialogs
