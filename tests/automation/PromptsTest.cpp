// Questions and information as real message boxes, answered by a second thread as a user would.
#include <array>
#include <atomic>
#include <thread>

#include "automation/support/Library.h"
#include "automation/support/Sink.h"
#include "platform/MessagePrompts.h"

namespace kestrel::test {

namespace {

// What a message box showed.
struct Box {
    String title;
    String text;
    bool hasYes = false;
    bool hasNo = false;
    bool defaultIsNo = false;
    HWND owner = nullptr;
};

String WindowText(HWND window) {
    std::array<wchar_t, 512> text{};
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 2000,
                        nullptr);
    return text.data();
}

// Waits for the message box of that thread and presses the button.
class Answer {
  public:
    explicit Answer(int button) : mvarButton(button), mvarThread([this] { Run(); }) {}
    // One answer, one box.
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;
    ~Answer() {
        if (mvarThread.joinable()) Seen();
    }
    // After the box has closed: what it showed.
    const Box& Seen() {
        mvarGivenUp = true;
        if (mvarThread.joinable()) mvarThread.join();
        return mvarBox;
    }

  private:
    static BOOL CALLBACK TakeDialog(HWND window, LPARAM found) {
        std::array<wchar_t, 16> name{};
        GetClassNameW(window, name.data(), static_cast<int>(name.size()));
        if (String(name.data()) != L"#32770" || !IsWindowVisible(window)) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }

    void Run() {
        HWND box = nullptr;
        while (box == nullptr && !mvarGivenUp) {
            Sleep(5);
            EnumThreadWindows(mvarAsking, TakeDialog, reinterpret_cast<LPARAM>(&box));
        }
        if (box == nullptr) return;
        mvarBox.title = WindowText(box);
        mvarBox.text = WindowText(GetDlgItem(box, 0xFFFF));
        mvarBox.hasYes = GetDlgItem(box, IDYES) != nullptr;
        mvarBox.hasNo = GetDlgItem(box, IDNO) != nullptr;
        mvarBox.defaultIsNo = (GetWindowLongW(GetDlgItem(box, IDNO), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        mvarBox.owner = GetWindow(box, GW_OWNER);
        PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(mvarButton), 0);
    }

    int mvarButton;
    Box mvarBox;
    DWORD mvarAsking = GetCurrentThreadId();
    std::atomic<bool> mvarGivenUp = false;
    std::thread mvarThread; // last: it uses the others
};

// As in a service: this process's windows are where nobody sees them.
class UnseenStation {
  public:
    UnseenStation() : mvarStation(CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr)) {
        if (mvarStation == nullptr || !SetProcessWindowStation(mvarStation))
            throw HostError(HRESULT_FROM_WIN32(GetLastError()));
    }
    // The one before comes back once.
    UnseenStation(const UnseenStation&) = delete;
    UnseenStation& operator=(const UnseenStation&) = delete;
    ~UnseenStation() {
        SetProcessWindowStation(mvarSeen);
        CloseWindowStation(mvarStation);
    }

  private:
    HWINSTA mvarSeen = GetProcessWindowStation();
    HWINSTA mvarStation;
};

class PromptsTest : public ComTest {
  protected:
    // The band N tracks the band P.
    static ComPtr<_CodeClass> RuleWithTrackedBand() {
        auto rule = NewRule();
        ComPtr<_Band> number;
        Must(rule->Add(Arg(L"P"), bsFixed, smNoneSwap, Arg(L"x"), nullptr, Missing(), nullptr, Missing(), Missing(),
                       ComPtr<_Band>().Out()));
        Must(rule->Add(Arg(L"N"), bsIncreaseNumber, smNoneSwap, Arg(L"1"), nullptr, Missing(), nullptr, Missing(),
                       Missing(), number.Out()));
        Must(Object(number, &_Band::get_TrackBands)->Add(Arg(L"P"), Bstr().Out()));
        return rule;
    }

    MessagePrompts prompts;
};

} // namespace

TEST_F(PromptsTest, AskAnsweredWithYes) {
    Answer answer(IDYES);
    EXPECT_TRUE(prompts.Ask(L"Really?"));
    const Box& box = answer.Seen();
    EXPECT_EQ(box.text, L"Really?");
    EXPECT_EQ(box.title, L"automation_tests.exe") << "this program tells no description of itself";
    EXPECT_TRUE(box.hasYes);
    EXPECT_TRUE(box.hasNo);
    EXPECT_FALSE(box.defaultIsNo);
}

