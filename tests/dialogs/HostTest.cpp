// The dialogs as a host opens them: through the registered component, with the system's own message boxes, and with all
// that a host may do while they are open.
#include <atomic>
#include <thread>

#include "automation/support/Late.h"
#include "automation/support/Sink.h"
#include "dialogs/support/Screen.h"
#include "resources/dialogids.h"

namespace kestrel::test {

namespace {

// Events of a rule, as the type library numbers them.
constexpr DISPID saveEvent = 1;
constexpr DISPID fieldsChangedEvent = 3;
constexpr DISPID bandsChangedEvent = 4;
constexpr DISPID addFieldEvent = 5;
constexpr DISPID getSettingsEvent = 12;

class HostTest : public ComTest {
  protected:
    HostTest() {
        for (const auto setter : {&_CodeClass::put_AllowAddBand, &_CodeClass::put_AllowDropBand,
                                  &_CodeClass::put_AllowFieldManage, &_CodeClass::put_AllowSimpleStyle})
            Must((rule.Get()->*setter)(VARIANT_TRUE));
        AddBand(L"Prefix", ::bsFixed, L"INV");
        AddBand(L"Number", ::bsIncreaseNumber, L"1");
        AddField(L"Region", L"Sales region");
        AddField(L"Branch", L"Branch office");
    }
    void AddBand(StringView name, ::BandStyles style, StringView value) {
        Must(rule->Add(Arg(name), style, ::smNoneSwap, Arg(value), nullptr, Missing(), nullptr, Missing(), Missing(),
                       ComPtr<_Band>().Out()));
    }
    void AddField(StringView name, StringView foreignName) {
        Must(Object(rule, &_CodeClass::get_UsrFields)
                 ->Add(Arg(name), Arg(foreignName), nullptr, nullptr, ComPtr<_List>().Out()));
    }
    [[nodiscard]] LONG BandCount() const { return Plain(rule, &_CodeClass::get_Count); }
    [[nodiscard]] LONG FieldCount() const {
        return Plain(Object(rule, &_CodeClass::get_UsrFields), &_Lists::get_Count);
    }
    [[nodiscard]] String DefaultOf(const wchar_t* band) const {
        ComPtr<_Band> found;
        Must(rule->get_Band(Arg(band), found.Out()));
        return Text(found, &_Band::get_Default);
    }
    // A host that holds what the rule is, so that closing asks nothing.
    [[nodiscard]] Sink::Handler HoldsTheSame() const {
        return [this](const EventCall& call) {
            if (call.Id() == getSettingsEvent) call.SetText(1, Text(rule, &_CodeClass::get_Definition));
            return S_OK;
        };
    }

    ComPtr<_CodeClass> rule = NewRule();
    Visitor visitor;
};

BOOL CALLBACK TakeForm(HWND window, LPARAM found) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (String(name) == L"#32770" && IsWindowVisible(window) != FALSE) *reinterpret_cast<HWND*>(found) = window;
    return TRUE;
}

// A step for a message box: what it says, and the button that is pressed.
Visitor::Step Answer(int button, const String& text) {
    return [button, text](const Screen& box) {
        EXPECT_EQ(box.Text(0xFFFF), text);
        box.Click(button);
    };
}

} // namespace

TEST_F(HostTest, TheDesignerEditsTheRuleAndSavesItOnClosing) {
    String saved;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&saved](const EventCall& call) {
        if (call.Id() != saveEvent) return S_OK;
        saved = call.Text(0);
        call.Flag(1) = VARIANT_TRUE;
        return S_OK;
    });
    visitor
        .Then([](const Screen& designer) {
            EXPECT_EQ(designer.Caption(), L"Invoice numbers");
            EXPECT_TRUE(designer.Enabled(ID_cmdAdvanced));
            designer.Type(ID_txtDefault, L"BILL");
            designer.Click(ID_cmdClose);
        })
        .Then(Answer(IDYES, L"Do you want to save change(s)?"));
    EXPECT_DONE(rule->ShowDesigner(Arg(L"Invoice numbers"), Truth(true)));
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(DefaultOf(L"Prefix"), L"BILL");
    EXPECT_EQ(saved, Text(rule, &_CodeClass::get_Definition));
}

TEST_F(HostTest, ClosingAnsweredWithNoSavesNothing) {
    bool asked = false;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&asked](const EventCall& call) {
        asked = asked || call.Id() == saveEvent;
        return S_OK;
    });
    visitor.Then([](const Screen& designer) { designer.Close(); })
        .Then(Answer(IDNO, L"Do you want to save change(s)?"));
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
    EXPECT_FALSE(asked);
}

