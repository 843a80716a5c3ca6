// How the designer tells what is found about the rule, and that nothing is forbidden by it.
#include <algorithm>

#include <windows.h>

#include <commctrl.h>

#include "dialogs/FindingTexts.h"
#include "dialogs/support/DesignerTest.h"
#include "engine/RuleCheck.h"

namespace kestrel::test {

namespace {

class frmDesignersFindingsTest : public DesignerTest {
  protected:
    [[nodiscard]] String StatusTip() { return form->Tips().Text(screen->Control(ID_lblStatus)); }
    // What the tip of a band's box tells.
    [[nodiscard]] String TipOf(int band) {
        const HWND strip = screen->Control(ID_picBand);
        RECT box{};
        screen->Key(ID_picBand, VK_HOME);
        for (int each = 1; each <= band; ++each) {
            SendMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(box.right + 1, 10));
            GetWindowRect(screen->Control(ID_picMove), &box);
            MapWindowPoints(nullptr, strip, reinterpret_cast<POINT*>(&box), 2);
            SendMessageW(strip, WM_CAPTURECHANGED, 0, 0); // no drop
        }
        SendMessageW(strip, WM_MOUSEMOVE, 0, MAKELPARAM(box.left + 5, 10));
        return form->Tips().Text(strip);
    }
};

Finding About(const Ref<Band>& band, const String& sentence) {
    return {band, FindingKind::TracksNothing, {}, sentence};
}

} // namespace

TEST_F(frmDesignersFindingsTest, TheStatusLineCountsThemWhenTheDesignerOpens) {
    Reopen(GoodRule());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
    EXPECT_EQ(StatusTip(), L"");
    rule->Band(gbNumber)->SetFormate(L"\\N0000");
    ASSERT_EQ(CheckRule(*rule).size(), 1U);
    Reopen(rule);
    EXPECT_EQ(screen->Text(ID_lblStatus), L"1 finding about this rule. Point here to read it.");
    EXPECT_EQ(StatusTip(), CheckRule(*rule).front().sentence);
    rule->SetStyle(csSimple); // a finding about the rule, which no box tells
    const auto findings = CheckRule(*rule);
    ASSERT_EQ(findings.size(), 2U);
    Reopen(rule);
    EXPECT_EQ(screen->Text(ID_lblStatus), L"2 findings about this rule. Point here to read them.");
    EXPECT_EQ(StatusTip(), findings[1].sentence + L"\r\n" + findings[0].sentence) << "that of the rule first";
    screen->Key(ID_picBand, VK_RIGHT);
    EXPECT_EQ(screen->Text(ID_lblStatus), L"") << "the line is for what is refused";
    EXPECT_EQ(StatusTip(), L"");
}

TEST_F(frmDesignersFindingsTest, AnEmptyRuleIsNotBegunYet) {
    Reopen(EmptyRule());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersFindingsTest, TheCountFollowsTheRuleUntilTheLineIsNeeded) {
    Reopen(GoodRule());
    rule->Band(gbNumber)->SetFormate(L"\\N0000");
    Reopen(rule);
    const String one = L"1 finding about this rule. Point here to read it.";
    const String two = L"2 findings about this rule. Point here to read them.";
    ASSERT_EQ(screen->Text(ID_lblStatus), one);
    rule->UsrFields().Add(L"A,B"); // by the host
    RunPendingMessages();
    EXPECT_EQ(screen->Text(ID_lblStatus), two);
    rule->SetStyle(csSimple); // as the dialog of the options does; it announces nothing
    screen->Click(ID_cmdAdvanced);
    EXPECT_EQ(screen->Text(ID_lblStatus), L"3 findings about this rule. Point here to read them.");
    rule->SetStyle(csNormal);
    rule->Remove(gbNumber);
    const auto findings = CheckRule(*rule);
    EXPECT_EQ(screen->Text(ID_lblStatus), dialogs::FindingTexts(findings).Count());
    screen->Key(ID_picBand, VK_RIGHT);
    ASSERT_EQ(screen->Text(ID_lblStatus), L"");
    rule->UsrFields().Add(L"C,D");
    RunPendingMessages();
    EXPECT_EQ(screen->Text(ID_lblStatus), L"") << "it does not come back";
}

