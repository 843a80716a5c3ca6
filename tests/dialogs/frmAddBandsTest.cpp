#include "dialogs/frmAddBands.h"

#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class frmAddBandsTest : public DialogTest {
  protected:
    frmAddBandsTest() : rule(InvoiceRule()), form(*rule) {}
    Screen Open(const String& relative = L"Number", int position = 3) {
        form.ShowNewBand(relative, position);
        return Show(form);
    }
    Ref<CodeClass> rule;
    dialogs::frmAddBands form;
};

Texts NamesOf(const CodeClass& rule) {
    Texts names;
    for (const auto& band : rule.Bands())
        names.push_back(band->Name());
    return names;
}

} // namespace

TEST_F(frmAddBandsTest, OtherPositionsAreRefused) {
    for (const int position : {0, 4, -1}) {
        try {
            form.ShowNewBand(L"Number", position);
            FAIL() << position;
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 2003);
        }
    }
    EXPECT_EQ(form.Window(), nullptr);
}

TEST_F(frmAddBandsTest, EachPositionHasItsOption) {
    const Screen screen = Open(L"Number", 1);
    EXPECT_EQ(screen.Caption(), L"New Band");
    for (int position = 1; position <= 3; ++position) {
        form.ShowNewBand(L"Number", position);
        for (int option = 0; option < 3; ++option)
            EXPECT_EQ(screen.Checked(ID_optPosition + option), option == position - 1 ? 1 : 0);
    }
}

TEST_F(frmAddBandsTest, WithoutARelativeBandOnlyAppendIsLeft) {
    const Screen screen = Open(L"", 1);
    EXPECT_FALSE(screen.Enabled(ID_optPosition));
    EXPECT_FALSE(screen.Enabled(ID_optPosition + 1));
    EXPECT_EQ(screen.Checked(ID_optPosition + 2), 1);
}

TEST_F(frmAddBandsTest, BeginsWithoutAStyle) {
    const Screen screen = Open();
    EXPECT_EQ(screen.Row(ID_cboStyle), -1);
    EXPECT_TRUE(screen.Enabled(ID_txtName));
    EXPECT_TRUE(screen.Enabled(ID_cboStyle));
    for (const int id :
         {ID_txtDefault, ID_txtFormat, ID_txtLength, ID_cboBound, ID_cboIncrMode, ID_cboTrigerBand, ID_cboSwapMode})
        EXPECT_FALSE(screen.Enabled(id)) << id;
    EXPECT_NE(screen.Text(ID_lblInfo).find(L"Choose the style first."), String::npos);
}

TEST_F(frmAddBandsTest, EachStyleEnablesWhatItsBandsAccept) {
    struct Case {
        int style;
        bool defaultValue, format, length, bound, incrMode, swapMode;
    };
    const Screen screen = Open();
    for (const auto& [style, defaultValue, format, length, bound, incrMode, swapMode] :
         {Case{bsFixed, true, false, false, false, false, false},
          Case{bsUsrMacro, false, true, true, true, false, true},
          Case{bsUsrField, false, true, true, true, false, true},
          Case{bsIncreaseNumber, true, true, true, false, true, false},
          Case{bsIncreaseAlpha, true, false, false, false, true, false}}) {
        screen.Pick(ID_cboStyle, style);
        EXPECT_EQ(screen.Row(ID_cboStyle), style);
        EXPECT_EQ(screen.Enabled(ID_txtDefault), defaultValue) << style;
        EXPECT_EQ(screen.Enabled(ID_txtFormat), format) << style;
        EXPECT_EQ(screen.Enabled(ID_txtLength), length) << style;
        EXPECT_EQ(screen.Enabled(ID_cboBound), bound) << style;
        EXPECT_EQ(screen.Enabled(ID_cboIncrMode), incrMode) << style;
        EXPECT_EQ(screen.Enabled(ID_cboSwapMode), swapMode) << style;
    }
}

