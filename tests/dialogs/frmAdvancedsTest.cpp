#include "dialogs/frmAdvanceds.h"

#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class frmAdvancedsTest : public DialogTest {
  protected:
    frmAdvancedsTest() : rule(InvoiceRule()) {}
    Screen Open(const String& title = {}) {
        form.ShowInfo(rule.Get(), title);
        return Show(form);
    }
    Ref<CodeClass> rule;
    dialogs::frmAdvanceds form;
};

} // namespace

TEST_F(frmAdvancedsTest, WithoutARuleItFailsWith91) {
    try {
        form.ShowInfo(nullptr, L"");
        FAIL() << "opened";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 91);
    }
}

TEST_F(frmAdvancedsTest, ATitleBecomesTheCaptionUnlessBlank) {
    EXPECT_EQ(Open(L"   ").Caption(), L"Advanced");
    form.ShowInfo(nullptr, L"  Options of invoices ");
    EXPECT_EQ(Screen(form.Window()).Caption(), L"Options of invoices");
}

TEST_F(frmAdvancedsTest, ShowsTheSettings) {
    rule->SetStyle(csSimple);
    rule->SetApplyMode(amSuccessive);
    rule->SetCodeUCased(false);
    const Screen screen = Open();
    EXPECT_EQ(screen.Rows(ID_lstLayers), (Texts{L"Region", L"Branch"}));
    EXPECT_EQ(screen.Row(ID_lstLayers), -1);
    EXPECT_EQ(screen.Checked(ID_chkStyle), 1);
    EXPECT_EQ(screen.Checked(ID_optApply), 0);
    EXPECT_EQ(screen.Checked(ID_optApply + 1), 1);
    EXPECT_EQ(screen.Checked(ID_chkUpcase), 0);
    EXPECT_TRUE(screen.Enabled(ID_chkStyle));
    EXPECT_FALSE(screen.Enabled(ID_cmdUp));
    EXPECT_FALSE(screen.Enabled(ID_cmdDown));
}

TEST_F(frmAdvancedsTest, TheSimpleStyleIsShownButDisabledWhenNotAllowed) {
    rule->SetAllowSimpleStyle(false);
    const Screen screen = Open();
    EXPECT_TRUE(IsWindowVisible(screen.Control(ID_chkStyle)));
    EXPECT_FALSE(screen.Enabled(ID_chkStyle));
}

TEST_F(frmAdvancedsTest, EachBoxChangesItsSettingAtOnce) {
    const Screen screen = Open();
    screen.Click(ID_chkStyle);
    EXPECT_EQ(rule->Style(), csSimple);
    screen.Click(ID_chkStyle);
    EXPECT_EQ(rule->Style(), csNormal);
    screen.Click(ID_optApply + 1);
    EXPECT_EQ(rule->ApplyMode(), amSuccessive);
    screen.Click(ID_optApply);
    EXPECT_EQ(rule->ApplyMode(), amOverAgain);
    screen.Click(ID_chkUpcase);
    EXPECT_FALSE(rule->CodeUCased());
    screen.Click(ID_chkUpcase);
    EXPECT_TRUE(rule->CodeUCased());
}

TEST_F(frmAdvancedsTest, ARefusedUpperCaseIsQuietAndTheBoxShowsTheRule) {
    rule->Relations().Add({}, tvwFirst, L"a", L"x");
    rule->Relations().Add({}, tvwFirst, L"A", L"y");
    const Screen screen = Open();
    screen.Click(ID_chkUpcase);
    EXPECT_TRUE(rule->CodeUCased()) << "refused with 2029, the flag stays";
    EXPECT_EQ(screen.Checked(ID_chkUpcase), BST_CHECKED);
    EXPECT_TRUE(prompts.warned.empty());
    EXPECT_TRUE(IsWindowVisible(screen.Window()));
}

TEST_F(frmAdvancedsTest, SaveInHouseOnlyGreys) {
    const Screen screen = Open();
    const String before = rule->Definition();
    screen.Click(ID_chkSaveMode);
    EXPECT_EQ(screen.Checked(ID_chkSaveMode), 2);
    screen.Click(ID_chkSaveMode);
    EXPECT_EQ(screen.Checked(ID_chkSaveMode), 2);
    EXPECT_EQ(rule->Definition(), before);
}

TEST_F(frmAdvancedsTest, LayersMoveAndStaySelected) {
    const Screen screen = Open();
    screen.SelectRow(ID_lstLayers, 0);
    EXPECT_FALSE(screen.Enabled(ID_cmdUp));
    screen.Click(ID_cmdDown);
    EXPECT_EQ(screen.Rows(ID_lstLayers), (Texts{L"Branch", L"Region"}));
    EXPECT_EQ(rule->LayeredBands().Item(1)->Name(), L"Branch");
    EXPECT_EQ(screen.Row(ID_lstLayers), 1) << "the moved layer stays selected";
    EXPECT_TRUE(screen.Enabled(ID_cmdUp));
    EXPECT_FALSE(screen.Enabled(ID_cmdDown));
    EXPECT_EQ(prompts.informed.size(), 1U) << "the relations of the old order are gone";
    screen.Click(ID_cmdUp);
    EXPECT_EQ(screen.Rows(ID_lstLayers), (Texts{L"Region", L"Branch"}));
    EXPECT_EQ(screen.Row(ID_lstLayers), 0);
}

TEST_F(frmAdvancedsTest, TheFirstLayerDoesNotMoveUp) {
    const Screen screen = Open();
    screen.SelectRow(ID_lstLayers, 0);
    screen.Choose(ID_cmdUp); // as a program would, past the disabled button
    EXPECT_EQ(rule->LayeredBands().Item(1)->Name(), L"Region");
}

TEST_F(frmAdvancedsTest, FollowsTheRulesLayers) {
    const Screen screen = Open();
    screen.SelectRow(ID_lstLayers, 1);
    rule->Band(ibRegion)->SetSwapMode(smNoneSwap);
    EXPECT_EQ(screen.Rows(ID_lstLayers), (Texts{L"Branch"}));
    EXPECT_EQ(screen.Row(ID_lstLayers), 0) << "the selected one is still there";
    EXPECT_FALSE(screen.Enabled(ID_cmdUp));
    EXPECT_FALSE(screen.Enabled(ID_cmdDown));
}

TEST_F(frmAdvancedsTest, CloseHides) {
    const Screen screen = Open();
    screen.Click(ID_cmdApply);
    EXPECT_TRUE(IsWindowVisible(screen.Window())) << "Apply has nothing left to do";
    screen.Click(ID_cmdClose);
    EXPECT_TRUE(form.IsHidden());
}

} // namespace kestrel::test
