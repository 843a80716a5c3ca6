// Shows one dialog, takes its picture from the screen, and closes it.
// usage: dialog_gallery DIALOG RULE FILE.bmp [DPI]
// DIALOG: designer, number (the same with a number selected), drag (while one of many bands is dragged), findings (as
// it opens), tip (with the pointer on a band that has findings), refusal (of a value just typed), band, relation,
// modify, fields, options; RULE: empty, filled; DPI: of the screen that the dialog is on, 96 when left out
#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <vector>

#include "common/Ports.h"
#include "dialogs/Handles.h"
#include "dialogs/WindowsDialogs.h"
#include "dialogs/support/Person.h"
#include "dialogs/support/Reader.h"
#include "dialogs/support/ShowDialog.h"
#include "platform/PlatformPorts.h"
#include "resources/dialogids.h"

namespace {

using namespace kestrel;

constexpr UINT settleMilliseconds = 700;
std::wstring thePicture;
std::wstring theDialog;
WORD theDpi = 96;

bool WriteBitmap(const std::wstring& file, int width, int height, const std::vector<BYTE>& pixels) {
    BITMAPFILEHEADER header{};
    BITMAPINFOHEADER info{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
    std::ofstream out(std::filesystem::path(file), std::ios::binary);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(reinterpret_cast<const char*>(pixels.data()), static_cast<std::streamsize>(pixels.size()));
    return out.flush().good();
}

// What the screen shows there.
bool TakePicture(const RECT& area, const std::wstring& file) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const dialogs::WindowContext screen(nullptr);
    const HDC memory = CreateCompatibleDC(screen.Get());
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const dialogs::GdiObject<HBITMAP> bitmap(CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    {
        const dialogs::Selected selected(memory, bitmap.Get());
        BitBlt(memory, 0, 0, width, height, screen.Get(), area.left, area.top, SRCCOPY);
        GdiFlush();
    }
    const auto* first = static_cast<const BYTE*>(bits);
    const std::vector<BYTE> pixels(first,
                                   first + static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    DeleteDC(memory);
    return WriteBitmap(file, width, height, pixels);
}

BOOL CALLBACK FindForm(HWND window, LPARAM found) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (lstrcmpW(name, L"#32770") != 0 || IsWindowVisible(window) == FALSE || IsWindowEnabled(window) == FALSE)
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

void CALLBACK PictureAndClose(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND form = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindForm, reinterpret_cast<LPARAM>(&form));
    if (form == nullptr) return;
    KillTimer(nullptr, timer);
    RECT area{};
    GetWindowRect(form, &area);
    const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    IntersectRect(&area, &area, &screen);
    const bool taken = TakePicture(area, thePicture);
    if (theDialog == L"drag") test::Person::Button(MOUSEEVENTF_LEFTUP);
    ExitProcess(taken ? 0 : 1); // without the questions that closing asks
}

HWND StripOf(HWND form) { return GetDlgItem(GetDlgItem(form, ID_picBkg), ID_picBand); }

// Takes a band out of the strip and holds it over another, with the mouse of the system: a drag ends when that has its
// button up.
void DragABand(HWND form) {
    const HWND strip = StripOf(form);
    SendMessageW(strip, WM_KEYDOWN, VK_END, 0);
    RECT area{};
    GetWindowRect(strip, &area);
    test::Person::Point({area.right - 60, area.top + 20});
    test::Person::Button(MOUSEEVENTF_LEFTDOWN);
    test::Person::Point({(area.left + area.right) / 2, area.top + 20});
}

void Pick(HWND form, int id, int row) {
    SendDlgItemMessageW(form, id, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(form, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), 0);
}

void SelectBand(HWND form, int band) {
    const HWND strip = StripOf(form);
    SetFocus(strip);
    for (int step = 1; step < band; ++step)
        SendMessageW(strip, WM_KEYDOWN, VK_RIGHT, 0);
}

void OpenFirstNode(HWND form) {
    const HWND tree = GetDlgItem(form, ID_tvwAvailable);
    const LRESULT root = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, root);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, root);
}

