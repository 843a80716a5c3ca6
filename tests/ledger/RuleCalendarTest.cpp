#include "ledger/core/RuleCalendar.h"

#include <gtest/gtest.h>

using ledger::CalendarOf;
using ledger::LoadWithWeek;
using ledger::WeekOf;

namespace {

// The rule's lines before and behind one band, whose own lines look like entries.
std::wstring Rule(const std::wstring& before, const std::wstring& behind = {}) {
    return L"#####02\r0\r" + before + L"\r16\r0=Text\r1=0\r11=5\r3=X\r12=6\r17" + behind;
}

} // namespace

TEST(RuleCalendarTest, TheWeekIsReadFromTheDefinition) {
    EXPECT_EQ(WeekOf(Rule(L"11\r1")), 1);
    EXPECT_EQ(WeekOf(Rule(L"11\r0\r12\r3")), 0);
    EXPECT_EQ(WeekOf(Rule(L"12\r3\r13\r4", L"\r11\r7")), 7) << "behind the bands";
    EXPECT_EQ(WeekOf(Rule(L"12\r11\r13\r5")), std::nullopt) << "a value that looks like its number";
    EXPECT_EQ(WeekOf(Rule(L"12\r3")), std::nullopt) << "a band's line is none";
    EXPECT_EQ(WeekOf(Rule(L"11\r8")), std::nullopt);
    EXPECT_EQ(WeekOf(Rule(L"11\r2x")), std::nullopt);
    for (const wchar_t* text : {L"", L"#####", L"#####11", L"#####11\r", L"#####16\r11\r1"})
        EXPECT_EQ(WeekOf(text), std::nullopt) << testing::PrintToString(std::wstring(text));
}

TEST(RuleCalendarTest, TheWeekIsWrittenIntoTheDefinition) {
    EXPECT_EQ(ledger::WithWeek(Rule(L"10\r06:30\r11\r2\r12\r3"), 7), Rule(L"10\r06:30\r11\r7\r12\r3"));
    EXPECT_EQ(ledger::WithWeek(Rule(L"11\r1"), 1), Rule(L"11\r1"));
    EXPECT_EQ(ledger::WithWeek(Rule(L"12\r11"), 3), Rule(L"12\r11", L"\r11\r3")) << "one that said nothing of it";
}

TEST(RuleCalendarTest, TheDaysOfTheWeekHaveTheirNames) {
    EXPECT_EQ(ledger::NameOfWeekDay(1), L"sunday");
    EXPECT_EQ(ledger::NameOfWeekDay(7), L"saturday");
    for (int day = 1; day <= 7; ++day)
        EXPECT_EQ(ledger::WeekDayOf(ledger::NameOfWeekDay(day)), day);
    EXPECT_TRUE(ledger::NameOfWeekDay(0).empty() && ledger::NameOfWeekDay(8).empty());
    EXPECT_EQ(ledger::WeekDayOf(L"sun"), std::nullopt);
}

TEST(RuleCalendarTest, TheWeekThatIsGivenHoldsBeforeThatOfTheText) {
    const hosts::Apartment apartment;
    hosts::Rule rule;
    LoadWithWeek(rule, Rule(L"11\r1"), 7);
    EXPECT_EQ(CalendarOf(rule).WeekDay({2026, 3, 7, 12, 0, 0}), 1) << "a Saturday";
}

TEST(RuleCalendarTest, ARuleIsLoadedWithItsWholeCalendar) {
    const hosts::Apartment apartment;
    hosts::Rule rule;
    LoadWithWeek(rule, Rule(L"10\r06:30\r11\r1\r12\r15\r13\r4"));
    EXPECT_EQ(rule.Component().Get(L"SeparaOfWeek").Number(), 1);
    EXPECT_NE(rule.Definition().find(L"\r11\r1\r12\r15\r13\r4"), std::wstring::npos) << "and written with it";
    const auto calendar = CalendarOf(rule);
    EXPECT_EQ(calendar.Year({2026, 4, 15, 6, 29, 0}), 2025);
    EXPECT_EQ(calendar.Year({2026, 4, 15, 6, 30, 0}), 2026);
    EXPECT_EQ(calendar.WeekDay({2026, 3, 1, 12, 0, 0}), 1) << "a Sunday";
}
