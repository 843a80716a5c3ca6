#include "common/Dates.h"

#include <cmath>
#include <cstdint>

namespace kestrel {

namespace {

constexpr std::int64_t SecondsOfDay = 86400;
constexpr Date FirstDay = -657434; // 1 January 100
constexpr Date LastDay = 2958465;  // 31 December 9999

struct Moment {
    std::int64_t day = 0; // since 30 December 1899
    std::int64_t second = 0;
};

// The fraction of a date is the time of day also before day 0.
Moment ToMoment(Date date) {
    if (!(date > FirstDay - 1 && date < LastDay + 1)) return {}; // no number fails the test as well
    const double day = std::trunc(date);
    const auto second = static_cast<std::int64_t>(std::llround(std::abs(date - day) * SecondsOfDay));
    return {static_cast<std::int64_t>(day) + second / SecondsOfDay, second % SecondsOfDay};
}

struct Day {
    std::int64_t year;
    std::int64_t month;
    std::int64_t day;
};

// Years are counted from 1 March, so that the leap day is a year's last day.
Day ToDay(std::int64_t number) {
    constexpr std::int64_t daysOfEra = 146097; // 400 years
    const auto days = number + 693899;         // since 1 March of year 0
    const auto era = days / daysOfEra;
    const auto dayOfEra = days % daysOfEra;
    const auto yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (daysOfEra - 1)) / 365;
    const auto dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const auto monthFromMarch = (5 * dayOfYear + 2) / 153;
    const auto month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

String Padded(std::int64_t number, std::size_t digits) {
    const String text = ToText(number);
    return String(text.size() < digits ? digits - text.size() : 0, L'0') + text;
}

String HoursAndMinutes(std::int64_t second) { return Padded(second / 3600, 2) + L":" + Padded(second / 60 % 60, 2); }

} // namespace

String TimeText(Date date) { return HoursAndMinutes(ToMoment(date).second); }

String DateText(Date date) {
    const auto moment = ToMoment(date);
    const auto day = ToDay(moment.day);
    return Padded(day.year, 4) + L"-" + Padded(day.month, 2) + L"-" + Padded(day.day, 2) + L" " +
           HoursAndMinutes(moment.second) + L":" + Padded(moment.second % 60, 2);
}

} // namespace kestrel
