// Rules with hundreds of bands and relations by the ten thousand: the designer opens soon and works without waiting.
#include <utility>

#include "dialogs/support/DialogTest.h"
#include "dialogs/support/ProcessorTime.h"

namespace kestrel::test {

namespace {

class LargeRulesTest : public DialogTest {
  protected:
    LargeRulesTest() { UseRealDialogs(); }
    Ref<CodeClass> rule;
    Visitor visitor;
};

Ref<CodeClass> LargeRule() {
    auto rule = EmptyRule();
    const auto field = rule->UsrFields().Add(L"Region");
    kestrel::NewBand layered{.name = L"Layer", .style = bsUsrField, .swapMode = smLayersSwap, .dataField = field};
    rule->Add(layered);
    kestrel::NewBand under{.name = L"Under", .style = bsUsrField, .swapMode = smLayersSwap, .dataField = field};
    rule->Add(under);
    for (int band = 3; band <= 200; ++band)
        rule->Add({.name = L"Band " + ToText(band), .style = bsIncreaseNumber, .defaultValue = L"1"});
    String text = L"20000";
    for (int node = 1; node <= 20000; ++node) {
        const String parent = node <= 200 ? String() : ToText((node - 1) % 200 + 1);
        text += L";" + parent + L"," + ToText(node) + L",C" + ToText(node) + L",Value " + ToText(node);
    }
    rule->Relations().ImportNodes(text);
    return rule;
}

std::vector<HCURSOR> theCursors;

// Writes down the cursor that the user sees when a whole tree goes, and when one begins to come.
LRESULT CALLBACK WatchTree(HWND tree, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR whole) {
    const auto count = static_cast<DWORD_PTR>(SendMessageW(tree, TVM_GETCOUNT, 0, 0));
    if (message == WM_SETREDRAW && wParam == FALSE && (count == 0 || count == whole)) theCursors.push_back(GetCursor());
    return DefSubclassProc(tree, message, wParam, lParam);
}

// A large tree comes in steps while the form waits.
void WaitForNodes(const Screen& designer, LRESULT count) {
    const auto shown = [&] { return SendMessageW(designer.Control(ID_tvwAvailable), TVM_GETCOUNT, 0, 0); };
    for (int wait = 0; wait < 5'000 && shown() < count; ++wait) {
        RunPendingMessages();
        Sleep(5);
    }
    EXPECT_EQ(shown(), count);
}

// One under the other.
Ref<CodeClass> DeepRule(int levels) {
    auto rule = EmptyRule();
    const auto field = rule->UsrFields().Add(L"Region");
    rule->Add({.name = L"Layer", .style = bsUsrField, .swapMode = smLayersSwap, .dataField = field});
    String text = ToText(levels);
    for (int node = 1; node <= levels; ++node)
        text += L";" + (node == 1 ? String() : ToText(node - 1)) + L"," + ToText(node) + L",C" + ToText(node) + L",V";
    rule->Relations().ImportNodes(text);
    return rule;
}

} // namespace

TEST_F(LargeRulesTest, ALargeRuleOpensSoon) {
    rule = LargeRule();
    const double start = ProcessorSeconds();
    double opened = 0;
    double next = 0;
    visitor.Then([&](const Screen& designer) {
        opened = ProcessorSeconds() - start;
        WaitForNodes(designer, 20'000);
        const double step = ProcessorSeconds();
        designer.Key(ID_picBand, VK_RIGHT);
        next = ProcessorSeconds() - step;
        SetWindowSubclass(designer.Control(ID_tvwAvailable), WatchTree, 1, 20'000);
        designer.Key(ID_picBand, VK_END);
        designer.Key(ID_picBand, VK_HOME);
        EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    });
    theCursors.clear();
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
    EXPECT_GT(opened, 0.0);
    EXPECT_LT(opened, 16.0);
    EXPECT_LT(next, 4.0);
    const HCURSOR hourglass = LoadCursorW(nullptr, IDC_WAIT);
    EXPECT_EQ(theCursors, (std::vector<HCURSOR>{hourglass, hourglass})) << "while the tree goes, and while it comes";
}

TEST_F(LargeRulesTest, ThirtyThousandLevelsAreWorked) {
    constexpr int levels = 30000;
    rule = DeepRule(levels);
    auto& tree = rule->Relations();
    // Work that grew as the square of the levels would take many minutes; machines that share their memory with others
    // differ by ten.
    double lap = ProcessorSeconds();
    const auto took = [&lap] {
        const double before = std::exchange(lap, ProcessorSeconds());
        return lap - before;
    };
    visitor.Then([&](const Screen& designer) {
        const HWND view = designer.Control(ID_tvwAvailable);
        const auto count = [view] { return SendMessageW(view, TVM_GETCOUNT, 0, 0); };
        const auto select = [view](UINT which) {
            const LRESULT item =
                SendMessageW(view, TVM_GETNEXTITEM, which, SendMessageW(view, TVM_GETNEXTITEM, TVGN_ROOT, 0));
            SendMessageW(view, TVM_SELECTITEM, TVGN_CARET, item);
        };
        EXPECT_LT(took(), 12.0) << "opening";
        WaitForNodes(designer, levels);
        EXPECT_LT(took(), 12.0) << "the rest of the tree";
        tree.Add(IndexKey(tree.Node(levels)->Key()), tvwChild, L"D", L"Deepest");
        RunPendingMessages();
        EXPECT_EQ(designer.SelectedTreeText(ID_tvwAvailable), L"D Deepest");
        EXPECT_LT(took(), 24.0) << "adding below the last, which takes all items out and loads them again";
        prompts.answer = false;
        select(TVGN_CHILD);
        designer.Click(ID_cmdDelete);
        EXPECT_EQ(prompts.asked.back(), L"Sure to delete the relation?\r\n29999 child relation(s) included.");
        EXPECT_LT(took(), 3.0) << "counting";
        prompts.answer = true;
        designer.Click(ID_cmdDelete);
        RunPendingMessages();
        EXPECT_EQ(count(), 1);
        EXPECT_EQ(tree.Count(), 1);
        EXPECT_LT(took(), 12.0) << "deleting";
    });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
}

TEST_F(LargeRulesTest, ALargeRuleIsWorkedWithoutWaiting) {
    rule = LargeRule();
    // What takes longer shows the hourglass.
    const auto quick = [](const char* action, const std::function<void()>& step, double limit = 4.0) {
        const double start = ProcessorSeconds();
        step();
        RunPendingMessages();
        EXPECT_LT(ProcessorSeconds() - start, limit) << action;
    };
    constexpr double underHourglass = 16.0;
    visitor.Then([&](const Screen& designer) {
        quick(
            "to a band without relations", [&] { designer.Key(ID_picBand, VK_END); }, underHourglass);
        quick("removing it", [&] { designer.Key(ID_picBand, VK_DELETE); });
        quick("moving one", [&] { rule->Drag(IndexKey(100), IndexKey(50), {}); });
        quick(
            "back to the relations", [&] { designer.Key(ID_picBand, VK_HOME); }, underHourglass);
        quick("typing", [&] { designer.Type(ID_txtFormat, L">"); });
        designer.SelectTreeItem(ID_tvwAvailable, L"C5 Value 5");
        quick("deleting a node", [&] { designer.Click(ID_cmdDelete); });
        EXPECT_EQ(SendMessageW(designer.Control(ID_tvwAvailable), TVM_GETCOUNT, 0, 0), rule->Relations().Count());
        quick(
            "adding one", [&] { rule->Relations().Add({}, tvwFirst, L"NEW", L"New"); }, underHourglass);
        EXPECT_EQ(designer.SelectedTreeText(ID_tvwAvailable), L"NEW New");
        quick("saving", [&] { designer.Click(ID_cmdSave); });
        quick(
            "clearing", [&] { designer.Click(ID_cmdClear); }, underHourglass);
        EXPECT_EQ(SendMessageW(designer.Control(ID_tvwAvailable), TVM_GETCOUNT, 0, 0), 0);
    });
    rule->ShowDesigner();
    EXPECT_TRUE(visitor.Finished());
}

} // namespace kestrel::test