TEST_F(HostTest, ClosingTellsWhatTheHostDidNotSave) {
    visitor
        .Then([](const Screen& designer) {
            designer.Type(ID_txtDefault, L"BILL");
            designer.Click(ID_cmdClose);
        })
        .Then(Answer(IDYES, L"Do you want to save change(s)?"))
        .Then(Answer(IDOK, L"Save failure."));
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(DefaultOf(L"Prefix"), L"BILL") << "what was edited stays";
}

TEST_F(HostTest, SetupIsAllowedByTheCallOrTheProperty) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    const auto advanced = [this](VARIANT allowSetup, bool expected) {
        visitor.Then([expected](const Screen& designer) { EXPECT_EQ(designer.Enabled(ID_cmdAdvanced), expected); });
        EXPECT_DONE(rule->ShowDesigner(nullptr, allowSetup));
    };
    advanced(Truth(true), true);
    advanced(Truth(false), false);
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, BandsAreRemovedAfterAYes) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    const String question = L"Are you sure to delete the following Band?\r\n\r\n[Number]";
    visitor
        .Then([this](const Screen& designer) {
            designer.Key(ID_picBand, VK_END);
            designer.Key(ID_picBand, VK_DELETE);
            EXPECT_EQ(BandCount(), 2) << "answered with no";
            designer.Key(ID_picBand, VK_DELETE);
            EXPECT_EQ(BandCount(), 1);
            designer.Choose(ID_mnuBandRemoveAll);
            EXPECT_EQ(BandCount(), 0);
        })
        .Then(Answer(IDNO, question))
        .Then(Answer(IDYES, question))
        .Then(Answer(IDYES, L"Are you sure to clear all band(s)?"));
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, FieldsComeFromTheHostAndGoAfterAYes) {
    LONG changes = 0;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&](const EventCall& call) {
        if (call.Id() == fieldsChangedEvent) ++changes;
        if (call.Id() != addFieldEvent) return S_OK;
        EXPECT_EQ(call.Text(0), L"") << "the host chooses";
        AddField(L"Agent", L"Sales agent");
        return S_OK;
    });
    const String question = L"Do you want to delete the selected field(s)?\r\n\r\nRegion;Agent";
    using Rows = std::vector<String>;
    visitor
        .Then([](const Screen& fields) {
            EXPECT_EQ(fields.Caption(), L"Fields of invoices");
            fields.Click(ID_cmdAdd);
            EXPECT_EQ(fields.Rows(ID_lstFields), (Rows{L"Sales region", L"Branch office", L"Sales agent"}));
            fields.Click(ID_cmdDrop); // with nothing selected
            fields.SelectRow(ID_lstFields, 0);
            fields.SelectRow(ID_lstFields, 2);
            fields.Click(ID_cmdDrop);
            EXPECT_EQ(fields.Rows(ID_lstFields).size(), 3U) << "answered with no";
            fields.Click(ID_cmdDrop);
            EXPECT_EQ(fields.Rows(ID_lstFields), (Rows{L"Branch office"}));
            fields.Click(ID_cmdClose);
        })
        .Then(Answer(IDOK, L"Please select item(s) to be droped first."))
        .Then(Answer(IDNO, question))
        .Then(Answer(IDYES, question));
    EXPECT_DONE(rule->ShowFieldManage(Arg(L"Fields of invoices")));
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(FieldCount(), 1);
    EXPECT_EQ(changes, 3);
}

TEST_F(HostTest, OptionsAreSetAtOnce) {
    visitor.Then([this](const Screen& options) {
        EXPECT_EQ(options.Caption(), L"Advanced") << "a blank title keeps it";
        options.Click(ID_chkUpcase);
        EXPECT_EQ(Plain(rule, &_CodeClass::get_CodeUCased), VARIANT_FALSE);
        options.Click(ID_chkStyle);
        options.Click(ID_optApply + 1);
        options.Click(ID_cmdClose);
    });
    EXPECT_DONE(rule->ShowOptions(Arg(L"  ")));
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Style), ::csSimple);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_ApplyMode), ::amSuccessive);
}

