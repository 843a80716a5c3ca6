#include "ledger/core/formulas/Dates.h"

#include <gtest/gtest.h>

#include "hosts/common/HostError.h"
#include "hosts/common/Utf8.h"

using ledger::DateFormat;
using ledger::FormatsDates;
using ledger::IsoText;

namespace {

std::wstring Read(const DateFormat& format, const wchar_t* text) {
    const auto date = format.Read(text);
    return date ? IsoText(*date) : L"none";
}

} // namespace

TEST(DatesTest, IsoDatesAreRead) {
    const wchar_t* const rows[][2] = {{L"2026-04-12", L"2026-04-12"},
                                      {L"20260412", L"2026-04-12"},
                                      {L" 2026-04-12\t", L"2026-04-12"},
                                      {L"2024-02-29", L"2024-02-29"},
                                      {L"1000-01-01", L"1000-01-01"},
                                      {L"9999-12-31", L"9999-12-31"},
                                      {L"2026-04-12T07:08", L"2026-04-12 07:08:00"},
                                      {L"2026-04-12 07:08:09", L"2026-04-12 07:08:09"},
                                      {L"2026-04-12T07:08:09.125", L"2026-04-12 07:08:09"},
                                      {L"2026-04-12T07:08:09,5Z", L"2026-04-12 07:08:09"},
                                      {L"2026-04-12T23:08:09+02:00", L"2026-04-12 23:08:09"},
                                      {L"2026-04-12T23:08-0530", L"2026-04-12 23:08:00"},
                                      {L"2026-04-12T23:08+02", L"2026-04-12 23:08:00"},
                                      {L"20260412T070809Z", L"2026-04-12 07:08:09"},
                                      {L"20260412T0708", L"2026-04-12 07:08:00"},
                                      {L"2026-04-12T00:00:00Z", L"2026-04-12"}};
    for (const auto& row : rows)
        EXPECT_EQ(Read(DateFormat(), row[0]), row[1]) << testing::PrintToString(std::wstring(row[0]));
}

TEST(DatesTest, WhatIsNoIsoDateIsNone) {
    for (const wchar_t* text : {L"",
                                L" ",
                                L"2026",
                                L"2026-04",
                                L"04/12/2026",
                                L"12.04.2026",
                                L"2026-4-12",
                                L"2026-13-01",
                                L"2026-00-01",
                                L"2026-04-31",
                                L"2025-02-29",
                                L"1900-02-29",
                                L"2026-04-00",
                                L"0026-04-12",
                                L"26-04-12",
                                L"202604",
                                L"2026-0412",
                                L"202604-12",
                                L"2026-04-12T",
                                L"2026-04-12T7:08",
                                L"2026-04-12T24:00",
                                L"2026-04-12T07:60",
                                L"2026-04-12T07",
                                L"2026-04-12T07:08:",
                                L"2026-04-12T07:08:60",
                                L"2026-04-12T07:08:9",
                                L"20260412T07089",
                                L"2026-04-12x",
                                L"2026-04-12T07:08X",
                                L"2026-04-12T07:08+2",
                                L"2026-04-12T07:08+02:",
                                L"2026-04-12Z",
                                L"\u0662\u0660\u0662\u0666-04-12"})
        EXPECT_EQ(Read(DateFormat(), text), L"none") << testing::PrintToString(std::wstring(text));
}