TEST_F(frmAddBandsTest, TheListsHoldWhatCanBeChosen) {
    const Screen screen = Open();
    EXPECT_EQ(screen.Rows(ID_cboStyle),
              (Texts{L"Fixed", L"Macro", L"Bounded Field", L"Autoincreased Number", L"Autoincreased Alphabet"}));
    EXPECT_EQ(screen.Rows(ID_cboSwapMode),
              (Texts{L"None Conversion", L"Simple Conversion", L"Layer-Style Conversion"}));
    EXPECT_EQ(screen.Rows(ID_cboIncrMode), (Texts{L"Never", L"Auto Increase", L"Triggered Increase",
                                                  L"Triggered Increase", L"Yearly", L"Circular Reference"}));
    EXPECT_EQ(screen.Rows(ID_cboTrigerBand),
              (Texts{L"(None)", L"Prefix", L"Year", L"Region", L"Branch", L"Number", L"Letter"}));
    screen.Pick(ID_cboStyle, bsUsrMacro);
    EXPECT_EQ(screen.Rows(ID_cboBound), (Texts{L"(None)", L"Year"}));
    screen.Pick(ID_cboStyle, bsUsrField);
    EXPECT_EQ(screen.Rows(ID_cboBound), (Texts{L"(None)", L"Region", L"Branch", L"Customer"}));
}

TEST_F(frmAddBandsTest, ARefusedLengthShowsTheOldOneAgain) {
    const Screen screen = Open();
    screen.Pick(ID_cboStyle, bsIncreaseNumber);
    screen.Type(ID_txtLength, L"6");
    EXPECT_EQ(screen.Text(ID_txtLength), L"6");
    screen.Type(ID_txtLength, L"0");
    EXPECT_EQ(screen.Text(ID_txtLength), L"6");
    EXPECT_TRUE(prompts.warned.empty()) << "nothing is asked for while typing";
}

TEST_F(frmAddBandsTest, AddsANumberAtEachPosition) {
    struct Case {
        int position;
        Texts order;
    };
    for (const auto& [position, order] : {Case{1, {L"Prefix", L"New", L"Year"}}, Case{2, {L"Prefix", L"Year", L"New"}},
                                          Case{3, {L"Prefix", L"Year", L"New"}}}) {
        const auto small = EmptyRule();
        small->Add({.name = L"Prefix", .defaultValue = L"INV"});
        small->Add({.name = L"Year", .defaultValue = L"24"});
        dialogs::frmAddBands each(*small);
        each.ShowNewBand(L"Year", position);
        const Screen screen = Show(each);
        screen.Type(ID_txtName, L" New ");
        screen.Pick(ID_cboStyle, bsIncreaseNumber);
        screen.Type(ID_txtDefault, L"0012");
        screen.Type(ID_txtFormat, L"00000");
        screen.Type(ID_txtLength, L"5");
        screen.Pick(ID_cboIncrMode, imTrigered);
        screen.Pick(ID_cboTrigerBand, 2);
        screen.Click(ID_cmdOK);
        EXPECT_TRUE(each.IsHidden());
        EXPECT_EQ(NamesOf(*small), order) << position;
        const auto band = small->Band(L"New");
        EXPECT_EQ(band->Style(), bsIncreaseNumber);
        EXPECT_EQ(band->Default(), L"12");
        EXPECT_EQ(band->Formate(), L"00000");
        EXPECT_EQ(band->Length(), 5);
        EXPECT_EQ(band->IncrMode(), imTrigered);
        EXPECT_EQ(band->TrigerBand(), small->Band(L"Year"));
    }
}

TEST_F(frmAddBandsTest, AddsALayeredField) {
    const Screen screen = Open();
    screen.Type(ID_txtName, L"Customer");
    screen.Pick(ID_cboStyle, bsUsrField);
    screen.Pick(ID_cboBound, 3);
    screen.Pick(ID_cboSwapMode, smLayersSwap);
    EXPECT_EQ(rule->LayeredBands().Count(), 2) << "the template is no band of the rule";
    screen.Click(ID_cmdOK);
    const auto band = rule->Band(L"Customer");
    EXPECT_EQ(band->BoundField(), rule->UsrFields().Item(L"Customer"));
    EXPECT_EQ(band->SwapMode(), smLayersSwap);
    EXPECT_EQ(rule->LayeredBands().Item(3)->Name(), L"Customer");
    EXPECT_EQ(prompts.informed.size(), 1U) << "the relations are affected";
}

TEST_F(frmAddBandsTest, TheFirstBandOfARule) {
    const auto empty = EmptyRule();
    dialogs::frmAddBands first(*empty);
    first.ShowNewBand(L"", 3);
    const Screen screen = Show(first);
    screen.Type(ID_txtName, L"Prefix");
    screen.Pick(ID_cboStyle, bsFixed);
    screen.Type(ID_txtDefault, L"INV");
    EXPECT_EQ(screen.Text(ID_txtLength), L"3") << "follows the text";
    screen.Click(ID_cmdOK);
    ASSERT_EQ(empty->Count(), 1);
    EXPECT_EQ(empty->Band(1)->Default(), L"INV");
}

