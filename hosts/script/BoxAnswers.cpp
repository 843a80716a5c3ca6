#include "hosts/script/BoxAnswers.h"

#include <array>

#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "hosts/common/Text.h"

namespace hosts::script {

namespace {

constexpr UINT PollMilliseconds = 50;
constexpr int BoxText = 0xFFFF; // the id of the text in the system's message boxes
constexpr const wchar_t* DialogClass = L"#32770";

// A timer of no window gives its procedure nothing to find the object by.
thread_local BoxAnswers* current = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): as above

bool HasChild(HWND window, int id) { return GetDlgItem(window, id) != nullptr; }

// One that another dialog stands over is not ready: it is disabled.
bool IsReadyDialog(HWND window) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return std::wstring(name.data()) == DialogClass && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0;
}

std::wstring TextOf(HWND window) {
    std::wstring content(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, content.data(), static_cast<int>(content.size()));
    content.resize(static_cast<std::size_t>(length));
    return content;
}

} // namespace

BoxAnswers::BoxAnswers(Answer answer)
    : mvarAnswer(answer), mvarTimer(SetTimer(nullptr, 0, PollMilliseconds, &OnTimer)) {
    if (mvarTimer == 0) throw HostError(L"the system has no timer left");
    current = this;
}

BoxAnswers::~BoxAnswers() {
    KillTimer(nullptr, mvarTimer);
    current = nullptr;
}

void BoxAnswers::OnTimer(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) noexcept {
    if (current != nullptr) EnumThreadWindows(GetCurrentThreadId(), &OnWindow, reinterpret_cast<LPARAM>(current));
}

BOOL BoxAnswers::OnWindow(HWND window, LPARAM answers) noexcept {
    auto& self = *reinterpret_cast<BoxAnswers*>(answers);
    if (window == self.mvarAnswered || !IsReadyDialog(window)) return TRUE;
    try {
        HasChild(window, BoxText) ? self.Reply(window) : self.Close(window);
    } catch (...) { // the box is left to whoever sits at the screen
        self.mvarAnswered = window;
    }
    return FALSE;
}

void BoxAnswers::Reply(HWND box) {
    const bool isQuestion = HasChild(box, IDYES) && HasChild(box, IDNO);
    const bool isYes = mvarAnswer == Answer::Yes;
    const int button = !isQuestion ? IDOK : isYes ? IDYES : IDNO;
    const std::wstring reply = !isQuestion ? L"closed: " : isYes ? L"answered yes: " : L"answered no: ";
    PrintLine(reply + OneLine(TextOf(GetDlgItem(box, BoxText))));
    mvarAnswered = box;
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
}

void BoxAnswers::Close(HWND dialog) {
    PrintLine(L"closed dialog: " + OneLine(TextOf(dialog)));
    mvarAnswered = dialog;
    PostMessageW(dialog, WM_CLOSE, 0, 0);
}

} // namespace hosts::script
