// The designer as a whole: its buttons and menus.
#include "dialogs/Handles.h"
#include "dialogs/support/DesignerTest.h"

namespace kestrel::test {

namespace {

class frmDesignersTest : public DesignerTest {};

} // namespace

TEST_F(frmDesignersTest, OpensOnTheFirstBand) {
    EXPECT_EQ(screen->Caption(), L"Designer");
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
    form->RefreshBands(rule.Get(), 2, L" Invoice numbers ");
    EXPECT_EQ(screen->Caption(), L"Invoice numbers");
    EXPECT_EQ(screen->Text(ID_txtName), L"Region");
}

TEST_F(frmDesignersTest, WithoutARuleARedrawFails) {
    try {
        form->RefreshBands(nullptr);
        FAIL() << "redrawn";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 91);
    }
}

TEST_F(frmDesignersTest, AdvancedNeedsSetup) {
    EXPECT_TRUE(screen->Enabled(ID_cmdAdvanced));
    rule->SetAllowSetup(false);
    form->RefreshBands(rule.Get());
    EXPECT_FALSE(screen->Enabled(ID_cmdAdvanced));
}

TEST_F(frmDesignersTest, ButtonsOpenTheOtherDialogs) {
    screen->Click(ID_cmdAdvanced);
    Select(ibRegion);
    screen->Click(ID_cmdDrop);
    EXPECT_EQ(recorded.calls, (Texts{L"Options ", L"FieldManage "}));
}

TEST_F(frmDesignersTest, AddFieldAsksTheHostAndTheListFollows) {
    Select(ibRegion);
    Texts asked;
    const auto host = rule->AddField.Subscribe([&](String& name) {
        asked.push_back(L"<" + name + L">");
        rule->UsrFields().Add(L"Agent");
    });
    screen->Click(ID_cmdAppend);
    EXPECT_EQ(asked, (Texts{L"<>"}));
    EXPECT_EQ(screen->Rows(ID_cboBound), (Texts{L"(None)", L"Region", L"Branch", L"Customer", L"Agent"}));
    EXPECT_EQ(screen->Row(ID_cboBound), 1);
}

TEST_F(frmDesignersTest, FieldButtonsNeedFieldManagement) {
    Select(ibRegion);
    EXPECT_TRUE(screen->Enabled(ID_cmdAppend));
    rule->SetAllowFieldManage(false);
    Select(ibRegion);
    EXPECT_FALSE(screen->Enabled(ID_cmdAppend));
    EXPECT_FALSE(screen->Enabled(ID_cmdDrop));
    EXPECT_TRUE(screen->Enabled(ID_cboBound));
}

TEST_F(frmDesignersTest, SaveAsksAndHandsOver) {
    String saved;
    const auto host = rule->SaveRequested.Subscribe([&](String& value, bool& achieved) {
        saved = value;
        achieved = true;
    });
    prompts.answer = false;
    screen->Click(ID_cmdSave);
    EXPECT_EQ(prompts.asked, (Texts{L"Do you want to save change(s)?"}));
    EXPECT_EQ(saved, L"");
    prompts.answer = true;
    screen->Click(ID_cmdSave);
    EXPECT_EQ(saved, rule->Definition());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersTest, AFailedSaveStandsInTheStatusLine) {
    screen->Click(ID_cmdSave);
    EXPECT_TRUE(prompts.warned.empty());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"Save failure.");
}

// How much of the status line has the colour, of 100.
int ShareOf(const Screen& screen, int colour) {
    const HWND line = screen.Control(ID_lblStatus);
    RECT area{};
    GetClientRect(line, &area);
    UpdateWindow(line);
    const dialogs::WindowContext context(line);
    int same = 0;
    for (int y = 0; y < area.bottom; ++y)
        for (int x = 0; x < area.right; ++x)
            if (GetPixel(context.Get(), x, y) == GetSysColor(colour)) ++same;
    return 100 * same / (area.right * area.bottom);
}

TEST_F(frmDesignersTest, ARefusalCatchesTheEye) {
    screen->Click(ID_cmdSave);
    ASSERT_EQ(screen->Text(ID_lblStatus), L"Save failure.");
    EXPECT_GT(ShareOf(*screen, COLOR_INFOBK), 50);
    EXPECT_EQ(ShareOf(*screen, COLOR_BTNFACE), 0);
    screen->Key(ID_picBand, VK_RIGHT);
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
    EXPECT_GT(ShareOf(*screen, COLOR_BTNFACE), 95);
}

TEST_F(frmDesignersTest, ClosingTellsWhatTheHostDidNotSave) {
    UseRealDialogs();
    Visitor visitor;
    visitor.Then([](const Screen& designer) {
        designer.Type(ID_txtDefault, L"BILL");
        designer.Close();
    });
    rule->ShowDesigner();
    EXPECT_EQ(prompts.warned, Texts{L"Save failure."});
    EXPECT_EQ(rule->Band(ibPrefix)->Default(), L"BILL");
    prompts.warned.clear();
    prompts.answer = false;
    visitor.Then([](const Screen& designer) { designer.Close(); });
    rule->ShowDesigner();
    EXPECT_TRUE(prompts.warned.empty()) << "nothing was to be saved";
}

TEST_F(frmDesignersTest, ApplyHasNoActionOfItsOwn) {
    const String before = rule->Definition();
    screen->Click(ID_cmdApply);
    EXPECT_EQ(rule->Definition(), before);
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_FALSE(form->IsHidden());
}

