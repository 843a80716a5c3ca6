#include "dialogs/frmAddNodes.h"

#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class frmAddNodesTest : public DialogTest {
  protected:
    frmAddNodesTest() : rule(InvoiceRule()), form(*rule), tree(rule->Relations()) {}
    Screen Open(const String& key, int relationship, bool modify = false) {
        form.ShowNodeEditor(rule->Band(ibRegion), key, relationship, modify);
        return Show(form);
    }
    static void Fill(const Screen& screen, const String& code, const String& value) {
        SetWindowTextW(screen.Control(ID_txtCode), code.c_str());
        SetWindowTextW(screen.Control(ID_txtValue), value.c_str());
    }
    static int NumberOf(const std::function<void()>& step) {
        try {
            step();
            return 0;
        } catch (const Error& error) {
            return error.Number();
        }
    }
    Ref<CodeClass> rule;
    dialogs::frmAddNodes form;
    cNodes& tree;
};

} // namespace

TEST_F(frmAddNodesTest, RefusesToOpenWithoutBandOrWithAnUnknownNode) {
    EXPECT_EQ(NumberOf([&] { form.ShowNodeEditor(nullptr, L"", tvwLast, false); }), 2003);
    EXPECT_EQ(NumberOf([&] { form.ShowNodeEditor(rule->Band(ibPrefix), L"", tvwLast, false); }), 2003);
    EXPECT_EQ(NumberOf([&] { form.ShowNodeEditor(rule->Band(ibRegion), L"N99", tvwLast, false); }), 2003);
    EXPECT_EQ(NumberOf([&] { form.ShowNodeEditor(rule->Band(ibRegion), L"", tvwLast, true); }), 2003);
}

TEST_F(frmAddNodesTest, EachRelationshipHasItsOption) {
    const Screen screen = Open(L"N1", tvwPrevious);
    EXPECT_EQ(screen.Caption(), L"Add Relations");
    for (const auto& [relationship, option] : {std::pair(tvwPrevious, 0), {tvwNext, 1}, {tvwLast, 2}, {tvwChild, 3}}) {
        form.ShowNodeEditor(rule->Band(ibRegion), L"N1", relationship, false);
        for (int each = 0; each < 4; ++each)
            EXPECT_EQ(screen.Checked(ID_optStyle + each), each == option ? 1 : 0) << relationship;
    }
}

TEST_F(frmAddNodesTest, WithoutANodeOnlyAppendCanBeChosen) {
    const Screen screen = Open(L"", tvwNext);
    EXPECT_FALSE(screen.Enabled(ID_optStyle));
    EXPECT_FALSE(screen.Enabled(ID_optStyle + 1));
    EXPECT_TRUE(screen.Enabled(ID_optStyle + 2));
    EXPECT_FALSE(screen.Enabled(ID_optStyle + 3));
    EXPECT_EQ(screen.Checked(ID_optStyle + 2), 1);
}

TEST_F(frmAddNodesTest, AChildIsPossibleBelowTheNumberOfLayers) {
    const Screen screen = Open(L"N3", tvwLast);
    EXPECT_TRUE(screen.Enabled(ID_optStyle + 3)) << "layer 1 of 2";
    const auto deep = tree.Add(L"N3", tvwChild, L"9", L"Altona");
    form.ShowNodeEditor(rule->Band(ibRegion), deep->Key(), tvwLast, false);
    EXPECT_FALSE(screen.Enabled(ID_optStyle + 3)) << "layer 2 of 2";
}

TEST_F(frmAddNodesTest, ShowsTheLayerThatTheNodeWouldTake) {
    const Screen screen = Open(L"N1", tvwNext);
    EXPECT_EQ(screen.Text(ID_lblInfo), L"Layer 1 (Region)");
    screen.Click(ID_optStyle + 3);
    EXPECT_EQ(screen.Text(ID_lblInfo), L"Layer 2 (Branch)");
}

TEST_F(frmAddNodesTest, AddsAtEachPosition) {
    struct Case {
        int option;
        const wchar_t* after; // the code of the sibling before it, empty for the first
        const wchar_t* parent;
    };
    for (const auto& [option, after, parent] :
         {Case{0, L"01", L""}, Case{1, L"02", L""}, Case{2, L"03", L""}, Case{3, L"2", L"02"}}) {
        dialogs::frmAddNodes each(*rule);
        const auto relative = tree.Conversion(csValueToCode, *std::make_unique<String>(L"South"));
        each.ShowNodeEditor(rule->Band(ibRegion), relative, tvwLast, false);
        const Screen screen = Show(each);
        screen.Click(ID_optStyle + option);
        Fill(screen, L" new ", L" New place ");
        screen.Click(ID_cmdOK);
        EXPECT_TRUE(each.IsHidden());
        String value = L"New place";
        const auto parentKey = *parent == 0 ? IndexKey() : IndexKey(relative);
        const auto node = tree.Node(tree.Conversion(csValueToCode, value, parentKey));
        EXPECT_EQ(node->Text(), L"new") << "trimmed";
        EXPECT_EQ(node->PreviousSibling()->Text(), after) << option;
        tree.Remove(node->Key());
    }
}

TEST_F(frmAddNodesTest, AnEmptyTreeTakesTheNodeAtTheTop) {
    tree.Cls();
    const Screen screen = Open(L"", tvwChild);
    Fill(screen, L"1", L"One");
    screen.Click(ID_cmdOK);
    ASSERT_EQ(tree.Count(), 1);
    EXPECT_EQ(tree.Node(1)->Layer(), 0);
}