TEST_F(PromptsTest, AskAnsweredWithNo) {
    Answer answer(IDNO);
    EXPECT_FALSE(prompts.Ask(L"Really?"));
}

TEST_F(PromptsTest, AskDefaultNo) {
    Answer answer(IDYES);
    EXPECT_TRUE(prompts.AskDefaultNo(L"Really?"));
    EXPECT_TRUE(answer.Seen().defaultIsNo);
}

TEST_F(PromptsTest, InformAndWarn) {
    {
        Answer answer(IDOK);
        prompts.Inform(L"So it is.");
        EXPECT_EQ(answer.Seen().text, L"So it is.");
        EXPECT_FALSE(answer.Seen().hasYes);
    }
    Answer answer(IDOK);
    prompts.Warn(L"No.");
    EXPECT_EQ(answer.Seen().text, L"No.");
}

TEST_F(PromptsTest, TheActiveWindowOwnsTheBox) {
    const HWND window = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100,
                                        nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    SetActiveWindow(window);
    {
        Answer answer(IDYES);
        EXPECT_TRUE(prompts.Ask(L"Really?"));
        EXPECT_EQ(answer.Seen().owner, window);
    }
    DestroyWindow(window);
}

TEST_F(PromptsTest, TheNameOfAProgram) {
    EXPECT_EQ(ApplicationName(LibraryPath()), L"Kestrel code rules") << "what the file says it is";
    EXPECT_EQ(ApplicationName(L"C:\\none\\host.exe"), L"host.exe");
    EXPECT_EQ(ApplicationName(L"host.exe"), L"host.exe");
}

// Nobody could answer: the box would hold the service for ever.
TEST_F(PromptsTest, WhereNobodySeesThemNoneComesUp) {
    const UnseenStation station;
    Answer answer(IDYES);
    EXPECT_FALSE(prompts.Ask(L"Really?"));
    EXPECT_FALSE(prompts.AskDefaultNo(L"Really?"));
    prompts.Inform(L"So it is.");
    prompts.Warn(L"No.");
    EXPECT_EQ(answer.Seen().text, L"") << "a box came up";
}

TEST_F(PromptsTest, WhereNobodySeesThemNothingIsSaved) {
    const auto rule = NewRule();
    bool asked = false;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&asked](const EventCall& call) {
        asked = asked || call.Id() == 1;
        return S_OK;
    });
    const UnseenStation station;
    EXPECT_DONE(rule->Save(soDefault));
    EXPECT_FALSE(asked) << "the host was told to save";
}

TEST_F(PromptsTest, SaveAsksAndHandsOver) {
    const auto rule = NewRule();
    String saved;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&saved](const EventCall& call) {
        if (call.Id() != 1) return S_OK;
        saved = call.Text(0);
        call.Flag(1) = VARIANT_TRUE;
        return S_OK;
    });
    {
        Answer answer(IDNO);
        EXPECT_DONE(rule->Save(soNoPrompt));
        EXPECT_EQ(answer.Seen().text, L"Do you want to save change(s)?");
    }
    EXPECT_EQ(saved, L"");
    Answer answer(IDYES);
    EXPECT_DONE(rule->Save(soDefault));
    EXPECT_EQ(saved, Text(rule, &_CodeClass::get_Definition));
}

TEST_F(PromptsTest, SaveThatTheHostDoesNotConfirm) {
    const auto rule = NewRule();
    Answer answer(IDYES);
    EXPECT_FAILS(rule->Save(soDefault), PlainSaveFailure);
}

TEST_F(PromptsTest, RemovingATrackedBandAsks) {
    const auto rule = RuleWithTrackedBand();
    {
        Answer answer(IDNO);
        EXPECT_FAILS(rule->Remove(Arg(L"P")), TrackedByOthers);
        EXPECT_EQ(answer.Seen().text, L"The band is tracked by the following band(s),continue?\r\n\r\nN");
    }
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 2);
    Answer answer(IDYES);
    EXPECT_DONE(rule->Remove(Arg(L"P")));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 1);
}

TEST_F(PromptsTest, WhereNobodySeesThemATrackedBandStays) {
    const auto rule = RuleWithTrackedBand();
    const UnseenStation station;
    EXPECT_FAILS(rule->Remove(Arg(L"P")), TrackedByOthers);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 2);
}

} // namespace kestrel::test
