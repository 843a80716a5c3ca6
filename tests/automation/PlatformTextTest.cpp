// Formatting, numbers, dates and comparison as Windows has them. Runs in English and in German: see CMakeLists.txt.
#include "common/Numbers.h"
#include "platform/WindowsText.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace kestrel::test {

namespace {

const WindowsText Platform;

bool HasGermanFormats() { return PRIMARYLANGID(GetUserDefaultLangID()) == LANG_GERMAN; }

struct FormatCase {
    const wchar_t* value;
    const wchar_t* format;
    const wchar_t* english;
    const wchar_t* german;
};

} // namespace

TEST(PlatformTextTest, Format) {
    const FormatCase cases[] = {
        {L"42", L"0000", L"0042", L"0042"},
        {L"0042", L"0", L"42", L"42"},
        {L"42", L"0.00", L"42.00", L"42,00"},
        {L"1234567", L"#,##0", L"1,234,567", L"1.234.567"},
        {L"abc", L">", L"ABC", L"ABC"},
        {L"ABC", L"<", L"abc", L"abc"},
        {L"12", L"@@@@", L"  12", L"  12"},
        {L"2024-05-06", L"yymm", L"2405", L"2405"},
        {L"2024-05-06", L"dd.mm.yyyy", L"06.05.2024", L"06.05.2024"},
        // What cannot be applied leaves the value.
        {L"abc", L"0000", L"abc", L"abc"},
        {L"abc", L"yyyy", L"abc", L"abc"},
        // Every digit stays.
        {L"123456789012345678", L"0", L"123456789012345678", L"123456789012345678"},
        {L"12345678901234567890", L"0000000000000000000000", L"0012345678901234567890", L"0012345678901234567890"},
        {L"000000000000000000042", L"0000", L"0042", L"0042"},
        {L"1234567890123456789012345678", L"0", L"1234567890123456789012345678", L"1234567890123456789012345678"},
    };
    for (const auto& [value, format, english, german] : cases)
        EXPECT_EQ(Platform.Format(value, format), HasGermanFormats() ? german : english)
            << testing::PrintToString(String(value)) << " " << testing::PrintToString(String(format));
}

TEST(PlatformTextTest, Numbers) {
    EXPECT_EQ(Platform.Number(L" 12 "), 12.0);
    EXPECT_EQ(Platform.Number(L"-5"), -5.0);
    EXPECT_EQ(Platform.Number(L"1e3"), 1000.0);
    EXPECT_EQ(Platform.Number(L"1,5"), HasGermanFormats() ? 1.5 : 15.0);
    EXPECT_EQ(Platform.Number(L"1.5"), HasGermanFormats() ? 15.0 : 1.5);
    for (const wchar_t* text : {L"", L" ", L"-", L"12abc", L"abc"})
        EXPECT_EQ(Platform.Number(text), std::nullopt) << testing::PrintToString(String(text));
}

TEST(PlatformTextTest, Dates) {
    EXPECT_EQ(Platform.ParseDate(L"2024-05-06 12:00:00"), 45418.5);
    EXPECT_EQ(Platform.ParseDate(L"06:00"), 0.25);
    EXPECT_EQ(Platform.ParseDate(HasGermanFormats() ? L"06.05.2024" : L"5/6/2024"), 45418.0);
    EXPECT_EQ(Platform.ParseDate(L""), std::nullopt);
    EXPECT_EQ(Platform.ParseDate(L"abc"), std::nullopt);
}

TEST(PlatformTextTest, SameText) {
    const std::pair<const wchar_t*, const wchar_t*> same[] = {
        {L"", L""}, {L"abc", L"ABC"}, {L"a-b_1", L"A-B_1"}, {L"\u00E4", L"\u00C4"}, {L"a\u00E9", L"A\u00C9"}};
    for (const auto& [left, right] : same) {
        EXPECT_TRUE(Platform.SameText(left, right)) << testing::PrintToString(String(left));
        EXPECT_TRUE(Platform.SameText(right, left));
    }
    const std::pair<const wchar_t*, const wchar_t*> different[] = {{L"", L"a"},     {L"a", L"b"},      {L"a", L"ab"},
                                                                   {L"ab", L"a"},   {L"a", L"\u00E4"}, {L"a b", L"ab"},
                                                                   {L"a-b", L"ab"}, {L"1", L"l"}};
    for (const auto& [left, right] : different) {
        EXPECT_FALSE(Platform.SameText(left, right)) << testing::PrintToString(String(left));
        EXPECT_FALSE(Platform.SameText(right, left));
    }
}

// The short cut through printable ASCII must say what the system says, in locales with rules of their own too.
TEST(PlatformTextTest, SameTextAgreesWithTheSystem) {
    constexpr DWORD textComparison = NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH;
    for (const wchar_t* locale : {L"en-US", L"de-DE", L"tr-TR", L"da-DK", L"hu-HU", L"lt-LT", L"ja-JP"})
        for (wchar_t left = L' '; left <= L'~'; ++left)
            for (wchar_t right = L' '; right <= L'~'; ++right) {
                const bool system =
                    CompareStringEx(locale, textComparison, &left, 1, &right, 1, nullptr, nullptr, 0) == CSTR_EQUAL;
                ASSERT_EQ(Platform.SameText({&left, 1}, {&right, 1}), system)
                    << static_cast<int>(left) << " " << static_cast<int>(right);
            }
}

TEST(PlatformTextTest, Case) {
    EXPECT_EQ(Platform.Upper(L"ab\u00E41"), L"AB\u00C41");
    EXPECT_EQ(Platform.Lower(L"AB\u00C41"), L"ab\u00E41");
    EXPECT_EQ(Platform.Upper(L""), L"");
    const String withNul(L"a\0b", 3);
    EXPECT_EQ(Platform.Upper(withNul), String(L"A\0B", 3));
    EXPECT_EQ(Platform.Upper(String(1'000'000, L'x')), String(1'000'000, L'X'));
}

} // namespace kestrel::test
