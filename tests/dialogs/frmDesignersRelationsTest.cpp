// The relations in the designer: its buttons, menus and keys, and how the shown tree follows the real one.
#include <cstring>

#include "dialogs/support/DesignerTest.h"
#include "dialogs/support/MenuWatcher.h"

namespace kestrel::test {

namespace {

class frmDesignersRelationsTest : public DesignerTest {
  protected:
    frmDesignersRelationsTest() { Select(ibRegion); }

    void Expand(const String& text) const {
        SendMessageW(screen->Control(ID_tvwAvailable), TVM_EXPAND, TVE_EXPAND,
                     reinterpret_cast<LPARAM>(screen->TreeItem(ID_tvwAvailable, text)));
    }
    [[nodiscard]] bool IsExpanded(const String& text) const {
        const auto item = reinterpret_cast<WPARAM>(screen->TreeItem(ID_tvwAvailable, text));
        const HWND tree = screen->Control(ID_tvwAvailable);
        return (SendMessageW(tree, TVM_GETITEMSTATE, item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
    }
    [[nodiscard]] LRESULT Shown() const { return SendMessageW(screen->Control(ID_tvwAvailable), TVM_GETCOUNT, 0, 0); }
    // Gives a large tree the time that it takes.
    static void Grow() {
        const auto end = GetTickCount() + 500;
        while (GetTickCount() < end) {
            RunPendingMessages();
            Sleep(1);
        }
    }
    // So many nodes in the first layer, and below each of them.
    void FillLayers(int first, int below) {
        const int all = first * (below + 1);
        String text = ToText(all);
        for (int node = 1; node <= all; ++node)
            text += L';' + (node <= first ? String() : ToText((node - 1) % first + 1)) + L',' + ToText(node) + L",C" +
                    ToText(node) + L",V" + ToText(node);
        rule->Relations().ImportNodes(text);
        Select(ibRegion);
    }
    static Texts LayerTexts(int first, int below) {
        Texts texts;
        const auto text = [](int node) { return L"C" + ToText(node) + L" V" + ToText(node); };
        for (int node = 1; node <= first; ++node) {
            texts.push_back(text(node));
            for (int each = 1; each <= below; ++each)
                texts.push_back(L"  " + text(node + each * first));
        }
        return texts;
    }
    void ExpectNothingSelected() const {
        EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"");
        EXPECT_FALSE(screen->Enabled(ID_cmdDelete));
        EXPECT_FALSE(screen->Enabled(ID_cmdModify));
    }
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
    Expand(L"02 South");
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
    Expand(L"02 South");
    rule->Relations().Node(L"N8")->SetText(L"04");
    EXPECT_TRUE(IsExpanded(L"02 South"));
    EXPECT_FALSE(IsExpanded(L"01 North"));
}

// Every tree numbers its keys from the same one on.
TEST_F(frmDesignersRelationsTest, TheTreeOfAnotherBandComesWithoutASelection) {
    Reopen(TwoTreesRule());
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    screen->Key(ID_picBand, VK_RIGHT);
    ASSERT_EQ(screen->Text(ID_txtName), L"Layered");
    ExpectNothingSelected();
    EXPECT_FALSE(IsExpanded(L"AA Europe"));
    screen->Click(ID_cmdAdd);
    EXPECT_EQ(recorded.calls, Texts{L"AddRelation 2  1"}) << "without a relative node";
    screen->Choose(ID_mnuNodeRemove);
    EXPECT_TRUE(prompts.asked.empty());
    screen->SelectTreeItem(ID_tvwAvailable, L"DE Germany");
    screen->Key(ID_picBand, VK_LEFT);
    ASSERT_EQ(screen->Text(ID_txtName), L"Plain");
    ExpectNothingSelected();
}

TEST_F(frmDesignersRelationsTest, ABandThatTheHostMovesIntoTheSelectedPlaceComesWithoutASelection) {
    Reopen(TwoTreesRule());
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    rule->Drag(IndexKey(L"Layered"), IndexKey(L"Plain"), {});
    ASSERT_EQ(screen->Text(ID_txtName), L"Layered");
    ExpectNothingSelected();
    screen->SelectTreeItem(ID_tvwAvailable, L"DE Germany");
    rule->Remove(IndexKey(L"Layered"));
    ASSERT_EQ(screen->Text(ID_txtName), L"Plain");
    ExpectNothingSelected();
}

TEST_F(frmDesignersRelationsTest, TheSelectionStaysWhileTheSameTreeIsShown) {
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    rule->Band(ibRegion)->SetLength(3);
    form->RefreshBands(rule.Get());
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"02 South");
    Select(ibBranch); // the next layer of the same tree
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"02 South");
    Select(ibYear);
    Select(ibRegion);
    ExpectNothingSelected();
}

TEST_F(frmDesignersRelationsTest, BranchesAreOpenAgainWhenTheirBandIsSelectedAgain) {
    Expand(L"02 South");
    Select(ibYear);
    EXPECT_TRUE(screen->TreeTexts(ID_tvwAvailable).empty());
    Select(ibBranch);
    EXPECT_TRUE(IsExpanded(L"02 South"));
    EXPECT_FALSE(IsExpanded(L"01 North"));
    Select(ibYear);
    rule->Relations().Remove(L"N2");
    Select(ibRegion);
    EXPECT_FALSE(IsExpanded(L"01 North")) << "what was open has gone meanwhile";
}

TEST_F(frmDesignersRelationsTest, LevelsBeyondThoseShownStandOnTheLast) {
    rule->Relations().Cls();
    String key;
    for (int level = 1; level <= 300; ++level)
        key = rule->Relations().Add(key.empty() ? IndexKey() : IndexKey(key), tvwChild, ToText(level), L"X")->Key();
    RunPendingMessages();
    const HWND tree = screen->Control(ID_tvwAvailable);
    const auto deepest = [tree] {
        auto item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0);
        int level = 0;
        for (; item != 0; item = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_PARENT, item))
            ++level;
        return level;
    };
    EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 300);
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"300 X");
    EXPECT_EQ(deepest(), 256);
    screen->SelectTreeItem(ID_tvwAvailable, L"280 X");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(prompts.asked.back(), L"Sure to delete the relation?\r\n20 child relation(s) included.");
    EXPECT_EQ(rule->Relations().Count(), 279);
    EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 279);
    const auto texts = screen->TreeTexts(ID_tvwAvailable);
    EXPECT_EQ(texts.size(), 279U);
    EXPECT_EQ(texts.back(), String(510, L' ') + L"279 X");
    screen->SelectTreeItem(ID_tvwAvailable, L"2 X");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(prompts.asked.back(), L"Sure to delete the relation?\r\n277 child relation(s) included.");
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), Texts{L"1 X"});
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