TEST_F(frmAddNodesTest, AnEmptyCodeOrValueIsRefusedAtItsBox) {
    const Screen screen = Open(L"N1", tvwNext);
    Fill(screen, L"   ", L"Value");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Invalid parametre(s) or value.\r\n\r\nCode"}));
    EXPECT_TRUE(screen.Focused(ID_txtCode));
    Fill(screen, L"X", L" ");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Invalid parametre(s) or value.\r\n\r\nValue");
    EXPECT_TRUE(screen.Focused(ID_txtValue));
    EXPECT_EQ(tree.Count(), 8);
    EXPECT_TRUE(IsWindowVisible(screen.Window()));
}

TEST_F(frmAddNodesTest, ADuplicateIsRefusedAtItsBox) {
    const Screen screen = Open(L"N1", tvwNext);
    Fill(screen, L"02", L"Elsewhere");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Same code existed in the layer."}));
    EXPECT_TRUE(screen.Focused(ID_txtCode));
    Fill(screen, L"77", L"South");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Same value existed in the layer.");
    EXPECT_TRUE(screen.Focused(ID_txtValue));
    EXPECT_EQ(tree.Count(), 8);
}

TEST_F(frmAddNodesTest, ModifyShowsAndChangesTheNode) {
    const Screen screen = Open(L"N3", tvwLast, true);
    EXPECT_EQ(screen.Caption(), L"Modify Relations");
    EXPECT_EQ(screen.Text(ID_txtCode), L"1");
    EXPECT_EQ(screen.Text(ID_txtValue), L"Hamburg");
    for (int option = 0; option < 4; ++option)
        EXPECT_FALSE(screen.Enabled(ID_optStyle + option)) << "a node stays where it is";
    Fill(screen, L"2", L"Hamburg");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Same code existed in the layer."}));
    EXPECT_EQ(tree.Node(L"N3")->Text(), L"1");
    Fill(screen, L"8", L"Altona");
    screen.Click(ID_cmdOK);
    EXPECT_TRUE(form.IsHidden());
    EXPECT_EQ(tree.Node(L"N3")->Text(), L"8");
    EXPECT_EQ(tree.Node(L"N3")->Tag(), L"Altona");
}

TEST_F(frmAddNodesTest, AChangeThatIsRefusedLeavesCodeAndValue) {
    const Screen screen = Open(L"N3", tvwLast, true);
    int changes = 0;
    const auto host = tree.NodesChanged.Subscribe([&](const String&, const String&) { ++changes; });
    Fill(screen, L"8", L"Bremen");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Same value existed in the layer."}));
    EXPECT_TRUE(screen.Focused(ID_txtValue));
    Fill(screen, L"2", L"Bremen");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned.back(), L"Same code existed in the layer.") << "the code is refused first";
    screen.Click(ID_cmdCancel);
    EXPECT_EQ(tree.Node(L"N3")->Text(), L"1");
    EXPECT_EQ(tree.Node(L"N3")->Tag(), L"Hamburg");
    EXPECT_EQ(changes, 0);
}

TEST_F(frmAddNodesTest, OKClickedTwiceAddsOneNode) {
    const Screen screen = Open(L"N1", tvwNext);
    const auto host = tree.NodesChanged.Subscribe([&](const String&, const String&) { screen.Choose(ID_cmdOK); });
    Fill(screen, L"77", L"Elsewhere");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(tree.Count(), 9);
    EXPECT_TRUE(prompts.warned.empty());
    EXPECT_TRUE(form.IsHidden());
}

TEST_F(frmAddNodesTest, ANodeThatHasGoneMeanwhileIsNotWrittenTo) {
    const Screen screen = Open(L"N1", tvwLast, true);
    const auto gone = tree.Node(L"N1");
    tree.Remove(L"N1");
    Fill(screen, L"77", L"Elsewhere");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Invalid parametre(s) or value."}));
    EXPECT_EQ(gone->Text(), L"01");
    EXPECT_FALSE(form.IsHidden());
}

TEST_F(frmAddNodesTest, ABandThatHasGoneMeanwhileGetsNoNode) {
    const Screen screen = Open(L"N1", tvwNext);
    rule->Remove(ibRegion);
    const auto before = tree.Count();
    Fill(screen, L"77", L"Elsewhere");
    screen.Click(ID_cmdOK);
    EXPECT_EQ(prompts.warned, (Texts{L"Invalid parametre(s) or value."}));
    EXPECT_EQ(tree.Count(), before);
}

TEST_F(frmAddNodesTest, TheCodeIsTypedInUpperCaseWhenTheRuleWantsIt) {
    const Screen screen = Open(L"", tvwLast);
    screen.Character(ID_txtCode, L'a');
    screen.Character(ID_txtValue, L'a');
    EXPECT_EQ(screen.Text(ID_txtCode), L"A");
    EXPECT_EQ(screen.Text(ID_txtValue), L"a");
    rule->SetCodeUCased(false);
    dialogs::frmAddNodes lower(*rule);
    lower.ShowNodeEditor(rule->Band(ibRegion), L"", tvwLast, false);
    const Screen other = Show(lower);
    other.Character(ID_txtCode, L'a');
    EXPECT_EQ(other.Text(ID_txtCode), L"a");
}

TEST_F(frmAddNodesTest, CancelChangesNothing) {
    const Screen screen = Open(L"N1", tvwNext);
    Fill(screen, L"77", L"Elsewhere");
    screen.Click(ID_cmdCancel);
    EXPECT_TRUE(form.IsHidden());
    EXPECT_EQ(tree.Count(), 8);
}

} // namespace kestrel::test
