#include "dialogs/support/Reader.h"

#include "dialogs/support/Screen.h"
#include "platform/Bstr.h"
#include "platform/Module.h"

namespace kestrel::test {

namespace {

constexpr int turns = 400;
constexpr DWORD turnMilliseconds = 50;

Listener* theListener = nullptr;

struct Search {
    DWORD process;
    HWND found;
};

BOOL CALLBACK TakeDialog(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || String(name) != L"#32770" || IsWindowVisible(window) == FALSE) return TRUE;
    search.found = window;
    return FALSE;
}

LONG Number(HRESULT result, const VARIANT& value) noexcept {
    return result == S_OK && V_VT(&value) == VT_I4 ? V_I4(&value) : -1;
}

} // namespace

DialogHost::DialogHost(const String& dialog, const String& language, const String& folder) {
    const String own = ModulePath(nullptr);
    const String program = (folder.empty() ? own.substr(0, own.rfind(L'\\')) : folder) + L"\\dialog_host.exe";
    String command = L"\"" + program + L"\" " + dialog + L" " + language;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    if (CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                       &mvarProcess) == FALSE)
        return;
    Search search{mvarProcess.dwProcessId, nullptr};
    for (int turn = 0; turn < turns && search.found == nullptr; ++turn, Sleep(turnMilliseconds))
        EnumWindows(TakeDialog, reinterpret_cast<LPARAM>(&search));
    WaitForInputIdle(mvarProcess.hProcess, turns * turnMilliseconds); // all that opens with it is in place
    mvarWindow = search.found;
}

DialogHost::~DialogHost() {
    if (mvarProcess.hProcess == nullptr) return;
    TerminateProcess(mvarProcess.hProcess, 1);
    CloseHandle(mvarProcess.hThread);
    CloseHandle(mvarProcess.hProcess);
}

std::optional<DWORD> DialogHost::Close() {
    PostMessageW(mvarWindow, WM_CLOSE, 0, 0);
    DWORD code = 0;
    if (WaitForSingleObject(mvarProcess.hProcess, turns * turnMilliseconds) != WAIT_OBJECT_0) return std::nullopt;
    GetExitCodeProcess(mvarProcess.hProcess, &code);
    return code;
}

VARIANT ChildId(LONG number) noexcept {
    VARIANT child{};
    V_VT(&child) = VT_I4;
    V_I4(&child) = number;
    return child;
}

Reading::Reading(HWND window) {
    AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), mvarObject.OutVoid());
}

String Reading::Name(LONG child) const {
    Bstr name;
    if (mvarObject) mvarObject->get_accName(ChildId(child), name.Out());
    return name.Text();
}

String Reading::Description() const {
    Bstr description;
    mvarObject->get_accDescription(ChildId(CHILDID_SELF), description.Out());
    return description.Text();
}

String Reading::DefaultAction(LONG child) const {
    Bstr action;
    mvarObject->get_accDefaultAction(ChildId(child), action.Out());
    return action.Text();
}

LONG Reading::Role(LONG child) const {
    VARIANT role{};
    return Number(mvarObject->get_accRole(ChildId(child), &role), role);
}

LONG Reading::State(LONG child) const {
    VARIANT state{};
    return Number(mvarObject->get_accState(ChildId(child), &state), state);
}

Place Reading::PlaceOf(LONG child) const {
    Place place;
    mvarObject->accLocation(&place.left, &place.top, &place.width, &place.height, ChildId(child));
    return place;
}

std::vector<LONG> Reading::Children() const {
    LONG count = 0;
    mvarObject->get_accChildCount(&count);
    std::vector<VARIANT> children(static_cast<std::size_t>(count));
    if (count > 0) AccessibleChildren(mvarObject.Get(), 0, count, children.data(), &count);
    std::vector<LONG> numbers;
    for (LONG place = 0; place < count; ++place) {
        VARIANT& child = children[static_cast<std::size_t>(place)];
        if (V_VT(&child) == VT_I4) numbers.push_back(V_I4(&child));
        VariantClear(&child);
    }
    return numbers;
}

LONG Reading::Focus() const {
    VARIANT child{};
    return Number(mvarObject->get_accFocus(&child), child);
}

LONG Reading::Selection() const {
    VARIANT child{};
    return Number(mvarObject->get_accSelection(&child), child);
}

LONG Reading::Navigate(LONG direction, LONG from) const {
    VARIANT end{};
    return Number(mvarObject->accNavigate(direction, ChildId(from), &end), end);
}

LONG Reading::HitTest(LONG x, LONG y) const {
    VARIANT child{};
    return Number(mvarObject->accHitTest(x, y, &child), child);
}

Listener::Listener(DWORD process, HWND window)
    : mvarWindow(window),
      mvarHook(SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, Hear, process, 0, WINEVENT_OUTOFCONTEXT)) {
    theListener = this;
}

Listener::~Listener() {
    UnhookWinEvent(mvarHook);
    theListener = nullptr;
}

void CALLBACK Listener::Hear(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD) noexcept {
    if (theListener != nullptr && window == theListener->mvarWindow && object == OBJID_CLIENT)
        theListener->mvarHeard.insert({event, child});
}

bool Listener::Hears(const Announcement& wanted) {
    for (int turn = 0; turn < turns && !mvarHeard.contains(wanted); ++turn) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, turnMilliseconds, QS_ALLINPUT);
        RunPendingMessages();
    }
    return mvarHeard.contains(wanted);
}

} // namespace kestrel::test