TEST(DatesTest, APatternReadsDatesAsItIsWritten) {
    const wchar_t* const rows[][3] = {{L"dd.mm.yyyy", L"04.12.2026", L"2026-12-04"},
                                      {L"mm/dd/yyyy", L"04/12/2026", L"2026-04-12"},
                                      {L"d.m.yyyy", L"4.12.2026", L"2026-12-04"},
                                      {L"d.m.yyyy", L"04.12.2026", L"2026-12-04"},
                                      {L"yymmdd", L"261204", L"2026-12-04"},
                                      {L"dd-mm-yy hh:nn", L"04-12-26 07:08", L"2026-12-04 07:08:00"},
                                      {L"yyyymmddhhnnss", L"20261204070809", L"2026-12-04 07:08:09"},
                                      {L"dd.mm.yyyy", L"4.12.2026", L"none"},
                                      {L"dd.mm.yyyy", L"04.13.2026", L"none"},
                                      {L"dd.mm.yyyy", L"2026-12-04", L"none"},
                                      {L"dd.mm.yyyy", L"04.12.26", L"none"},
                                      {L"dd.mm.yyyy", L"04.12.2026 07:08", L"none"},
                                      {L"dd.mm.yyyy", L"", L"none"}};
    for (const auto& row : rows)
        EXPECT_EQ(Read(DateFormat(row[0]), row[1]), row[2]) << testing::PrintToString(std::wstring(row[1]));
}

TEST(DatesTest, APatternHasOneYearMonthAndDay) {
    for (const wchar_t* pattern :
         {L"", L"dd.mm", L"yyyy", L"dd.mm.yyy", L"y-m-d", L"dd.mm.yyyy dd", L"ddd.mm.yyyy", L"iso"})
        EXPECT_THROW(DateFormat{pattern}, hosts::HostError) << testing::PrintToString(std::wstring(pattern));
    EXPECT_EQ(DateFormat(L"dd.mm.yyyy").Expected(), L"dd.mm.yyyy");
    EXPECT_EQ(DateFormat().Expected(), L"ISO 8601, such as 2026-04-12");
}

TEST(DatesTest, FormatsOfDatesAreToldFromOthers) {
    for (const wchar_t* format : {L"yyyy", L"yymm", L"MM", L"dd-mm-yy", L"\"W\"ww", L"\\Wyy", L"hh:nn", L"Short Date",
                                  L"q", L"-yyyy", L"ddddd"})
        EXPECT_TRUE(FormatsDates(format)) << testing::PrintToString(std::wstring(format));
    for (const wchar_t* format : {L"", L"0000", L"#", L">", L"@@@@", L"<", L"&&", L"Currency", L"Standard", L"0\\d",
                                  L"\"day\"", L"\\y", L"\"unclosed", L"!>", L"Yes/No"})
        EXPECT_FALSE(FormatsDates(format)) << testing::PrintToString(std::wstring(format));
}

TEST(DatesTest, FormatsThatShowNothingOfTheDay) {
    for (const wchar_t* format : {L"hh:nn", L"hhnn", L"h:nn:ss AM/PM", L"hh:mm", L"hh \\d nn", L"\"day\" hh", L"ttttt",
                                  L"Short Time", L"hh:mm:ss a/p"})
        EXPECT_TRUE(ledger::FormatsTimesAlone(format)) << hosts::ToUtf8(format);
    for (const wchar_t* format : {L"yyyy", L"hh dd", L"mm", L"hh:nn mm", L"nn mm dd", L"General Date", L"0000", L"",
                                  L">", L"c", L"ddd hh", L"Short Date"})
        EXPECT_FALSE(ledger::FormatsTimesAlone(format)) << hosts::ToUtf8(format);
}

TEST(DatesTest, TimesWithoutADay) {
    EXPECT_EQ(ledger::IsoText(ledger::ReadTime(L"07:08").value()), L"1970-01-01 07:08:00");
    EXPECT_EQ(ledger::IsoText(ledger::ReadTime(L" 23:59:58 ").value()), L"1970-01-01 23:59:58");
    EXPECT_EQ(ledger::IsoText(ledger::ReadTime(L"00:00").value()), L"1970-01-01 00:00:00");
    for (const wchar_t* text :
         {L"", L"7:08", L"07", L"0708", L"24:00", L"07:60", L"07:08:", L"07:08x", L"07:08:60", L"2026-04-12"})
        EXPECT_FALSE(ledger::ReadTime(text)) << hosts::ToUtf8(text);
}
