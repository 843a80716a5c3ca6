// The calendar that a rule numbers by: its own beginnings of the year, the month, the week and the day.
//
// A period is named after the day on which it begins: where the year begins in April, 2017-03-31 belongs to 2016.
#pragma once

#include "ledger/core/formulas/Dates.h"

namespace ledger {

struct Separators {
    int year = 1;   // the month in which a year begins, 1 to 12
    int month = 1;  // the day on which a month begins, 1 to 28
    int week = 2;   // the day on which a week begins, 1 (Sunday) to 7; 0 is as good as 2
    int minute = 0; // of the day at which the next day begins, 0 to 1439: what is earlier belongs to the day before
};

class Calendar {
  public:
    Calendar() = default;
    explicit Calendar(const Separators& separators);

    // The calendar year in which the year begins, and the one in which it ends.
    [[nodiscard]] int Year(const DateTime& date) const;
    [[nodiscard]] int EndYear(const DateTime& date) const;
    // The year's halves, quarters, months, weeks and days count from 1 at its beginning; its first week may be short.
    [[nodiscard]] int Half(const DateTime& date) const { return (Month(date) - 1) / 6 + 1; }
    [[nodiscard]] int Quarter(const DateTime& date) const { return (Month(date) - 1) / 3 + 1; }
    [[nodiscard]] int Month(const DateTime& date) const;
    [[nodiscard]] int Week(const DateTime& date) const;
    [[nodiscard]] int DayOfYear(const DateTime& date) const;
    // The calendar month in which the month begins, 1 for January.
    [[nodiscard]] int CalendarMonth(const DateTime& date) const { return MonthBegin(date).month; }
    // Of the month, from 1.
    [[nodiscard]] int Day(const DateTime& date) const;
    // Of the week, from 1.
    [[nodiscard]] int WeekDay(const DateTime& date) const;
    // Weeks that never begin anew; the one with the day `first` is 1, and those before it are 0 and below.
    [[nodiscard]] int RunningWeek(const DateTime& date, const DateTime& first) const;

  private:
    [[nodiscard]] long DayOf(const DateTime& date) const;
    [[nodiscard]] DateTime MonthBegin(const DateTime& date) const;
    [[nodiscard]] long YearBegin(const DateTime& date) const;
    [[nodiscard]] long WeekOfDay(long day) const;

    Separators mvarSeparators;
};

// ISO 8601's week of a day, 1 to 53, and the year that it belongs to; no rule's own calendar changes them.
struct IsoWeek {
    int year = 0;
    int week = 0;
};
[[nodiscard]] IsoWeek IsoWeekOf(const DateTime& date);

} // namespace ledger
