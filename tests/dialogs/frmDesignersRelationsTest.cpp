// The relations in the designer: its buttons, menus and keys, and how the shown tree follows the real one.
#include "dialogs/support/DesignerTest.h"
#include "dialogs/support/MenuWatcher.h"

namespace kestrel::test {

namespace {

class frmDesignersRelationsTest : public DesignerTest {
  protected:
    frmDesignersRelationsTest() { Select(ibRegion); }
};

} // namespace

TEST_F(frmDesignersRelationsTest, ShowsTheTree) {
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"01 North", L"  1 Hamburg", L"  2 Bremen", L"  3 Kiel",
                                                         L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
}

TEST_F(frmDesignersRelationsTest, ButtonsFollowTheSelection) {
    EXPECT_TRUE(screen->Enabled(ID_cmdAdd));
    EXPECT_FALSE(screen->Enabled(ID_cmdDelete));
    EXPECT_FALSE(screen->Enabled(ID_cmdModify));
    EXPECT_TRUE(screen->Enabled(ID_cmdClear));
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    EXPECT_TRUE(screen->Enabled(ID_cmdDelete));
    EXPECT_TRUE(screen->Enabled(ID_cmdModify));
    rule->Relations().Cls();
    EXPECT_FALSE(screen->Enabled(ID_cmdClear));
    EXPECT_FALSE(screen->Enabled(ID_cmdDelete));
}

TEST_F(frmDesignersRelationsTest, AddAndModifyOpenTheNodeDialog) {
    screen->Click(ID_cmdAdd);
    screen->SelectTreeItem(ID_tvwAvailable, L"2 Bremen");
    screen->Click(ID_cmdAdd);
    for (int item = 0; item < 4; ++item)
        screen->Choose(ID_mnuSubNodeAdd + item);
    screen->Click(ID_cmdModify);
    screen->Choose(ID_mnuNodeEdit);
    EXPECT_EQ(recorded.calls, (Texts{L"AddRelation 3  1", L"AddRelation 3 N4 1", L"AddRelation 3 N4 3",
                                     L"AddRelation 3 N4 2", L"AddRelation 3 N4 1", L"AddRelation 3 N4 4",
                                     L"AddRelation 3 N4 modify", L"AddRelation 3 N4 modify"}));
}

TEST_F(frmDesignersRelationsTest, DeleteAsksAndCountsWhatIsBelow) {
    rule->Relations().Add(L"N3", tvwChild, L"9", L"Altona"); // below Hamburg
    screen->SelectTreeItem(ID_tvwAvailable, L"2 Bremen");
    prompts.answer = false;
    screen->Click(ID_cmdDelete);
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Choose(ID_mnuNodeRemove);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to delete the relation?",
                                    L"Sure to delete the relation?\r\n4 child relation(s) included."}));
    EXPECT_EQ(rule->Relations().Count(), 9);
    prompts.answer = true;
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
}

TEST_F(frmDesignersRelationsTest, DeletingANodeWithThreeBelowAsksWithThree) {
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to delete the relation?\r\n3 child relation(s) included."}));
    EXPECT_EQ(rule->Relations().Count(), 4);
}

TEST_F(frmDesignersRelationsTest, DeletingLeavesTheRestOfTheTreeAsItIs) {
    const HTREEITEM south = screen->TreeItem(ID_tvwAvailable, L"02 South");
    SendMessageW(screen->Control(ID_tvwAvailable), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(south));
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeItem(ID_tvwAvailable, L"02 South"), south) << "the item has not been made anew";
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"02 South") << "the one that takes its place";
    EXPECT_TRUE(screen->Enabled(ID_cmdDelete));
    screen->SelectTreeItem(ID_tvwAvailable, L"1 Munich");
    screen->Click(ID_cmdDelete);
    rule->Relations().Add(L"N2", tvwChild, L"5", L"Ulm");
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  2 Stuttgart", L"  5 Ulm", L"03 West"}));
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable).size(), static_cast<std::size_t>(rule->Relations().Count()));
}

TEST_F(frmDesignersRelationsTest, ANodeThatGoesWhileTheQuestionIsOpenIsReported) {
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    prompts.whileAsking = [this] { rule->Relations().Remove(L"N1"); };
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
    EXPECT_NE(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersRelationsTest, ATreeFilledAnewWhileTheQuestionIsOpenLosesNothing) {
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    prompts.whileAsking = [this] {
        rule->Relations().Cls();
        rule->Relations().Add({}, tvwFirst, L"09", L"East");
    };
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), Texts{L"09 East"}) << "it has the key that North had";
    EXPECT_NE(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersRelationsTest, DeletingShowsTheHourglass) {
    std::vector<HCURSOR> cursors;
    const auto host =
        rule->Relations().NodesChanged.Subscribe([&](const String&, const String&) { cursors.push_back(GetCursor()); });
    screen->SelectTreeItem(ID_tvwAvailable, L"03 West");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(cursors, std::vector<HCURSOR>{LoadCursorW(nullptr, IDC_WAIT)});
    EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_WAIT)) << "no longer than it takes";
}