// The pointer goes there step by step: a tip follows a pointer that moves within its control.
void PointAtTheRegion(HWND form) {
    const test::Place box = test::Reading(StripOf(form)).PlaceOf(test::ibRegion);
    for (LONG offset : {20, 24, 28}) {
        test::Person::Point({box.left + offset, box.top + 20});
        test::RunPendingMessages(); // or the moves become one
    }
}

// Leaves the box with a length that a number cannot have.
void TypeAWrongLength(HWND form) {
    SelectBand(form, test::ibNumber);
    const HWND box = GetDlgItem(form, ID_txtLength);
    SetFocus(box);
    SetWindowTextW(box, L"0");
    SetFocus(StripOf(form));
}

void FillNewBand(HWND form) {
    SetDlgItemTextW(form, ID_txtName, L"Serial");
    Pick(form, ID_cboStyle, bsIncreaseNumber);
}

void FillRelation(HWND form) {
    SetDlgItemTextW(form, ID_txtCode, L"4");
    SetDlgItemTextW(form, ID_txtValue, L"Rostock");
}

void SelectALayer(HWND form) {
    SendDlgItemMessageW(form, ID_lstLayers, LB_SETCURSEL, 0, 0);
    SendMessageW(form, WM_COMMAND, MAKEWPARAM(ID_lstLayers, LBN_SELCHANGE), 0);
}

// What brings a dialog into a state worth a picture; one that is not here is that as it opens.
const std::map<std::wstring, void (*)(HWND)> thePreparations{
    {L"designer",
     [](HWND form) {
         SelectBand(form, test::ibRegion);
         OpenFirstNode(form);
     }},
    {L"number", [](HWND form) { SelectBand(form, test::ibNumber); }},
    {L"drag", DragABand},
    {L"tip", PointAtTheRegion},
    {L"refusal", TypeAWrongLength},
    {L"band", FillNewBand},
    {L"relation", FillRelation},
    {L"options", SelectALayer},
    {L"fields", [](HWND form) { SendDlgItemMessageW(form, ID_lstFields, LB_SETSEL, TRUE, 0); }},
};

void CALLBACK Prepare(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND form = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindForm, reinterpret_cast<LPARAM>(&form));
    if (form == nullptr) return;
    KillTimer(nullptr, timer);
    if (theDpi != 96) {
        RECT place{};
        SendMessageW(form, 0x02E0, MAKEWPARAM(theDpi, theDpi), reinterpret_cast<LPARAM>(&place)); // WM_DPICHANGED
    }
    const auto found = thePreparations.find(theDialog);
    if (found != thePreparations.end()) found->second(form);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 4 && argc != 5) return 2;
    SetProcessDPIAware(); // as a host of today: the dialogs and not the system scale
    theDialog = argv[1];
    thePicture = argv[3];
    if (argc == 5) theDpi = static_cast<WORD>(_wtoi(argv[4]));
    InstallPlatformPorts();
    static dialogs::WindowsDialogs windows;
    InstallPorts({&TheStrings(), &TheText(), &ThePrompts(), &windows});
    const auto rule = std::wstring(argv[2]) == L"filled" ? test::InvoiceRule() : test::EmptyRule();
    if (theDialog == L"drag") test::AddCounters(*rule, 6);
    if (std::wstring(argv[2]) == L"filled") SetTimer(nullptr, 0, settleMilliseconds / 2, Prepare);
    // A tip comes when the pointer has rested for a while.
    SetTimer(nullptr, 0, theDialog == L"tip" ? 4 * settleMilliseconds : settleMilliseconds, PictureAndClose);
    const std::set<std::wstring> states{L"number", L"drag", L"findings", L"tip", L"refusal"};
    test::ShowDialog(*rule, states.contains(theDialog) ? L"designer" : theDialog);
    return 1; // closed by someone else
}