TEST_F(frmDesignersTest, BandsAreAddedAtTheSelectedOne) {
    Select(ibYear);
    screen->Choose(ID_mnuSubBandAdd);
    screen->Choose(ID_mnuSubBandAdd + 1);
    screen->Choose(ID_mnuSubBandAdd + 2);
    screen->Click(ID_imgButton);
    EXPECT_EQ(recorded.calls, (Texts{L"AddBand Year 1", L"AddBand Year 2", L"AddBand Year 3", L"AddBand Year 3"}));
}

TEST_F(frmDesignersTest, NothingIsAddedWhenNotAllowed) {
    rule->SetAllowAddBand(false);
    form->RefreshBands(rule.Get());
    EXPECT_FALSE(screen->Enabled(ID_imgButton));
    screen->Choose(ID_mnuSubBandAdd + 2);
    EXPECT_TRUE(recorded.calls.empty());
}

TEST_F(frmDesignersTest, AnEmptyRuleOffersOnlyToAppend) {
    Reopen(EmptyRule());
    EXPECT_TRUE(screen->Enabled(ID_imgButton));
    for (const int id :
         {ID_txtName,  ID_cboStyle,     ID_txtDefault, ID_txtFormat,     ID_txtLength,   ID_cboBound,  ID_cboIncrMode,
          ID_txtRange, ID_txtRange + 1, ID_vscRange,   ID_cboTrigerBand, ID_cboSwapMode, ID_lstTracks, ID_tvwAvailable,
          ID_cmdAdd,   ID_cmdDelete,    ID_cmdModify,  ID_cmdClear,      ID_cmdAppend,   ID_cmdDrop})
        EXPECT_FALSE(screen->Enabled(id)) << id;
    EXPECT_EQ(screen->Text(ID_lblInfo), TheStrings().Text(1537)) << "what to do first";
    EXPECT_TRUE(screen->Enabled(ID_lblInfo)) << "and it can be read";
    EXPECT_EQ(screen->Text(ID_lblInfo + 1), L"");
    screen->Click(ID_imgButton);
    EXPECT_EQ(recorded.calls, (Texts{L"AddBand  3"}));
    screen->Choose(ID_mnuBandRemove);
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(frmDesignersTest, AnEmptyRuleThatTakesNoBandsSaysSo) {
    const auto empty = EmptyRule();
    empty->SetAllowAddBand(false);
    Reopen(empty);
    EXPECT_EQ(screen->Text(ID_lblInfo), TheStrings().Text(1538));
    EXPECT_TRUE(screen->Enabled(ID_lblInfo));
    empty->SetAllowAddBand(true);
    empty->Add({.name = L"First", .style = bsFixed, .defaultValue = L"F"});
    EXPECT_EQ(screen->Text(ID_lblInfo), TheStrings().Text(1522)) << "it speaks of the band again";
    EXPECT_FALSE(screen->Enabled(ID_lblInfo));
}

TEST_F(frmDesignersTest, RemoveAsksWithTheBandsName) {
    Select(ibLetter);
    prompts.answer = false;
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(prompts.asked, (Texts{L"Are you sure to delete the following Band?\r\n\r\n[Letter]"}));
    EXPECT_EQ(rule->Count(), 6);
    prompts.answer = true;
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(rule->Count(), 5);
    EXPECT_EQ(screen->Text(ID_txtName), L"Number") << "the last band is selected now";
}

TEST_F(frmDesignersTest, ABandThatMayNotBeDroppedStays) {
    rule->Band(ibLetter)->SetAllowDroped(false);
    Select(ibLetter);
    screen->Choose(ID_mnuBandRemove);
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_EQ(rule->Count(), 6);
}

TEST_F(frmDesignersTest, ARefusedRemovalStandsInTheStatusLine) {
    rule->Band(ibNumber)->SetIncrMode(imTrigered);
    rule->Band(ibNumber)->SetTrigerBand(rule->Band(ibPrefix));
    Select(ibPrefix);
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(rule->Count(), 6);
    EXPECT_EQ(screen->Text(ID_lblStatus).substr(0, 28), L"The band can't be Deleted,ca");
    const HWND status = screen->Control(ID_lblStatus);
    EXPECT_NE(form->Tips().Text(status).find(L"Number"), String::npos) << "what the line cuts off is read in its tip";
    EXPECT_EQ(SendMessageW(status, WM_NCHITTEST, 0, 0), HTCLIENT) << "or the tip never comes";
    EXPECT_TRUE(prompts.warned.empty());
}

TEST_F(frmDesignersTest, NothingIsClickedInAFormThatCloses) {
    screen->Click(ID_cmdClose);
    EXPECT_TRUE(form->IsHidden());
    screen->Choose(ID_cmdSave);
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(frmDesignersTest, RemoveAllAsksFirst) {
    prompts.answer = false;
    screen->Choose(ID_mnuBandRemoveAll);
    EXPECT_EQ(prompts.asked, (Texts{L"Are you sure to clear all band(s)?"}));
    EXPECT_EQ(rule->Count(), 6);
    prompts.answer = true;
    screen->Choose(ID_mnuBandRemoveAll);
    EXPECT_EQ(rule->Count(), 0);
    EXPECT_EQ(screen->Text(ID_txtName), L"");
    EXPECT_FALSE(screen->Enabled(ID_txtDefault));
}

TEST_F(frmDesignersTest, FollowsTheRulesBands) {
    Select(ibYear);
    rule->Remove(ibPrefix);
    EXPECT_EQ(screen->Text(ID_txtName), L"Region") << "the index is kept";
    rule->Cls();
    EXPECT_EQ(screen->Text(ID_txtName), L"");
}

} // namespace kestrel::test
