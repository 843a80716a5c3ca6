#include "ledger/core/Outlook.h"

#include <gtest/gtest.h>

#include "ledger/core/UtcTime.h"

namespace {

using ledger::NumberBand;
using ledger::Outlook;

const std::chrono::sys_seconds Now = std::chrono::sys_days(std::chrono::year(2024) / 3 / 1);

NumberBand BandBetween(std::int64_t start, std::int64_t highest) {
    NumberBand band;
    band.name = L"Number";
    band.start = start;
    band.highest = highest;
    return band;
}

Outlook At(std::int64_t last, double perDay) {
    return ledger::OutlookOf({L"Number", L"???", last, 1, last}, {BandBetween(1, 999)}, perDay, Now).value();
}

TEST(OutlookTest, GoesOnAtThePresentRate) {
    const Outlook outlook = At(99, 9);
    EXPECT_EQ(outlook.left, 900);
    EXPECT_DOUBLE_EQ(outlook.full, 99.0 / 999);
    ASSERT_TRUE(outlook.fullAt.has_value());
    EXPECT_EQ(ledger::DateText(*outlook.fullAt), L"2024-06-09") << "a hundred days on";
    EXPECT_EQ(Describe(outlook), L"at 9 a day full on 2024-06-09");
}

TEST(OutlookTest, SaysWhatCannotBeSaid) {
    EXPECT_EQ(Describe(At(999, 5)), L"full");
    EXPECT_EQ(Describe(At(1, 0)), L"at rest: no code in the last 30 days");
    EXPECT_EQ(Describe(At(1, 0.001)), L"at 0.1 a day not full in a hundred years");
    EXPECT_FALSE(ledger::OutlookOf({L"Other", L"???", 1, 1, 1}, {BandBetween(1, 9)}, 1, Now).has_value());
}

TEST(OutlookTest, BandsThatBeginLateAndNumbersBeyondTheEndKeepWithinBounds) {
    const auto late = ledger::OutlookOf({L"Number", L"???", 1, 500, 500}, {BandBetween(500, 509)}, 1, Now).value();
    EXPECT_DOUBLE_EQ(late.full, 0.1);
    const auto beyond = ledger::OutlookOf({L"Number", L"???", 1, 800, 800}, {BandBetween(500, 509)}, 1, Now).value();
    EXPECT_DOUBLE_EQ(beyond.full, 1);
    EXPECT_EQ(beyond.left, 0);
}

} // namespace
