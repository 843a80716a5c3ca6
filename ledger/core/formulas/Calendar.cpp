#include "ledger/core/formulas/Calendar.h"

namespace ledger {

namespace {

constexpr int Monday = 2;
constexpr int WeekDayOfDayZero = 5; // 1970-01-01 was a Thursday

long RoundedDown(long number, long by) { return (number >= 0 ? number : number - by + 1) / by; }

long DayNumberOf(int year, int month, int day) { return DayNumber({year, month, day}); }

} // namespace

Calendar::Calendar(const Separators& separators) : mvarSeparators(separators) {
    if (mvarSeparators.week == 0) mvarSeparators.week = Monday;
}

long Calendar::DayOf(const DateTime& date) const {
    return DayNumber(date) - (date.hour * 60 + date.minute < mvarSeparators.minute ? 1 : 0);
}

DateTime Calendar::MonthBegin(const DateTime& date) const {
    DateTime begin = DateOfDay(DayOf(date));
    if (begin.day < mvarSeparators.month && --begin.month == 0) {
        begin.month = 12;
        --begin.year;
    }
    begin.day = mvarSeparators.month;
    return begin;
}

int Calendar::Year(const DateTime& date) const {
    const DateTime month = MonthBegin(date);
    return month.year - (month.month < mvarSeparators.year ? 1 : 0);
}

int Calendar::EndYear(const DateTime& date) const {
    return DateOfDay(DayNumberOf(Year(date) + 1, mvarSeparators.year, mvarSeparators.month) - 1).year;
}

long Calendar::YearBegin(const DateTime& date) const {
    return DayNumberOf(Year(date), mvarSeparators.year, mvarSeparators.month);
}

int Calendar::Month(const DateTime& date) const { return (MonthBegin(date).month - mvarSeparators.year + 12) % 12 + 1; }

int Calendar::DayOfYear(const DateTime& date) const { return static_cast<int>(DayOf(date) - YearBegin(date)) + 1; }

int Calendar::Day(const DateTime& date) const {
    return static_cast<int>(DayOf(date) - DayNumber(MonthBegin(date))) + 1;
}

// Weeks counted from the one with 1970-01-01.
long Calendar::WeekOfDay(long day) const {
    return RoundedDown(day + (WeekDayOfDayZero - mvarSeparators.week + 7) % 7, 7);
}

int Calendar::Week(const DateTime& date) const {
    return static_cast<int>(WeekOfDay(DayOf(date)) - WeekOfDay(YearBegin(date))) + 1;
}

int Calendar::WeekDay(const DateTime& date) const {
    const long day = DayOf(date) + (WeekDayOfDayZero - mvarSeparators.week + 7) % 7;
    return static_cast<int>(day - RoundedDown(day, 7) * 7) + 1;
}

int Calendar::RunningWeek(const DateTime& date, const DateTime& first) const {
    return static_cast<int>(WeekOfDay(DayOf(date)) - WeekOfDay(DayNumber(first))) + 1;
}

// A week belongs to the year of its Thursday.
IsoWeek IsoWeekOf(const DateTime& date) {
    const long day = DayNumber(date);
    const long thursday = RoundedDown(day + 3, 7) * 7;
    const int year = DateOfDay(thursday).year;
    return {year, static_cast<int>((thursday - DayNumberOf(year, 1, 1)) / 7) + 1};
}

} // namespace ledger
