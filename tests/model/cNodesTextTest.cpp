#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

using namespace std::string_literals;

// Parent's key, key, Text and Tag of each node.
String ShownNodes(const cNodes& tree) {
    String shown;
    for (const auto& node : tree.Snapshot())
        shown += L"(" + (node->Parent() ? node->Parent()->Key() : L"") + L"|" + node->Key() + L"|" + node->Text() +
                 L"|" + node->Tag() + L")";
    return shown;
}

struct AcceptedTreeText {
    String text;
    String nodes;
    String written;
};

const AcceptedTreeText AcceptedTreeTexts[] = {
    {L"0", L"", L"0"},
    {L"12", L"", L"12"},
    {L" 7", L"", L"7"},
    {L"7abc", L"", L"7"},
    {L"abc", L"", L"0"},
    {L"2.5", L"", L"2"},
    {L"3.5", L"", L"4"},
    {L"1e2", L"", L"100"},
    {L"-3", L"", L"-3"},
    {L"2147483647", L"", L"2147483647"},
    {L"1;,1,a,b", L"(|N1|a|b)", L"1;,1,a,b"},
    {L";,1,a,b", L"(|N1|a|b)", L"0;,1,a,b"},
    {L"1;,1,,", L"(|N1||)", L"1;,1,,"},
    {L"1;,1,a,b,c,d", L"(|N1|a|b)", L"1;,1,a,b"},
    {L"3;,1,01,North;1,2,1,East;,3,02,South", L"(|N1|01|North)(N1|N2|1|East)(|N3|02|South)",
     L"3;,1,01,North;1,2,1,East;,3,02,South"},
    {L"9;,9,a,A;9,2,b,B;2,5,c,C", L"(|N9|a|A)(N9|N2|b|B)(N2|N5|c|C)", L"9;,9,a,A;9,2,b,B;2,5,c,C"},
    {L"1;,1,a,A;,2,a,A", L"(|N1|a|A)(|N2|a|A)", L"1;,1,a,A;,2,a,A"},
    {L"1;,x,a,A;x,,b,B", L"(|Nx|a|A)(Nx|N|b|B)", L"1;,x,a,A;x,,b,B"},
    {L"1;, 1, a , A ", L"(|N 1| a | A )", L"1;, 1, a , A "},
    {L"1;,1,a\0b,\0"s, L"(|N1|a\0b|\0)"s, L"1;,1,a\0b,\0"s},
};

struct RejectedTreeText {
    String text;
    Failure failure;
    String left; // what the tree then writes
};

const RejectedTreeText RejectedTreeTexts[] = {
    {L"1;", OutOfRange, L"1"},
    {L"1;,1,a", OutOfRange, L"1"},
    {L"1;,1", OutOfRange, L"1"},
    {L"4;,1,a,A;;,2,b,B", OutOfRange, L"4;,1,a,A"},
    {L"4;1,2,b,B;,1,a,A", InvalidCall, L"4"},
    {L"4;,1,a,A;7,2,b,B", InvalidCall, L"4;,1,a,A"},
    {L"4;,1,a,A;7", InvalidCall, L"4;,1,a,A"},
    {L"4;,1,a,A;1,1,b,B", DuplicateKey, L"4;,1,a,A"},
    {L"4;1,1,a,A", InvalidCall, L"4"},
    {L"2147483648;,1,a,A", Overflow, L"1;,1,old,OLD"},
    {L"-2147483649", Overflow, L"1;,1,old,OLD"},
    {L"1e999", Overflow, L"1;,1,old,OLD"},
};

} // namespace

class cNodesTextTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(cNodesTextTest, ReadsEachRecordAndWritesItBack) {
    for (const auto& row : AcceptedTreeTexts) {
        const auto tree = TreeOf(row.text);
        EXPECT_EQ(ShownNodes(*tree), row.nodes) << testing::PrintToString(row.text);
        EXPECT_EQ(tree->ExportNodes(), row.written) << testing::PrintToString(row.text);
    }
}

TEST_F(cNodesTextTest, FailsAtTheFirstBadRecordAndKeepsTheNodesBeforeIt) {
    for (const auto& row : RejectedTreeTexts) {
        const auto tree = TreeOf(L"1;,1,old,OLD");
        EXPECT_FAILURE(tree->ImportNodes(row.text), row.failure) << testing::PrintToString(row.text);
        EXPECT_EQ(tree->ExportNodes(), row.left) << testing::PrintToString(row.text);
    }
}

TEST_F(cNodesTextTest, SurvivesARoundTrip) {
    for (const auto& row : AcceptedTreeTexts)
        EXPECT_EQ(TreeOf(row.written)->ExportNodes(), row.written) << testing::PrintToString(row.written);
}

