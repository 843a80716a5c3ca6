// The dialogs as their rule opens them, one over the other, in their modal loops; and what may happen meanwhile.
#include "dialogs/ModalOwner.h"
#include "dialogs/Subclass.h"
#include "dialogs/frmDesigners.h"
#include "dialogs/frmDropFields.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class ModalTest : public DialogTest {
  protected:
    ModalTest() : rule(InvoiceRule()) { UseRealDialogs(); }
    Ref<CodeClass> rule;
    Visitor visitor;
};

// A host's window.
HWND MakeOwner() {
    const HWND owner = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                                       nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(owner);
    SetActiveWindow(owner);
    RunPendingMessages();
    return owner;
}

// Writes down which control a form is told to give the focus to.
class FocusWatch final : public dialogs::Subclass {
  public:
    explicit FocusWatch(HWND form) noexcept { Attach(form); }
    std::vector<HWND> told;

  private:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_NEXTDLGCTL && lParam != FALSE) told.push_back(reinterpret_cast<HWND>(wParam));
        return std::nullopt;
    }
};

std::vector<HWND> theBrought;

BOOL WINAPI RecordBringToFront(HWND form) {
    theBrought.push_back(form);
    return TRUE;
}

} // namespace

TEST_F(ModalTest, TheDesignerOpensClosesAndSaves) {
    String saved;
    const auto host = rule->SaveRequested.Subscribe([&](String& value, bool& achieved) {
        saved = value;
        achieved = true;
    });
    visitor.Then([](const Screen& designer) {
        EXPECT_EQ(designer.Caption(), L"Numbers");
        designer.Click(ID_cmdClose);
    });
    rule->ShowDesigner(L"Numbers", true);
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(prompts.asked, (Texts{L"Do you want to save change(s)?"}));
    EXPECT_EQ(saved, rule->Definition());
}

