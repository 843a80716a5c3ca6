#include "dialogs/Form.h"

#include <windows.h>

#include <commctrl.h>

#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "dialogs/ModalOwner.h"
#include "dialogs/Monitor.h"
#include "dialogs/VisualStyles.h"
#include "dialogs/mdlMisc.h"
#include "platform/Module.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace kestrel::dialogs {

namespace {

bool IsNumber(const String& text) { return !text.empty() && text.find_first_not_of(L"0123456789") == String::npos; }

void LoadControlClasses() noexcept {
    INITCOMMONCONTROLSEX classes{sizeof(INITCOMMONCONTROLSEX),
                                 ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
}

} // namespace

Form::~Form() {
    if (mvarWindow == nullptr) return;
    SetWindowLongPtrW(mvarWindow, DWLP_USER, 0); // the form is half gone, it handles nothing any more
    DestroyWindow(mvarWindow);
}

HWND Form::Find(int id) const noexcept {
    if (mvarWindow == nullptr) return nullptr;
    // Most are asked for again and again, and the system looks through all windows of the form each time.
    for (const auto& control : mvarControls)
        if (control.id == id && IsWindow(control.window) != FALSE) return control.window;
    const HWND direct = GetDlgItem(mvarWindow, id);
    if (direct != nullptr) return direct;
    for (HWND child = GetWindow(mvarWindow, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        if (const HWND within = GetDlgItem(child, id)) return within;
    return nullptr;
}

void Form::Load() {
    if (mvarWindow != nullptr) return;
    const VisualStyles styles;
    LoadControlClasses();
    CreateDialogParamW(ThisModule(), MAKEINTRESOURCEW(mvarTemplate), ThreadsActiveWindow(), Procedure,
                       reinterpret_cast<LPARAM>(this));
    if (mvarWindow == nullptr) throw Error(Message::InvalidCall); // the system has no window left to give
    Form_Load();
}

INT_PTR CALLBACK Form::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return Guarded<INT_PTR>(FALSE, [&]() -> INT_PTR {
        if (message == WM_INITDIALOG) {
            reinterpret_cast<Form*>(lParam)->Initialise(window);
            return FALSE; // the form sets the focus when it is shown
        }
        auto* form = reinterpret_cast<Form*>(GetWindowLongPtrW(window, DWLP_USER));
        if (form == nullptr) return FALSE;
        const auto result = form->Dispatch(message, wParam, lParam);
        if (!result) return FALSE;
        SetWindowLongPtrW(window, DWLP_MSGRESULT, *result);
        return TRUE;
    });
}

void Form::Initialise(HWND window) {
    mvarWindow = window;
    SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
    KeepSystemFromRescaling(window);
    mvarLayout.Record(window);
    mvarTips.Create(window);
    mvarTips.SetResolution(static_cast<int>(mvarLayout.Dpi()));
    CollectControls();
    LocaliseForm(*this);
    mvarNames.NameAll(window);
}

void Form::CollectControls() {
    const String caption = Caption();
    if (IsNumber(caption)) mvarTag = caption;
    for (HWND child = GetWindow(mvarWindow, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const String text = WindowText(child);
        const int id = GetDlgCtrlID(child);
        const auto tip = mvarToolTipTags.find(id);
        mvarControls.push_back({child, id, IsNumber(text) ? text : String(),
                                tip == mvarToolTipTags.end() ? String() : ToText(tip->second)});
    }
}

std::optional<LRESULT> Form::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND: Command(LOWORD(wParam), HIWORD(wParam)); return 0;
    case WM_NOTIFY: return Notified(*reinterpret_cast<NMHDR*>(lParam));
    case WM_DPICHANGED: ChangeDpi(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam)); return 0;
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case WM_SETTINGCHANGE: SystemChanged(message, wParam, lParam); return 0;
    case WM_NCDESTROY:
        mvarWindow = nullptr;
        mvarHidden = true;
        PostMessageW(nullptr, WM_NULL, 0, 0); // wakes the loop, which has no window left to wait for
        return std::nullopt;
    default: return Handle(message, wParam, lParam);
    }
}

std::optional<LRESULT> Form::Handle(UINT, WPARAM, LPARAM) { return std::nullopt; }

void Form::Command(int id, int notification) {
    if (mvarHidden && notification == BN_CLICKED) return; // clicked before the form closed, and handled after
    const auto found = mvarHandlers.find({id, notification});
    if (found != mvarHandlers.end())
        Run(Handler(found->second)); // its own copy, whatever the step does to the form
    else if (id == IDCANCEL && notification == BN_CLICKED)
        Run([this] { Cancelled(); });
}

std::optional<LRESULT> Form::Notified(NMHDR& header) {
    const auto found = mvarNotifications.find(static_cast<int>(header.idFrom));
    if (found == mvarNotifications.end()) return std::nullopt;
    std::optional<LRESULT> result;
    Run([&] { result = found->second(header); });
    return result;
}

void Form::Run(const Handler& step) {
    if (const auto refusal = Trapped(step)) Refused(*refusal);
}

void Form::SetFont(const String& name, double points) {
    mvarFontName = name;
    mvarFontPoints = points;
    ApplyLayout(mvarLayout.Dpi());
}

// The font before goes only when everything has the new one.
void Form::ApplyLayout(UINT dpi) {
    const auto before = mvarLayout.Apply(mvarFontName, mvarFontPoints, dpi);
    mvarTips.SetResolution(static_cast<int>(dpi));
    Form_Resize();
}

void Form::ChangeDpi(UINT dpi, const RECT& place) {
    SetWindowPos(mvarWindow, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    ApplyLayout(dpi);
}

// The common controls draw with what has changed, and the frame or the room on the screen may have another size.
void Form::SystemChanged(UINT message, WPARAM wParam, LPARAM lParam) {
    for (const auto& control : mvarControls)
        SendMessageW(control.window, message, wParam, lParam);
    Form_ColoursChanged();
    if (message == WM_SETTINGCHANGE && (wParam == SPI_SETNONCLIENTMETRICS || wParam == SPI_SETWORKAREA))
        ApplyLayout(mvarLayout.Dpi());
    InvalidateRect(mvarWindow, nullptr, TRUE);
}

void Form::Hide() noexcept {
    mvarHidden = true;
    PostMessageW(mvarWindow, WM_NULL, 0, 0); // wakes the loop, which ends
}

void Form::ShowModal() {
    Load();
    mvarHidden = false;
    {
        ModalOwner owner(mvarWindow);
        RunLoop();
        owner.Enable(); // before the form goes, so that its owner and no other program becomes active
        if (mvarWindow != nullptr) ShowWindow(mvarWindow, SW_HIDE);
    }
    Unload();
    if (mvarQuit) PostQuitMessage(mvarQuitCode); // for the loops below this one
}

void Form::RunLoop() {
    MSG message;
    while (!mvarHidden && !HasEnded()) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0) {
            mvarQuit = true;
            mvarQuitCode = static_cast<int>(message.wParam);
        }
        if (got <= 0) break;
        if (IsDialogMessageW(mvarWindow, &message) != FALSE) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    mvarHidden = true;
}

void Form::Unload() noexcept {
    Guarded(0, [this] {
        Run([this] { Form_Unload(); });
        return 0;
    });
    if (mvarWindow != nullptr) DestroyWindow(mvarWindow);
}

void LetPendingMessagesRun() noexcept {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace kestrel::dialogs