TEST_F(cNodesTextTest, OfATreeThatWasBuiltByHand) {
    const auto tree = Make<cNodes>();
    tree->Add({}, tvwFirst, L"01", L"North");
    tree->Add(L"N1", tvwChild, L"1", L"East");
    tree->Add({}, tvwFirst, L"02", L"South");
    EXPECT_EQ(tree->ExportNodes(), L"3;,1,01,North;1,2,1,East;,3,02,South");
}

TEST_F(cNodesTextTest, OfAnEmptyTree) {
    EXPECT_EQ(Make<cNodes>()->ExportNodes(), L"0");
    const auto tree = TreeOf(L"5;,1,a,A");
    tree->ImportNodes(L"0");
    EXPECT_EQ(tree->Count(), 0);
    EXPECT_EQ(tree->Add()->Key(), L"N1");
}

TEST_F(cNodesTextTest, EmptyTextKeepsTheTree) {
    const auto tree = TreeOf(L"5;,1,a,A");
    tree->ImportNodes(L"");
    EXPECT_EQ(tree->ExportNodes(), L"5;,1,a,A");
}

TEST_F(cNodesTextTest, ContinuesTheKeysWithTheCounter) {
    const auto tree = TreeOf(L"5;,1,a,A");
    EXPECT_EQ(tree->Add({}, tvwFirst, L"b", L"B")->Key(), L"N6");
}

TEST_F(cNodesTextTest, RaisesNothingAndLooksForNoDuplicates) {
    const auto tree = TreeOf(L"1;,1,a,A");
    const NodesRecorder events(*tree);
    tree->ImportNodes(L"2;,1,a,A;,2,a,A");
    EXPECT_FAILURE(tree->ImportNodes(L"2;,1,a"), OutOfRange);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(cNodesTextTest, GivesASimplifiedTreeWhatTheTextHolds) {
    const auto tree = Make<cNodes>();
    tree->SetStyle(tsSimplified);
    tree->ImportNodes(L"2;,1,a,A;1,2,b,B");
    EXPECT_EQ(tree->Node(2)->Layer(), 1);
    EXPECT_EQ(tree->Style(), tsSimplified);
}

TEST_F(cNodesTextTest, LosesCodesAndValuesThatHoldSeparators) {
    const auto tree = Make<cNodes>();
    tree->Add({}, tvwFirst, L"a,b", L"c");
    EXPECT_EQ(tree->ExportNodes(), L"1;,1,a,b,c");
    EXPECT_EQ(ShownNodes(*TreeOf(tree->ExportNodes())), L"(|N1|a|b)");
}

TEST_F(cNodesTextTest, WritesTheNumberOfAParentThatHasLeftTheList) {
    const auto tree = TreeOf(L"3;,1,a,A;1,2,b,B;,3,c,C");
    EXPECT_FAILURE(tree->Drag(L"N9", tvwNext, L"N1"), InvalidCall);
    EXPECT_EQ(tree->ExportNodes(), L"3;1,2,b,B;,3,c,C");
    EXPECT_FAILURE(tree->ImportNodes(tree->ExportNodes()), InvalidCall);
    EXPECT_EQ(tree->ExportNodes(), L"3");
}

TEST_F(cNodesTextTest, CutAtEveryPositionLeavesTheWholeRecords) {
    const String text = L"14;,1,01,North;1,2,1,East;,13,02,South;2,14,x,Coast";
    for (std::size_t length = 1; length < text.size(); ++length) {
        const auto tree = TreeOf(L"1;,1,old,OLD");
        const String cut = text.substr(0, length);
        const auto failure = FailureOf([&] { tree->ImportNodes(cut); });
        const String left = tree->ExportNodes();
        if (failure.code == 0)
            EXPECT_EQ(left, cut) << length;
        else
            EXPECT_EQ(left, cut.substr(0, cut.rfind(L';'))) << length;
    }
}

TEST_F(cNodesTextTest, TakesAMillionCharacters) {
    const String longText(1'000'000, L'x');
    const auto tree = TreeOf(L"1;,1," + longText + L"," + longText);
    EXPECT_EQ(tree->Node(1)->Text(), longText);
    EXPECT_FAILURE(tree->ImportNodes(String(1'000'000, L';')), OutOfRange);
    EXPECT_SUCCESS(tree->ImportNodes(L"1;" + String(1'000'000, L',')));
    EXPECT_EQ(tree->ExportNodes(), L"1;,,,");
    EXPECT_FAILURE(tree->ImportNodes(String(1'000'000, L'9')), Overflow);
}

} // namespace kestrel::test