TEST_F(ModalTest, ClosingAsksNothingWhenTheHostHoldsTheSame) {
    const auto host = rule->GetSettings.Subscribe([&](String&, String& value) { value = rule->Definition(); });
    visitor.Then([](const Screen& designer) { designer.Close(); });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(ModalTest, ANewBandArrivesInTheDesigner) {
    visitor
        .Then([](const Screen& designer) {
            designer.Click(ID_imgButton);
            EXPECT_EQ(designer.Text(ID_txtName), L"Serial") << "the new band is selected";
            designer.Click(ID_cmdClose);
        })
        .Then([](const Screen& band) {
            band.Type(ID_txtName, L"Serial");
            band.Pick(ID_cboStyle, bsIncreaseNumber);
            band.Type(ID_txtDefault, L"1");
            band.Click(ID_cmdOK);
        });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(rule->Count(), 7);
}

TEST_F(ModalTest, ANewRelationArrivesInTheDesigner) {
    visitor
        .Then([](const Screen& designer) {
            designer.Key(ID_picBand, VK_RIGHT);
            designer.Key(ID_picBand, VK_RIGHT);
            designer.SelectTreeItem(ID_tvwAvailable, L"02 South");
            designer.Choose(ID_mnuSubNodeAdd + 3);
            EXPECT_EQ(designer.SelectedTreeText(ID_tvwAvailable), L"3 Ulm");
            designer.Click(ID_cmdClose);
        })
        .Then([](const Screen& node) {
            EXPECT_EQ(node.Checked(ID_optStyle + 3), 1);
            SetWindowTextW(node.Control(ID_txtCode), L"3");
            SetWindowTextW(node.Control(ID_txtValue), L"Ulm");
            node.Click(ID_cmdOK);
        });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(rule->Relations().Count(), 9);
}

TEST_F(ModalTest, FieldsAndOptionsOpenOverTheDesigner) {
    visitor
        .Then([](const Screen& designer) {
            designer.Key(ID_picBand, VK_RIGHT);
            designer.Click(ID_cmdDrop);
            EXPECT_EQ(designer.Rows(ID_cboBound), (Texts{L"(None)", L"Year"}));
            designer.Click(ID_cmdAdvanced);
            designer.Click(ID_cmdClose);
        })
        .Then([](const Screen& fields) {
            EXPECT_EQ(fields.Caption(), L"User fields");
            fields.SelectRow(ID_lstFields, 2);
            fields.Click(ID_cmdDrop);
            fields.Click(ID_cmdClose);
        })
        .Then([](const Screen& options) {
            EXPECT_EQ(options.Caption(), L"Advanced");
            options.Click(ID_chkUpcase);
            options.Click(ID_cmdClose);
        });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(rule->UsrFields().Count(), 2);
    EXPECT_FALSE(rule->CodeUCased());
}

TEST_F(ModalTest, TheOwnerIsDisabledMeanwhile) {
    const HWND owner = MakeOwner();
    visitor.Then([owner](const Screen& fields) {
        EXPECT_FALSE(IsWindowEnabled(owner));
        EXPECT_EQ(GetWindow(fields.Window(), GW_OWNER), owner);
    });
    rule->ShowFieldManage();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

TEST_F(ModalTest, TheFirstControlGetsTheFocusThroughTheDialogManager) {
    dialogs::frmDropFields fields(*rule);
    fields.Load();
    const HWND first = fields.Find(ID_lstFields);
    const FocusWatch watch(fields.Window());
    visitor.Then([](const Screen& shown) { EXPECT_TRUE(shown.Focused(ID_lstFields)); });
    fields.ShowModal();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(watch.told, std::vector<HWND>{first});
}

TEST_F(ModalTest, OnlyAFormWithoutAnOwnerPushesItselfBeforeOtherPrograms) {
    const auto before = dialogs::UseBringToFront(RecordBringToFront);
    theBrought.clear();
    const HWND owner = MakeOwner();
    visitor.Then([owner](const Screen& fields) { EXPECT_EQ(GetWindow(fields.Window(), GW_OWNER), owner); });
    rule->ShowFieldManage();
    EXPECT_TRUE(theBrought.empty());
    DestroyWindow(owner);
    SetActiveWindow(nullptr);
    HWND alone = nullptr;
    visitor.Then([&alone](const Screen& fields) { alone = fields.Window(); });
    rule->ShowFieldManage();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(theBrought, std::vector<HWND>{alone}) << "nothing else would bring it up";
    dialogs::UseBringToFront(before);
}

TEST_F(ModalTest, EveryWindowOfTheThreadIsDisabledMeanwhile) {
    const HWND second = MakeOwner();
    const HWND owner = MakeOwner();
    const HWND asleep = MakeOwner();
    EnableWindow(asleep, FALSE);
    SetActiveWindow(owner);
    visitor.Then([second, owner](const Screen&) {
        EXPECT_FALSE(IsWindowEnabled(second));
        EXPECT_FALSE(IsWindowEnabled(owner));
    });
    rule->ShowFieldManage();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_TRUE(IsWindowEnabled(second));
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_FALSE(IsWindowEnabled(asleep)) << "as the host had it";
    for (const HWND window : {second, owner, asleep})
        DestroyWindow(window);
}

TEST_F(ModalTest, ATitleReplacesTheCaption) {
    visitor.Then([](const Screen& fields) { EXPECT_EQ(fields.Caption(), L"Fields of invoices"); });
    rule->ShowFieldManage(L" Fields of invoices ");
    visitor.Then([](const Screen& options) { EXPECT_EQ(options.Caption(), L"Options of invoices"); });
    rule->ShowOptions(L"Options of invoices");
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(ModalTest, AnOwnerThatEndsTakesTheDesignerAlong) {
    const HWND owner = MakeOwner();
    visitor.Then([owner](const Screen&) { DestroyWindow(owner); });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(prompts.asked.size(), 1U) << "what was changed is still saved";
}

TEST_F(ModalTest, ARuleThatEndsClosesItsDialog) {
    dialogs::frmDesigners form(*rule);
    visitor.Then([this](const Screen& designer) {
        rule = nullptr;
        EXPECT_TRUE(IsWindow(designer.Window()));
        designer.Click(ID_cmdSave);
        designer.Choose(ID_mnuSubBandAdd);
        designer.Key(ID_picBand, VK_DELETE);
    });
    form.ShowModal();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(ModalTest, TheHostsLastReferenceMayGoMeanwhile) {
    visitor.Then([this](const Screen& designer) {
        rule = nullptr; // the call itself still holds it
        designer.Click(ID_cmdClose);
    });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(ModalTest, HandlersMayChangeTheRuleUnderTheDesigner) {
    auto once = rule->BandsChanged.Subscribe([this] {
        if (rule->Count() > 2) rule->Remove(rule->Count());
    });
    visitor.Then([](const Screen& designer) {
        designer.Key(ID_picBand, VK_END);
        designer.Key(ID_picBand, VK_DELETE);
    });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_EQ(rule->Count(), 2);
}

TEST_F(ModalTest, ASecondDesignerShowsTheSameRule) {
    visitor
        .Then([this](const Screen& first) {
            rule->ShowDesigner(L"Second");
            EXPECT_EQ(first.Text(ID_txtDefault), L"BILL") << "the first one follows when it is read again";
        })
        .Then([this](const Screen& second) {
            second.Type(ID_txtDefault, L"BILL");
            rule->BandsChanged.Raise();
        });
    rule->ShowDesigner(L"First");
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(ModalTest, AQuitMessageClosesEverything) {
    visitor.Then([](const Screen& designer) { designer.Click(ID_cmdAdvanced); });
    visitor.Then([](const Screen&) { PostQuitMessage(7); });
    rule->ShowDesigner();
    MSG message{};
    EXPECT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), 0);
    EXPECT_EQ(message.wParam, 7U) << "the host's own loop still gets it";
}

TEST_F(ModalTest, ColoursAndResolutionMayChange) {
    visitor.Then([](const Screen& designer) {
        SendMessageW(designer.Window(), WM_SYSCOLORCHANGE, 0, 0);
        RECT before{};
        GetWindowRect(designer.Control(ID_cmdClose), &before);
        RECT place{0, 0, 1200, 900};
        SendMessageW(designer.Window(), 0x02E0, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
        RECT after{};
        GetWindowRect(designer.Control(ID_cmdClose), &after);
        const double growth = static_cast<double>(after.right - after.left) / (before.right - before.left);
        EXPECT_NEAR(growth, 1.5, 0.2);
        SendMessageW(designer.Window(), 0x02E0, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place));
        GetWindowRect(designer.Control(ID_cmdClose), &after);
        EXPECT_EQ(after.right - after.left, before.right - before.left);
        designer.Key(ID_picBand, VK_RIGHT);
        EXPECT_EQ(designer.Text(ID_txtName), L"Year");
    });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
}

} // namespace kestrel::test