TEST_F(HostTest, LateBoundCallsOpenThemToo) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    const auto opens = [this](const wchar_t* member, const wchar_t* caption, std::initializer_list<VARIANT> arguments,
                              std::initializer_list<NamedArgument> named) {
        visitor.Then([caption](const Screen& form) { EXPECT_EQ(form.Caption(), caption); });
        const auto result = Call(rule.Get(), member, arguments, named);
        EXPECT_EQ(result.failure, Failure{}) << testing::PrintToString(String(member));
    };
    opens(L"ShowDesigner", L"Designer", {}, {});
    opens(L"ShowDesigner", L"Numbers", {Arg(L"Numbers"), Truth(true)}, {});
    opens(L"ShowDesigner", L"Designer", {}, {{L"AllowSetup", Truth(true)}});
    opens(L"ShowFieldManage", L"User fields", {}, {});
    opens(L"showfieldmanage", L"Fields", {Arg(L"Fields")}, {});
    opens(L"ShowOptions", L"Advanced", {}, {});
    opens(L"ShowOptions", L"Options", {}, {{L"sTitle", Arg(L"Options")}});
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, AnotherThreadMayWorkTheDialog) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    const DWORD asking = GetCurrentThreadId();
    std::atomic<bool> worked = false;
    std::thread person([&] {
        HWND form = nullptr;
        for (int turn = 0; turn < 1000 && form == nullptr; ++turn, Sleep(10))
            EnumThreadWindows(asking, TakeForm, reinterpret_cast<LPARAM>(&form));
        const Screen designer(form);
        SetWindowTextW(designer.Control(ID_txtDefault), L"TH");
        SendMessageW(form, WM_COMMAND, MAKEWPARAM(ID_txtDefault, EN_KILLFOCUS), 0);
        worked = designer.Text(ID_txtLength) == L"2";
        designer.Click(ID_cmdClose);
    });
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    person.join();
    EXPECT_TRUE(worked);
    EXPECT_EQ(DefaultOf(L"Prefix"), L"TH");
}

// --- What a host may do meanwhile ---

TEST_F(HostTest, TheHostMayReleaseTheRule) {
    visitor
        .Then([this](const Screen& designer) {
            rule = {};
            designer.Key(ID_picBand, VK_RIGHT);
            EXPECT_EQ(designer.Text(ID_txtName), L"Number") << "the call keeps it";
            designer.Click(ID_cmdClose);
        })
        .Then(Answer(IDNO, L"Do you want to save change(s)?"));
    _CodeClass* const called = rule.Get();
    EXPECT_DONE(called->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, TheHostMayChangeTheRuleInItsHandler) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [this](const EventCall& call) {
        if (call.Id() == bandsChangedEvent && BandCount() == 1) AddBand(L"Mine", ::bsFixed, L"M");
        return HoldsTheSame()(call);
    });
    visitor
        .Then([this](const Screen& designer) {
            designer.Key(ID_picBand, VK_DELETE);
            EXPECT_EQ(BandCount(), 2);
            designer.Key(ID_picBand, VK_END);
            EXPECT_EQ(designer.Text(ID_txtName), L"Mine");
            Must(rule->Cls());
            EXPECT_FALSE(designer.Enabled(ID_txtDefault)) << "nothing is left to edit";
        })
        .Then(Answer(IDYES, L"Are you sure to delete the following Band?\r\n\r\n[Prefix]"));
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, TheHostMayOpenASecondDesignerInItsHandler) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [this](const EventCall& call) {
        if (call.Id() == addFieldEvent) Must(rule->ShowDesigner(Arg(L"Second"), Missing()));
        return HoldsTheSame()(call);
    });
    visitor
        .Then([this](const Screen& fields) {
            fields.Click(ID_cmdAdd);
            EXPECT_EQ(BandCount(), 1);
            EXPECT_TRUE(IsWindowEnabled(fields.Window())) << "it can be used again";
        })
        .Then([](const Screen& second) {
            EXPECT_EQ(second.Caption(), L"Second");
            second.Key(ID_picBand, VK_DELETE);
        })
        .Then(Answer(IDYES, L"Are you sure to delete the following Band?\r\n\r\n[Prefix]"));
    EXPECT_DONE(rule->ShowFieldManage(nullptr));
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, TheHostsWindowMayEnd) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    const HWND owner = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                                       nullptr, nullptr, nullptr, nullptr);
    SetActiveWindow(owner);
    visitor.Then([](const Screen& designer) { designer.Click(ID_cmdAdvanced); }).Then([owner](const Screen& options) {
        EXPECT_FALSE(IsWindowEnabled(owner));
        DestroyWindow(owner); // and with it the designer and the options
        EXPECT_FALSE(IsWindow(options.Window()));
    });
    EXPECT_DONE(rule->ShowDesigner(nullptr, Truth(true)));
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(HostTest, TheSystemsColoursMayChange) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), HoldsTheSame());
    visitor.Then([](const Screen& designer) {
        SendMessageW(designer.Window(), WM_SYSCOLORCHANGE, 0, 0);
        SendMessageW(designer.Window(), 0x031A, 0, 0); // WM_THEMECHANGED
        designer.Key(ID_picBand, VK_RIGHT);
        EXPECT_EQ(designer.Text(ID_txtName), L"Number");
    });
    EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
    EXPECT_TRUE(visitor.Finished());
}

} // namespace kestrel::test