TEST_F(frmDesignersFindingsTest, TheRuleIsTheFirstThatTheLineTellsOf) {
    std::vector<Finding> findings(100, About(rule->Band(ibNumber), L"[Number] It tracks no band."));
    findings.push_back(About(nullptr, L"The rule."));
    EXPECT_EQ(dialogs::FindingTexts(findings).All().substr(0, 36), L"The rule.\r\n[Number] It tracks no ban");
}

TEST_F(frmDesignersFindingsTest, TipsStayLongEnoughToBeReadAndGrowWithTheResolution) {
    const HWND tips = form->Tips().Window();
    EXPECT_EQ(SendMessageW(tips, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 32767);
    EXPECT_EQ(SendMessageW(tips, TTM_GETMAXTIPWIDTH, 0, 0), 400);
    RECT place{};
    SendMessageW(form->Window(), 0x02E0, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place)); // DPI changed
    EXPECT_EQ(SendMessageW(tips, TTM_GETMAXTIPWIDTH, 0, 0), 600);
}

TEST_F(frmDesignersFindingsTest, TheyFollowTheRelations) {
    Reopen(TwoTreesRule());
    const String before = TipOf(tbPlain);
    rule->Band(tbPlain)->Relations()->Cls();
    RunPendingMessages();
    const String emptied = TipOf(tbPlain);
    EXPECT_NE(emptied, before);
    EXPECT_NE(emptied.find(L"there are no relations"), String::npos) << testing::PrintToString(emptied);
    rule->Band(tbPlain)->Relations()->Add({}, tvwFirst, L"01", L"North");
    RunPendingMessages();
    EXPECT_EQ(TipOf(tbPlain), before);
}

TEST_F(frmDesignersFindingsTest, TheyFollowTheFieldsAndTheOptions) {
    Reopen(GoodRule());
    rule->SetCodeUCased(false);
    rule->Band(gbPrefix)->SetDefault(L"inv");
    Reopen(rule);
    ASSERT_EQ(TipOf(gbPrefix), L"");
    rule->SetCodeUCased(true); // as the dialog of the options does; it announces nothing
    screen->Click(ID_cmdAdvanced);
    EXPECT_EQ(TipOf(gbPrefix), L"[Prefix] The rule writes capitals, but the fixed text 'inv' stays as it is.");
}

TEST_F(frmDesignersFindingsTest, NothingIsForbiddenAndSavingGoesAsEver) {
    ASSERT_FALSE(CheckRule(*rule).empty());
    String saved;
    const auto host = rule->SaveRequested.Subscribe([&](String& value, bool& achieved) {
        saved = value;
        achieved = true;
    });
    screen->Click(ID_cmdSave);
    EXPECT_EQ(prompts.asked, (Texts{L"Do you want to save change(s)?"}));
    EXPECT_EQ(saved, rule->Definition());
    EXPECT_TRUE(prompts.warned.empty());
    EXPECT_TRUE(prompts.informed.empty());
}

TEST_F(frmDesignersFindingsTest, ATipIsCutWhereItGetsLong) {
    const auto band = rule->Band(ibNumber);
    std::vector<Finding> findings(100, About(band, L"[Number] It tracks no band."));
    findings.push_back(About(nullptr, L"The rule."));
    const dialogs::FindingTexts texts(findings);
    const String tip = texts.Of(*band);
    EXPECT_EQ(tip.substr(0, 36), L"[Number] It tracks no band.\r\n[Number");
    EXPECT_LT(tip.size(), 1000U) << "what a tip is read back with";
    EXPECT_EQ(tip.back(), L'…');
    EXPECT_EQ(texts.Of(*rule->Band(ibPrefix)), L"");
    EXPECT_EQ(texts.Count(), L"101 findings about this rule. Point here to read them.");
    const dialogs::FindingTexts one({About(nullptr, L"The rule.")});
    EXPECT_EQ(one.All(), L"The rule.");
    EXPECT_EQ(dialogs::FindingTexts().Count(), L"");
}

} // namespace kestrel::test
