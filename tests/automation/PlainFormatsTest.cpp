// Formats that do not go through the platform's parser, or went through it before, say what it says. Runs in three
// languages: see CMakeLists.txt.
#include "platform/PlainFormats.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/WindowsText.h"

namespace kestrel::test {

namespace {

// Digits of every length, numbers in other forms, dates in and out of the calendar, other texts. None ends in the "a"
// of a time: Wine reads what happens to stand behind it in memory, and answers now this, now that.
std::vector<String> Values() {
    std::vector<String> values{L"",     L" ",   L"0",  L"00",  L"-1",  L"+1",  L" 12", L"12 ", L"1.5", L"1,5",   L"1e3",
                               L"&H10", L"(5)", L"$5", L"abc", L"12b", L"a12", L"-",   L".",   L"A",   L"\u00E4"};
    String digits;
    for (int length = 1; length <= 15; ++length) {
        digits += static_cast<wchar_t>(L'0' + length % 10);
        for (const String& value : {digits, String(1, L'0') + digits, String(digits.size(), L'9'), L"000" + digits})
            values.push_back(value);
    }
    for (const wchar_t* year : {L"1000", L"1582", L"1899", L"1900", L"1999", L"2000", L"2024", L"2025", L"9999"})
        for (const wchar_t* day :
             {L"-01-01", L"-02-28", L"-02-29", L"-04-30", L"-04-31", L"-10-09", L"-12-31", L"-13-01", L"-00-10",
              L"-1-2", L"-06-05 07:08:09", L"-12-31 23:59:59", L"-01-01 00:00:00", L"-06-05 24:00:00",
              L"-06-05 07:60:00", L"-06-05 7:08:09", L"-06-05T07:08:09"})
            values.push_back(String(year) + day);
    for (const wchar_t* text : {L"0999-01-01",
                                L"0100-02-03",
                                L"24-05-06",
                                L"2024/05/06",
                                L"06.05.2024",
                                L"5/6/2024",
                                L"20240506",
                                L"2024-0506",
                                L"07:08",
                                L"2024-05",
                                L"May 6, 2024",
                                L"6. Mai 2024",
                                L"1000000000000000000000",
                                L"-2024-05-06",
                                L"2024-05-0b",
                                L"12:30:45",
                                L"23:59",
                                L"1.234,5",
                                L"true",
                                L"null"})
        values.emplace_back(text);
    return values;
}

// Zeros and other digit placeholders, date letters in many runs and orders, texts, and what mixes them.
std::vector<String> Formats() {
    std::vector<String> formats{
        L"",         L"-",  L"--",    L"@@@@",           L">",          L"<",     L"!@@",     L"\\0",    L"\\N000",
        L"\"x\"000", L"0%", L"0E+00", L"General Number", L"Short Date", L"0;(0)", L"0;;zero", L"@;empty"};
    String parts; // more than the platform prepares
    while (parts.size() < 400)
        parts += L"d/m/";
    formats.push_back(parts);
    for (std::size_t zeros = 1; zeros <= 20; ++zeros)
        for (const wchar_t* rest : {L"", L"#", L".0", L"-0"})
            formats.push_back(String(zeros, L'0') + rest);
    for (const wchar_t* first : {L"", L"yyyy", L"yy", L"y", L"mm", L"m", L"d", L"dd", L"ddd", L"mmm", L"w", L"YYYY"})
        for (const wchar_t* second : {L"mm", L"-mm", L"/mm", L"m", L"dd", L"-dd", L"yy", L"-yyyy"})
            for (const wchar_t* third : {L"", L"dd", L"-d"}) {
                const String format = String(first) + second + third;
                // The long date: in Thai, Wine ends its era with a character that nobody wrote there.
                if (format.find(L"dddddd") == String::npos) formats.push_back(format);
            }
    return formats;
}

} // namespace

TEST(PlainFormatsTest, SayWhatThePlatformSays) {
    const WindowsText text;
    const auto values = Values();
    const auto formats = Formats();
    ASSERT_GE(values.size(), 200U);
    ASSERT_GE(formats.size(), 300U);
    int plain = 0;
    for (const auto& format : formats)
        for (const auto& value : values) {
            EXPECT_EQ(text.Format(value, format), text.FormatByPlatform(value, format))
                << testing::PrintToString(value) << " " << testing::PrintToString(format);
            plain += PlainlyFormatted(value, format) ? 1 : 0;
        }
    EXPECT_GT(plain, 1000) << "hardly anything is plain"; // dates are not with another calendar
}

TEST(PlainFormatsTest, WhatIsNotPlainIsLeftToThePlatform) {
    for (const auto& [value, format] : {std::pair{L"abc", L"000"},
                                        {L"", L"0"},
                                        {L"1.5", L"0"},
                                        {L"-1", L"00"},
                                        {L"2024-05-06", L"hh"},
                                        {L"2024-02-30", L"yyyy"},
                                        {L"2024-05-06", L"y"},
                                        {L"42", L"#0"},
                                        {L"42", L""},
                                        {L"2024-05-06 01:02:03", L"yyyyhh"},
                                        {L"2024-05-06 01:02", L"yyyy"},
                                        {L"2024-05-06 25:02:03", L"yyyy"}})
        EXPECT_EQ(PlainlyFormatted(value, format), std::nullopt) << testing::PrintToString(String(value));
}

} // namespace kestrel::test
