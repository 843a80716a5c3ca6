#include "ledger/core/formulas/Calendar.h"

#include <gtest/gtest.h>

using ledger::Calendar;
using ledger::DateOfDay;
using ledger::DateTime;
using ledger::DayNumber;
using ledger::IsoWeekOf;

namespace {

DateTime Day(int year, int month, int day, int hour = 0, int minute = 0) { return {year, month, day, hour, minute, 0}; }

} // namespace

TEST(CalendarTest, DaysAreCountedThereAndBack) {
    EXPECT_EQ(DayNumber(Day(1970, 1, 1)), 0);
    EXPECT_EQ(DayNumber(Day(2000, 3, 1)), 11'017);
    EXPECT_EQ(DayNumber(Day(1969, 12, 31)), -1);
    for (long number = DayNumber(Day(1000, 1, 1)); number <= DayNumber(Day(9999, 12, 31)); ++number)
        ASSERT_EQ(DayNumber(DateOfDay(number)), number);
}

TEST(CalendarTest, IsoWeeksAreThoseOfThePublishedTable) {
    const struct {
        DateTime date;
        int year;
        int week;
    } rows[] = {{Day(1977, 1, 1), 1976, 53},  {Day(1977, 1, 2), 1976, 53},   {Day(1977, 12, 31), 1977, 52},
                {Day(1978, 1, 1), 1977, 52},  {Day(1978, 1, 2), 1978, 1},    {Day(1978, 12, 31), 1978, 52},
                {Day(1979, 1, 1), 1979, 1},   {Day(1979, 12, 30), 1979, 52}, {Day(1979, 12, 31), 1980, 1},
                {Day(1980, 1, 1), 1980, 1},   {Day(1980, 12, 28), 1980, 52}, {Day(1980, 12, 29), 1981, 1},
                {Day(1980, 12, 31), 1981, 1}, {Day(1981, 1, 1), 1981, 1},    {Day(1981, 12, 31), 1981, 53},
                {Day(1982, 1, 3), 1981, 53}};
    for (const auto& row : rows) {
        const auto week = IsoWeekOf(row.date);
        EXPECT_EQ(week.year, row.year) << DayNumber(row.date);
        EXPECT_EQ(week.week, row.week) << DayNumber(row.date);
    }
}

TEST(CalendarTest, APeriodIsNamedAfterTheDayOnWhichItBegins) {
    const Calendar calendar({4, 6, 2, 0}); // the British tax year
    EXPECT_EQ(calendar.Year(Day(2026, 4, 5)), 2025);
    EXPECT_EQ(calendar.Year(Day(2026, 4, 6)), 2026);
    EXPECT_EQ(calendar.EndYear(Day(2026, 4, 6)), 2027);
    EXPECT_EQ(calendar.Month(Day(2026, 4, 6)), 1);
    EXPECT_EQ(calendar.Month(Day(2026, 4, 5)), 12);
    EXPECT_EQ(calendar.CalendarMonth(Day(2026, 4, 5)), 3);
    EXPECT_EQ(calendar.Day(Day(2026, 4, 5)), 31);
    EXPECT_EQ(calendar.Day(Day(2026, 4, 6)), 1);
    EXPECT_EQ(calendar.DayOfYear(Day(2026, 4, 5)), 365);
    EXPECT_EQ(calendar.Quarter(Day(2026, 7, 5)), 1);
    EXPECT_EQ(calendar.Quarter(Day(2026, 7, 6)), 2);
    EXPECT_EQ(calendar.Half(Day(2026, 10, 6)), 2);
}

TEST(CalendarTest, AYearOfTheCalendarEndsInItself) {
    const Calendar calendar;
    for (const int month : {1, 6, 12})
        EXPECT_EQ(calendar.EndYear(Day(2026, month, 28)), 2026);
    EXPECT_EQ(Calendar({1, 2, 2, 0}).EndYear(Day(2026, 6, 1)), 2027) << "it ends on the first of January";
}

TEST(CalendarTest, WhatIsBeforeTheDaysBeginningBelongsToTheDayBefore) {
    const Calendar calendar({1, 1, 2, 6 * 60 + 30});
    EXPECT_EQ(calendar.Day(Day(2026, 5, 2, 6, 29)), 1);
    EXPECT_EQ(calendar.Day(Day(2026, 5, 2, 6, 30)), 2);
    EXPECT_EQ(calendar.Year(Day(2026, 1, 1, 0, 0)), 2025);
    EXPECT_EQ(calendar.DayOfYear(Day(2025, 1, 1, 0, 0)), 366);
}

TEST(CalendarTest, WeeksBeginOnTheRulesDay) {
    for (int begin = 0; begin <= 7; ++begin) {
        const Calendar calendar({1, 1, begin, 0});
        const int first = begin == 0 ? 2 : begin;
        for (int day = 1; day <= 14; ++day) { // 2026-03-01 is a Sunday
            const int weekDay = (day - 1) % 7 + 1;
            EXPECT_EQ(calendar.WeekDay(Day(2026, 3, day)), (weekDay - first + 7) % 7 + 1) << begin << " " << day;
        }
    }
}

TEST(CalendarTest, TheFirstWeekIsTheOneWithTheYearsFirstDay) {
    const Calendar calendar; // 2026-01-01 is a Thursday
    EXPECT_EQ(calendar.Week(Day(2026, 1, 4)), 1);
    EXPECT_EQ(calendar.Week(Day(2026, 1, 5)), 2);
    EXPECT_EQ(calendar.Week(Day(2026, 12, 31)), 53);
    EXPECT_EQ(calendar.Week(Day(2027, 1, 1)), 1);
    EXPECT_EQ(Calendar({1, 1, 5, 0}).Week(Day(2026, 1, 8)), 2);
}

TEST(CalendarTest, RunningWeeksGoOnOverYears) {
    const Calendar calendar;
    EXPECT_EQ(calendar.RunningWeek(Day(2026, 12, 31), Day(2026, 1, 5)), 52);
    EXPECT_EQ(calendar.RunningWeek(Day(2027, 1, 1), Day(2026, 1, 5)), 52);
    EXPECT_EQ(calendar.RunningWeek(Day(2027, 1, 4), Day(2026, 1, 5)), 53);
    EXPECT_EQ(calendar.RunningWeek(Day(2026, 1, 11), Day(2026, 1, 7)), 1);
    EXPECT_EQ(calendar.RunningWeek(Day(2026, 1, 4), Day(2026, 1, 5)), 0);
}
