// What a tree knows by its indexes is what one pass over its list says, whatever happens to it.
#include "relations/TreeIndexes.h"

#include "support/RandomTrees.h"
#include "support/StandIns.h"

namespace kestrel::test {

class TreeIndexesTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(TreeIndexesTest, SayWhatAPassSaysOfPlainTexts) {
    int found = 0;
    int refused = 0;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        RandomTree tree(seed, {L"a", L"A", L"b", L"x-"});
        tree.Run(300);
        found += tree.Found();
        refused += tree.Refused();
    }
    EXPECT_GT(found, 500);
    EXPECT_GT(refused, 20);
}

TEST_F(TreeIndexesTest, SayWhatAPassSaysOfAnyText) {
    for (unsigned seed = 1; seed <= 4; ++seed)
        RandomTree(seed, {L"a", L"A", L"\uFF21", L"\u00AD", L"\u00E4", L"\u00C4", L""}).Run(300);
}

// Each text is noted anew at each change; what is out of date must not add up.
TEST_F(TreeIndexesTest, FollowTextsThatChangeAgainAndAgain) {
    const auto tree = TreeOf(FlatText(100));
    for (int round = 0; round < 2'000; ++round) {
        const auto node = tree->Node(1 + round % 100);
        node->SetText(L"r" + ToText(round));
        String value = L"R" + ToText(round);
        EXPECT_EQ(tree->Conversion(csCodeToValue, value), node->Key());
    }
}

// What a text was before and will be again costs no pass: ten thousand siblings, and as many changes, would take
// minutes.
TEST_F(TreeIndexesTest, FollowTextsThatChangeToAndFro) {
    const auto tree = TreeOf(FlatText(10'000));
    for (int round = 0; round < 3; ++round)
        for (const wchar_t* prefix : {L"d", L"D", L"c"})
            for (std::int32_t position = 1; position <= tree->Count(); ++position)
                tree->Node(position)->SetText(prefix + ToText(position));
    for (int change = 0; change < 20'000; ++change)
        tree->Node(5'000)->SetText(change % 2 == 0 ? L"this" : L"that");
    String value = L"THAT";
    EXPECT_EQ(tree->Conversion(csCodeToValue, value), L"N5000");
    EXPECT_FAILURE(tree->Conversion(csCodeToValue, value = L"this"), NoRelatedRelation);
    EXPECT_FAILURE(tree->Node(L"N1")->SetText(L"that"), SameCode);
    EXPECT_EQ(tree->Conversion(csCodeToValue, value = L"C10000"), L"N10000");
}

TEST_F(TreeIndexesTest, KeepTheFirstOfSeveralThatAreAlike) {
    const auto tree = TreeOf(FlatText(100));
    tree->Add({}, tvwLast, L"same", L"first");
    tree->Add({}, tvwLast, L"SAME", L"second");
    const auto same = [&tree] {
        String value = L"Same";
        return tree->Conversion(csCodeToValue, value);
    };
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(same(), L"N101");
    tree->Node(L"N1")->SetText(L"sAME");
    EXPECT_EQ(same(), L"N1");
    tree->Node(L"N1")->SetText(L"c1");
    EXPECT_EQ(same(), L"N101");
    tree->Add(1, tvwFirst, L"samE", L"third");
    EXPECT_EQ(same(), tree->Node(1)->Key());
    tree->Remove(1);
    EXPECT_EQ(same(), L"N101");
    tree->Drag(L"N101", tvwPrevious, L"N102");
    EXPECT_EQ(same(), L"N102");
}

// A node that has left its tree is not found there, whatever it is called afterwards.
TEST_F(TreeIndexesTest, ForgetANodeThatLeft) {
    const auto tree = TreeOf(FlatText(100));
    String value = L"c50";
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(tree->Conversion(csCodeToValue, value = L"c50"), L"N50");
    const auto node = tree->Node(L"N50");
    tree->Remove(L"N50");
    for (int i = 0; i < 5; ++i)
        EXPECT_FAILURE(tree->Conversion(csCodeToValue, value = L"c50"), NoRelatedRelation);
    node->SetText(L"other");
    EXPECT_FAILURE(tree->Conversion(csCodeToValue, value = L"other"), NoRelatedRelation);
}

} // namespace kestrel::test