TEST_F(frmDesignersRelationsTest, ClearingATreeOfFiveAsksWithFive) {
    rule->Relations().Remove(L"N2");
    screen->Click(ID_cmdClear);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to clean all relations?(5 relation(s) included.)"}));
    EXPECT_EQ(rule->Relations().Count(), 0);
}

TEST_F(frmDesignersRelationsTest, ClearAsksWithTheCount) {
    prompts.answer = false;
    screen->Click(ID_cmdClear);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to clean all relations?(8 relation(s) included.)"}));
    EXPECT_EQ(rule->Relations().Count(), 8);
    prompts.answer = true;
    screen->Choose(ID_mnuNodeRemoveAll);
    EXPECT_EQ(rule->Relations().Count(), 0);
    EXPECT_TRUE(screen->TreeTexts(ID_tvwAvailable).empty());
}

TEST_F(frmDesignersRelationsTest, AChangeSelectsItsNode) {
    rule->Relations().Add(L"N5", tvwChild, L"9", L"Leer");
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"9 Leer");
    rule->Relations().Node(L"N8")->SetTag(L"Far West");
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"03 Far West");
}

TEST_F(frmDesignersRelationsTest, WhatWasExpandedStaysSo) {
    const HWND tree = screen->Control(ID_tvwAvailable);
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND,
                 reinterpret_cast<LPARAM>(screen->TreeItem(ID_tvwAvailable, L"02 South")));
    rule->Relations().Node(L"N8")->SetText(L"04");
    const auto south = reinterpret_cast<WPARAM>(screen->TreeItem(ID_tvwAvailable, L"02 South"));
    EXPECT_NE(SendMessageW(tree, TVM_GETITEMSTATE, south, TVIS_EXPANDED) & TVIS_EXPANDED, 0);
}

TEST_F(frmDesignersRelationsTest, KeysWorkTheTree) {
    const auto press = [this](WORD key) {
        NMTVKEYDOWN pressed{};
        pressed.hdr = {screen->Control(ID_tvwAvailable), ID_tvwAvailable, static_cast<UINT>(TVN_KEYDOWN)};
        pressed.wVKey = key;
        SendMessageW(screen->Window(), WM_NOTIFY, ID_tvwAvailable, reinterpret_cast<LPARAM>(&pressed));
    };
    press(VK_DELETE);
    EXPECT_TRUE(prompts.asked.empty()) << "nothing is selected";
    screen->SelectTreeItem(ID_tvwAvailable, L"03 West");
    press(VK_F2);
    press(VK_INSERT);
    EXPECT_EQ(recorded.calls, (Texts{L"AddRelation 3 N8 modify", L"AddRelation 3 N8 1"}));
    press(VK_DELETE);
    EXPECT_EQ(rule->Relations().Count(), 7);
}

TEST_F(frmDesignersRelationsTest, TheMenuFollowsTheSelection) {
    const MenuWatcher menu(form->Window());
    const auto open = [this] {
        NMTVKEYDOWN pressed{};
        pressed.hdr = {screen->Control(ID_tvwAvailable), ID_tvwAvailable, static_cast<UINT>(TVN_KEYDOWN)};
        pressed.wVKey = VK_APPS;
        SendMessageW(screen->Window(), WM_NOTIFY, ID_tvwAvailable, reinterpret_cast<LPARAM>(&pressed));
    };
    open();
    EXPECT_EQ(menu.Items(), (Texts{L"Add Node(&A)", L"-Add &Before..", L"-Add &After..", L"A&ppend..", L"-&Child..",
                                   L"-&Modify..", L"-Remove Node(&R)", L"Remove All(&C)"}));
    rule->Relations().Add(L"N3", tvwChild, L"9", L"Altona"); // selected, in the third layer of two
    open();
    EXPECT_EQ(menu.Items(), (Texts{L"Add Node(&A)", L"Add &Before..", L"Add &After..", L"A&ppend..", L"-&Child..",
                                   L"&Modify..", L"Remove Node(&R)", L"Remove All(&C)"}));
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    open();
    EXPECT_EQ(menu.Items()[4], L"&Child..");
    rule->Relations().Cls();
    open();
    EXPECT_EQ(menu.Items(), (Texts{L"Add Node(&A)", L"-Add &Before..", L"-Add &After..", L"A&ppend..", L"-&Child..",
                                   L"-&Modify..", L"-Remove Node(&R)", L"-Remove All(&C)"}));
}

TEST_F(frmDesignersRelationsTest, ALargeTreeIsReadAgainOnce) {
    auto& tree = rule->Relations();
    for (int code = 100; code < 400; ++code)
        tree.Add({}, tvwFirst, ToText(code), L"Place " + ToText(code));
    RunPendingMessages();
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable).size(), 308U);
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"399 Place 399");
}

} // namespace kestrel::test
