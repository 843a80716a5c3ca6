#include "dialogs/frmDropFields.h"

#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class frmDropFieldsTest : public DialogTest {
  protected:
    frmDropFieldsTest() : rule(EmptyRule()) {
        rule->UsrFields().Add(L"A", L"Alpha");
        rule->UsrFields().Add(L"B", L"Beta");
        rule->UsrFields().Add(L"C", L"Gamma");
        form.emplace(*rule);
    }
    // The texts of the selected rows.
    static Texts Selected(const Screen& screen) {
        Texts texts;
        const auto rows = screen.Rows(ID_lstFields);
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (SendMessageW(screen.Control(ID_lstFields), LB_GETSEL, row, 0) > 0) texts.push_back(rows[row]);
        return texts;
    }
    Ref<CodeClass> rule;
    std::optional<dialogs::frmDropFields> form;
};

String AskDelete(const String& names) { return L"Do you want to delete the selected field(s)?\r\n\r\n" + names; }

} // namespace

TEST_F(frmDropFieldsTest, ShowsTheDisplayNamesInOrder) {
    const Screen screen = Show(*form);
    EXPECT_EQ(screen.Caption(), L"User fields");
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Alpha", L"Beta", L"Gamma"}));
    EXPECT_EQ(SendMessageW(screen.Control(ID_lstFields), LB_GETSELCOUNT, 0, 0), 0);
}

TEST_F(frmDropFieldsTest, AddAsksTheHostAndFollowsTheField) {
    const Screen screen = Show(*form);
    Texts asked;
    const auto host = rule->AddField.Subscribe([&](String& name) {
        asked.push_back(L"<" + name + L">");
        rule->UsrFields().Add(L"D", L"Delta");
    });
    screen.Click(ID_cmdAdd);
    EXPECT_EQ(asked, (Texts{L"<>"}));
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Alpha", L"Beta", L"Gamma", L"Delta"}));
}

TEST_F(frmDropFieldsTest, DropWithoutASelectionIsRefused) {
    const Screen screen = Show(*form);
    screen.Click(ID_cmdDrop);
    EXPECT_EQ(prompts.warned, (Texts{L"Please select item(s) to be droped first."}));
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_EQ(rule->UsrFields().Count(), 3);
}

TEST_F(frmDropFieldsTest, DropAsksWithTheNamesAndRemovesThem) {
    const Screen screen = Show(*form);
    screen.SelectRow(ID_lstFields, 0);
    screen.SelectRow(ID_lstFields, 2);
    screen.Click(ID_cmdDrop);
    EXPECT_EQ(prompts.asked, (Texts{AskDelete(L"A;C")}));
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Beta"}));
    EXPECT_EQ(rule->UsrFields().Count(), 1);
}

TEST_F(frmDropFieldsTest, DropAnsweredWithNoKeepsEverything) {
    const Screen screen = Show(*form);
    screen.SelectRow(ID_lstFields, 1);
    prompts.answer = false;
    screen.Click(ID_cmdDrop);
    EXPECT_EQ(prompts.asked, (Texts{AskDelete(L"B")}));
    EXPECT_EQ(rule->UsrFields().Count(), 3);
}

TEST_F(frmDropFieldsTest, ABoundFieldStaysAndTheOthersGo) {
    kestrel::NewBand band;
    band.name = L"Region";
    band.style = bsUsrField;
    band.dataField = rule->UsrFields().Item(L"A");
    rule->Add(band);
    const Screen screen = Show(*form);
    screen.SelectRow(ID_lstFields, 0);
    screen.SelectRow(ID_lstFields, 1);
    screen.Click(ID_cmdDrop);
    ASSERT_EQ(prompts.warned.size(), 1U);
    EXPECT_EQ(prompts.warned[0], L"Failed to drop item.The field [A] is bounded to the following Band:\r\n\r\nRegion");
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Alpha", L"Gamma"}));
}

TEST_F(frmDropFieldsTest, TheSelectionStaysWhenTheHostAddsAField) {
    const Screen screen = Show(*form);
    const auto host = rule->AddField.Subscribe([&](String&) { rule->UsrFields().Add(L"D", L"Delta"); });
    screen.SelectRow(ID_lstFields, 1);
    screen.Click(ID_cmdAdd);
    EXPECT_EQ(Selected(screen), Texts{L"Beta"});
    screen.SelectRow(ID_lstFields, 3);
    rule->UsrFields().MoveItem(IndexKey(L"D"), IndexKey(L"A"), {});
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Delta", L"Alpha", L"Beta", L"Gamma"}));
    EXPECT_EQ(Selected(screen), (Texts{L"Delta", L"Beta"})) << "the same fields, wherever they are now";
    rule->UsrMacros().Add(L"Year");
    EXPECT_EQ(Selected(screen), (Texts{L"Delta", L"Beta"}));
    rule->UsrFields().Remove(IndexKey(L"B"));
    EXPECT_EQ(Selected(screen), Texts{L"Delta"});
}

TEST_F(frmDropFieldsTest, NothingIsSelectedAfterADrop) {
    const Screen screen = Show(*form);
    screen.SelectRow(ID_lstFields, 1);
    screen.Click(ID_cmdDrop);
    EXPECT_EQ(screen.Rows(ID_lstFields), (Texts{L"Alpha", L"Gamma"}));
    EXPECT_EQ(Selected(screen), Texts{});
    screen.Click(ID_cmdDrop);
    EXPECT_EQ(prompts.warned, (Texts{L"Please select item(s) to be droped first."}));
    EXPECT_EQ(rule->UsrFields().Count(), 2);
    screen.SelectRow(ID_lstFields, 0);
    rule->UsrFields().Add(L"D", L"Delta");
    EXPECT_EQ(Selected(screen), Texts{L"Alpha"}) << "what is selected afterwards stays so";
}

TEST_F(frmDropFieldsTest, AFieldCanBeShownByName) {
    const Screen screen = Show(*form);
    form->ShowInfo(L" C ");
    EXPECT_NE(SendMessageW(screen.Control(ID_lstFields), LB_GETSEL, 2, 0), 0);
}

} // namespace kestrel::test
