#include "ledger/core/Series.h"

#include <gtest/gtest.h>

using ledger::Gap;
using ledger::IsLeftOfLeases;
using ledger::Lease;
using ledger::NumberBand;
using ledger::Series;

namespace {

Lease Leased(std::int64_t first, std::int64_t last) {
    Lease lease;
    lease.band = L"Number";
    lease.series = L"A-??";
    lease.first = first;
    lease.last = last;
    lease.grantedTo = last;
    return lease;
}

const std::vector<NumberBand> Bands = {{L"Number", 2, 2, 1, 99, {}}};

Series Counted(std::int64_t first, std::int64_t last) { return {L"Number", L"A-??", 1, first, last}; }

ledger::NumberHeld Held(std::int64_t number) { return {L"Number", L"A-??", number}; }

} // namespace

TEST(SeriesTest, AGapIsLeftOfLeasesWhenTheyCoverAllOfIt) {
    const Gap gap{L"Number", L"A-??", 11, 20};
    EXPECT_TRUE(IsLeftOfLeases(gap, {Leased(1, 20)}));
    EXPECT_TRUE(IsLeftOfLeases(gap, {Leased(11, 20)}));
    EXPECT_TRUE(IsLeftOfLeases(gap, {Leased(1, 12), Leased(13, 30)}));
    EXPECT_TRUE(IsLeftOfLeases(gap, {Leased(1, 15), Leased(5, 12), Leased(14, 20)}));
    EXPECT_FALSE(IsLeftOfLeases(gap, {}));
    EXPECT_FALSE(IsLeftOfLeases(gap, {Leased(1, 19)}));
    EXPECT_FALSE(IsLeftOfLeases(gap, {Leased(12, 20)}));
    EXPECT_FALSE(IsLeftOfLeases(gap, {Leased(1, 12), Leased(14, 30)}));
}

TEST(SeriesTest, LeasesOfOtherSeriesExplainNothing) {
    EXPECT_FALSE(IsLeftOfLeases({L"Number", L"B-??", 11, 20}, {Leased(1, 20)}));
    EXPECT_FALSE(IsLeftOfLeases({L"Other", L"A-??", 11, 20}, {Leased(1, 20)}));
}

TEST(SeriesTest, ASeriesThatBeginsLateMissesWhatComesBefore) {
    EXPECT_FALSE(GapBefore(Held(1), Bands));
    const auto gap = GapBefore(Held(4), Bands);
    ASSERT_TRUE(gap);
    EXPECT_EQ(gap->first, 1);
    EXPECT_EQ(gap->last, 3);
    EXPECT_FALSE(GapBefore(Held(4), {})) << "the rule has no such band any more";
}

TEST(SeriesTest, WhatWasLeftOutGivesNothingAnyMore) {
    Series series = Counted(1, 10);
    series.leftOutTo = 49;
    EXPECT_EQ(series.Next(1, 10), 50);
    EXPECT_EQ(RoomLeft(series, Bands)->left, 50);
    series.leftOutTo = 5;
    EXPECT_EQ(series.Next(1, 10), 20);
    EXPECT_EQ((Series{L"Number", L"A-??"}.Next(7, 10)), 7) << "no number at all";
}

TEST(SeriesTest, ARangeOfOneIsOneNumber) {
    EXPECT_EQ(RangeText(Gap{L"Number", L"A-??", 5, 7}), L"5 to 7");
    EXPECT_EQ(RangeText(Gap{L"Number", L"A-??", 5, 5}), L"5");
}

TEST(SeriesTest, RoomIsWhatTheBandCanStillGive) {
    EXPECT_EQ(RoomLeft(Counted(1, 0), Bands)->percent, 100U);
    EXPECT_EQ(RoomLeft(Counted(1, 90), Bands)->left, 9);
    EXPECT_EQ(RoomLeft(Counted(1, 90), Bands)->percent, 9U);
    EXPECT_EQ(RoomLeft(Counted(1, 99), Bands)->left, 0);
    EXPECT_EQ(RoomLeft(Counted(1, 150), Bands)->left, 0) << "the band was longer once";
    EXPECT_FALSE(RoomLeft(Counted(1, 1), {}));
}
