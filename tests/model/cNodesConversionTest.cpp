#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

// What a conversion returned and what it left in Value.
struct Converted {
    String key;
    String value;
    friend bool operator==(const Converted&, const Converted&) = default;
};

Converted Convert(const cNodes& tree, int style, String value, const IndexKey& under = {}) {
    const String key = tree.Conversion(style, value, under);
    return {key, value};
}

} // namespace

class cNodesConversionTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<cNodes> mvarTree = TreeOf(L"5;,1,A,North;1,2,1,East;1,3,2,West;,4,B,South;4,5,1,Coast");
};

TEST_F(cNodesConversionTest, FindsTheValueOfACode) {
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, L"A"), (Converted{L"N1", L"North"}));
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, L"B"), (Converted{L"N4", L"South"}));
}

TEST_F(cNodesConversionTest, FindsTheCodeOfAValue) {
    EXPECT_EQ(Convert(*mvarTree, csValueToCode, L"South"), (Converted{L"N4", L"B"}));
}

TEST_F(cNodesConversionTest, ComparesWithoutRegardToCase) {
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, L"a"), (Converted{L"N1", L"North"}));
    EXPECT_EQ(Convert(*mvarTree, csValueToCode, L"SOUTH"), (Converted{L"N4", L"B"}));
}

TEST_F(cNodesConversionTest, TakesTheFirstOfSeveralThatMatch) {
    const auto tree = TreeOf(L"2;,1,a,first;,2,A,second");
    EXPECT_EQ(Convert(*tree, csCodeToValue, L"A"), (Converted{L"N1", L"first"}));
}

TEST_F(cNodesConversionTest, LooksOnlyBelowTheNodeNamed) {
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, L"1", L"N1"), (Converted{L"N2", L"East"}));
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, L"1", L"N4"), (Converted{L"N5", L"Coast"}));
    EXPECT_EQ(Convert(*mvarTree, csValueToCode, L"West", 1), (Converted{L"N3", L"2"}));
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"2", L"N4"), NoRelatedRelation);
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"A", L"N1"), NoRelatedRelation);
}

TEST_F(cNodesConversionTest, LooksOnlyInTheFirstLayerWhenNoNodeIsNamed) {
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"1"), NoRelatedRelation);
}

TEST_F(cNodesConversionTest, WalksTheLayersKeyByKey) {
    String value = L"north";
    const String key = mvarTree->Conversion(csValueToCode, value);
    EXPECT_EQ(value, L"A");
    value = L"west";
    EXPECT_EQ(mvarTree->Conversion(csValueToCode, value, key), L"N3");
    EXPECT_EQ(value, L"2");
}

TEST_F(cNodesConversionTest, BelowANodeWithoutChildrenFindsNothing) {
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"1", L"N2"), NoRelatedRelation);
}

TEST_F(cNodesConversionTest, LeavesTheValueWhenItFails) {
    String value = L"Z";
    EXPECT_FAILURE(mvarTree->Conversion(csCodeToValue, value), NoRelatedRelation);
    EXPECT_EQ(value, L"Z");
    EXPECT_FAILURE(mvarTree->Conversion(9, value), InvalidParameter);
    EXPECT_EQ(value, L"Z");
}

TEST_F(cNodesConversionTest, RefusesAnUnknownDirectionFirstThenAnEmptyValueThenAnEmptyTree) {
    const auto empty = Make<cNodes>();
    for (const int style : {-1, 2, 99})
        EXPECT_FAILURE(Convert(*empty, style, L""), InvalidParameter) << style;
    EXPECT_FAILURE(Convert(*empty, csCodeToValue, L""), InvalidParameter);
    EXPECT_FAILURE(Convert(*empty, csCodeToValue, L"A"), NoRelations);
    EXPECT_FAILURE(Convert(*empty, csValueToCode, L"A", L"N1"), NoRelations);
}

TEST_F(cNodesConversionTest, RefusesAnUnknownNode) {
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"A", L"N9"), InvalidCall);
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"A", 0), OutOfRange);
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, L"A", 6), OutOfRange);
}

TEST_F(cNodesConversionTest, CanGiveAnEmptyText) {
    const auto tree = TreeOf(L"1;,1,a,");
    EXPECT_EQ(Convert(*tree, csCodeToValue, L"a"), (Converted{L"N1", L""}));
}

TEST_F(cNodesConversionTest, TakesAMillionCharacters) {
    const String longText(1'000'000, L'x');
    EXPECT_FAILURE(Convert(*mvarTree, csCodeToValue, longText), NoRelatedRelation);
    mvarTree->Node(L"N4")->SetText(longText);
    EXPECT_EQ(Convert(*mvarTree, csCodeToValue, longText), (Converted{L"N4", L"South"}));
}

} // namespace kestrel::test
