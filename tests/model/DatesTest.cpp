#include <limits>

#include <gtest/gtest.h>

#include "common/Dates.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

struct DateCase {
    Date date;
    const wchar_t* text;
};

const DateCase DateCases[] = {
    {0, L"1899-12-30 00:00:00"},       {1, L"1899-12-31 00:00:00"},
    {2, L"1900-01-01 00:00:00"},       {-1, L"1899-12-29 00:00:00"},
    {-1.25, L"1899-12-29 06:00:00"},   {0.5, L"1899-12-30 12:00:00"},
    {36526, L"2000-01-01 00:00:00"},   {36585, L"2000-02-29 00:00:00"},
    {36586, L"2000-03-01 00:00:00"},   {45418.297326388889, L"2024-05-06 07:08:09"},
    {-657434, L"0100-01-01 00:00:00"}, {2958465, L"9999-12-31 00:00:00"},
};

} // namespace

TEST(DatesTest, WritesDateAndTime) {
    for (const auto& row : DateCases)
        EXPECT_EQ(DateText(row.date), row.text) << row.date;
}

TEST(DatesTest, ReadsBackWhatItWrote) {
    const StandIns standIns;
    for (const auto& row : DateCases) {
        const auto date = TheText().ParseDate(row.text);
        ASSERT_TRUE(date.has_value()) << row.date;
        EXPECT_EQ(DateText(*date), row.text);
    }
}

TEST(DatesTest, TakesWhatIsNoDateForDayZero) {
    for (const double date : {1e9, -1e9, std::numeric_limits<double>::infinity(), -657435.0, 2958466.0,
                              std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(DateText(date), L"1899-12-30 00:00:00") << date;
}

TEST(DatesTest, WritesHoursAndMinutes) {
    EXPECT_EQ(TimeText(0), L"00:00");
    EXPECT_EQ(TimeText(0.25), L"06:00");
    EXPECT_EQ(TimeText(45418 + 7.0 / 24 + 8.0 / 1440), L"07:08");
    EXPECT_EQ(TimeText(23.0 / 24 + 59.0 / 1440), L"23:59");
    EXPECT_EQ(TimeText(std::numeric_limits<double>::quiet_NaN()), L"00:00");
}

TEST(DatesTest, KeepsEveryMinuteOfADay) {
    const StandIns standIns;
    for (int minute = 0; minute < 1440; ++minute) {
        const String text = TimeText(minute / 1440.0);
        EXPECT_EQ(TimeText(*TheText().ParseDate(text)), text);
        EXPECT_EQ(text.substr(0, 2), (minute / 60 < 10 ? L"0" : L"") + ToText(minute / 60));
    }
}

} // namespace kestrel::test