TEST_F(frmAddBandsTest, ARefusedOKStaysAtTheCulprit) {
    const Screen screen = Open();
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Invalid parametre(s) or value."}));
    EXPECT_TRUE(screen.Focused(ID_txtName));
    screen.Type(ID_txtName, L"number");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Band style not defined.");
    EXPECT_TRUE(screen.Focused(ID_cboStyle));
    screen.Pick(ID_cboStyle, bsFixed);
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Invalid parametre(s) or value.");
    EXPECT_TRUE(screen.Focused(ID_txtDefault)) << "a fixed band needs its text";
    screen.Type(ID_txtDefault, L"X");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Band with the same name exist.");
    EXPECT_TRUE(screen.Focused(ID_txtName));
    screen.Pick(ID_cboStyle, bsUsrField);
    screen.Type(ID_txtName, L"Other");
    screen.Click(ID_cmdOK);
    EXPECT_TRUE(screen.Focused(ID_cboBound)) << "a field band needs its field";
    EXPECT_EQ(rule->Count(), 6);
    EXPECT_TRUE(IsWindowVisible(screen.Window()));
}

TEST_F(frmAddBandsTest, ARelativeBandThatIsGoneIsReported) {
    const Screen screen = Open(L"Letter", 1);
    screen.Type(ID_txtName, L"New");
    screen.Pick(ID_cboStyle, bsFixed);
    screen.Type(ID_txtDefault, L"X");
    rule->Remove(L"Letter");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Incorrect refer band:\r\n\r\nLetter"}));
    EXPECT_EQ(rule->Count(), 5);
}

TEST_F(frmAddBandsTest, EnterCountsWhatIsStillBeingTyped) {
    const Screen screen = Open();
    screen.Type(ID_txtName, L"New");
    screen.Pick(ID_cboStyle, bsIncreaseNumber);
    screen.Type(ID_txtDefault, L"1");
    screen.Focus(ID_txtLength);
    SetWindowTextW(screen.Control(ID_txtLength), L"0");
    screen.Choose(ID_cmdOK); // the focus stays in the box
    ASSERT_EQ(prompts.warned.size(), 1U);
    EXPECT_EQ(prompts.warned[0], L"Invalid parametre(s) or value.\r\n\r\nLength");
    EXPECT_TRUE(screen.Focused(ID_txtLength));
    EXPECT_EQ(rule->Count(), 6);
    SetWindowTextW(screen.Control(ID_txtLength), L"4");
    screen.Choose(ID_cmdOK);
    EXPECT_EQ(rule->Band(L"New")->Length(), 4);
}

TEST_F(frmAddBandsTest, ValuesAreTypedInUpperCaseWhenTheRuleWantsIt) {
    const Screen screen = Open();
    screen.Pick(ID_cboStyle, bsFixed);
    screen.Character(ID_txtDefault, L'a');
    EXPECT_EQ(screen.Text(ID_txtDefault), L"A");
}

TEST_F(frmAddBandsTest, ValuesAreTypedAsTheyAreWhereTheRuleDoesNotCare) {
    rule->SetCodeUCased(false);
    const Screen screen = Open();
    screen.Pick(ID_cboStyle, bsFixed);
    screen.Character(ID_txtDefault, L'a');
    EXPECT_EQ(screen.Text(ID_txtDefault), L"a");
    rule->SetCodeUCased(true);
    form.ShowNewBand(L"Number", 3);
    screen.Character(ID_txtDefault, L'b');
    screen.Character(ID_txtName, L'c');
    EXPECT_EQ(screen.Text(ID_txtDefault), L"aB") << "the rule is asked when the dialog is shown";
    EXPECT_EQ(screen.Text(ID_txtName), L"c") << "a name is no part of a code";
}

TEST_F(frmAddBandsTest, CancelAndCloseBoxAddNothing) {
    const Screen screen = Open();
    screen.Type(ID_txtName, L"New");
    screen.Click(ID_cmdCancel);
    EXPECT_TRUE(form.IsHidden());
    screen.Close();
    EXPECT_EQ(rule->Count(), 6);
}

} // namespace kestrel::test
