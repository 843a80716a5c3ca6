#include "hosts/common/Nearest.h"

#include <gtest/gtest.h>

using hosts::EditDistance;
using hosts::NearestHint;
using hosts::NearestOf;

TEST(NearestTest, DistancesCountWhatMustBeChanged) {
    EXPECT_EQ(EditDistance(L"", L""), 0U);
    EXPECT_EQ(EditDistance(L"North", L"north"), 0U);
    EXPECT_EQ(EditDistance(L"Nroth", L"North"), 1U) << "neighbours are swapped";
    EXPECT_EQ(EditDistance(L"Noth", L"North"), 1U);
    EXPECT_EQ(EditDistance(L"Norrth", L"North"), 1U);
    EXPECT_EQ(EditDistance(L"Nerth", L"North"), 1U);
    EXPECT_EQ(EditDistance(L"kitten", L"sitting"), 3U);
    EXPECT_EQ(EditDistance(L"abc", L""), 3U);
}

TEST(NearestTest, OnlyWhatIsNearIsNamed) {
    const std::vector<std::wstring> regions = {L"North", L"South", L"East", L"West"};
    EXPECT_EQ(NearestOf(L"Nroth", regions), L"North");
    EXPECT_EQ(NearestOf(L"SOUTH", regions), L"South");
    EXPECT_EQ(NearestOf(L"Est", regions), L"East") << "the first of two";
    EXPECT_EQ(NearestOf(L"Nowhere", regions), std::nullopt);
    EXPECT_EQ(NearestOf(L"", regions), std::nullopt);
    EXPECT_EQ(NearestOf(L"x", {L"y"}), std::nullopt) << "nothing of it is left";
    EXPECT_EQ(NearestHint(L"Nroth", regions), L"; nearest: 'North'");
    EXPECT_EQ(NearestHint(L"Nowhere", regions), L"");
}
