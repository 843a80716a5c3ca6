#include "ledger/core/UtcTime.h"

#include <gtest/gtest.h>

namespace {

using ledger::DateText;
using ledger::TimeOf;

TEST(UtcTimeTest, ReadsTimesAndTheirBeginnings) {
    const std::chrono::sys_seconds day = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29);
    EXPECT_EQ(TimeOf(L"2024-02-29T00:00:00Z"), day);
    EXPECT_EQ(TimeOf(L"2024-02-29T23:59:59Z"), day + std::chrono::seconds(86'399));
    EXPECT_EQ(TimeOf(L"2024-02-29"), day);
    EXPECT_EQ(TimeOf(L"2024-02-29T07"), day + std::chrono::hours(7));
    EXPECT_EQ(TimeOf(L"2024-02-29T07:08"), day + std::chrono::minutes(7 * 60 + 8));
    EXPECT_EQ(TimeOf(L"2024-02"), day - std::chrono::days(28));
    EXPECT_EQ(TimeOf(L"2024"), day - std::chrono::days(59));
}

TEST(UtcTimeTest, TakesNothingElse) {
    for (const wchar_t* text : {L"", L"24", L"2024-", L"2024-1", L"2024-13", L"2024-00", L"2023-02-29", L"2024-02-30",
                                L"2024-02-29T24", L"2024-02-29T00:60", L"2024-02-29T00:00:60Z", L"2024-02-29 00:00:00Z",
                                L"2024-02-29T00:00:00z", L"2024-02-29T00:00:00ZZ", L"31.05.2024", L"yyyy-mm-dd"})
        EXPECT_EQ(TimeOf(text), std::nullopt) << testing::PrintToString(std::wstring(text));
}

TEST(UtcTimeTest, WritesDates) {
    for (const wchar_t* text : {L"2024-02-29", L"0999-12-31", L"1970-01-01", L"9999-12-31"})
        EXPECT_EQ(DateText(TimeOf(text).value()), text);
}

} // namespace