TEST_F(frmDesignersRelationsTest, EnterOnANodeModifiesIt) {
    screen->Key(ID_tvwAvailable, VK_RETURN);
    EXPECT_TRUE(recorded.calls.empty()) << "nothing is selected";
    screen->SelectTreeItem(ID_tvwAvailable, L"2 Bremen");
    screen->Focus(ID_tvwAvailable);
    screen->Key(ID_tvwAvailable, VK_RETURN);
    EXPECT_EQ(recorded.calls, Texts{L"AddRelation 3 N4 modify"});
    screen->Character(ID_tvwAvailable, L'\r');
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"2 Bremen");
}

TEST_F(frmDesignersRelationsTest, ADoubleClickOnANodeModifiesIt) {
    const HWND tree = screen->Control(ID_tvwAvailable);
    const auto doubleClick = [&](POINT place) {
        POINT mouse = place;
        ClientToScreen(tree, &mouse);
        SetCursorPos(mouse.x, mouse.y);
        SendMessageW(tree, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(place.x, place.y));
    };
    RECT south{};
    const HTREEITEM item = screen->TreeItem(ID_tvwAvailable, L"02 South");
    std::memcpy(&south, &item, sizeof(HTREEITEM)); // the message takes its question in its answer's place
    ASSERT_TRUE(SendMessageW(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&south)));
    doubleClick({south.left + 5, south.top + 5});
    EXPECT_EQ(recorded.calls, Texts{L"AddRelation 3 N2 modify"});
    EXPECT_FALSE(IsExpanded(L"02 South")) << "that is not what was asked for";
    RECT client{};
    GetClientRect(tree, &client);
    doubleClick({client.right - 10, client.bottom - 10});
    EXPECT_EQ(recorded.calls.size(), 1U) << "no node is there";
}

TEST_F(frmDesignersRelationsTest, TheKeysOfTheMenuOpenIt) {
    const MenuWatcher menu(form->Window());
    const HWND tree = screen->Control(ID_tvwAvailable);
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    SendMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), -1); // the system's word for both keys
    EXPECT_EQ(menu.Items().size(), 8U);
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"02 South");
}

TEST_F(frmDesignersRelationsTest, TheMenuFollowsTheSelection) {
    const MenuWatcher menu(form->Window());
    const auto open = [this] {
        const HWND tree = screen->Control(ID_tvwAvailable);
        SendMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), -1);
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

TEST_F(frmDesignersRelationsTest, ALargeTreeComesInStepsAndWhole) {
    FillLayers(30, 100);
    EXPECT_EQ(Shown(), 1000) << "at once";
    Grow();
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), LayerTexts(30, 100));
}

TEST_F(frmDesignersRelationsTest, WhatIsAskedForDoesNotWait) {
    FillLayers(30, 100);
    rule->Relations().Add({}, tvwFirst, L"NEW", L"New");
    RunPendingMessages();
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"NEW New");
    EXPECT_EQ(Shown(), 3031);
}

TEST_F(frmDesignersRelationsTest, ATreeThatGrowsCanBeChangedAndLeft) {
    FillLayers(30, 100);
    screen->SelectTreeItem(ID_tvwAvailable, L"C2 V2");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(prompts.asked.back(), L"Sure to delete the relation?\r\n100 child relation(s) included.");
    EXPECT_EQ(rule->Relations().Count(), 29 * 101);
    Grow();
    EXPECT_EQ(Shown(), 29 * 101);
    FillLayers(30, 100);
    Select(ibNumber);
    Grow();
    EXPECT_EQ(Shown(), 0) << "what waited is not inserted into another tree";
    Select(ibRegion);
    Grow();
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), LayerTexts(30, 100));
}

// The branches that stood open are open again, whatever had come of the tree.
TEST_F(frmDesignersRelationsTest, OpenBranchesOfALargeTreeStayOpen) {
    FillLayers(30, 100);
    Grow();
    Expand(L"C29 V29");
    Select(ibNumber);
    Select(ibRegion);
    EXPECT_TRUE(IsExpanded(L"C29 V29"));
    EXPECT_FALSE(IsExpanded(L"C28 V28"));
}

} // namespace kestrel::test
