#include "hosts/common/Csv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "hosts/common/HostError.h"

using hosts::CsvReader;
using hosts::CsvTable;
using hosts::HostError;
using hosts::ParseCsv;

namespace {

using Fields = std::vector<std::wstring>;

struct Accepted {
    const char* name;
    const wchar_t* text;
    Fields fields;
};

const Accepted AcceptedRecords[] = {
    {"plain", L"A,B\nx,y\n", {L"x", L"y"}},
    {"no line end at the end", L"A,B\nx,y", {L"x", L"y"}},
    {"CR LF", L"A,B\r\nx,y\r\n", {L"x", L"y"}},
    {"CR alone", L"A,B\rx,y\r", {L"x", L"y"}},
    {"empty fields", L"A,B\n,\n", {L"", L""}},
    {"blanks are kept", L"A,B\n x , y\n", {L" x ", L" y"}},
    {"separator in quotes", L"A,B\n\"x,1\",y\n", {L"x,1", L"y"}},
    {"quotes in quotes", L"A,B\n\"say \"\"x\"\"\",y\n", {L"say \"x\"", L"y"}},
    {"empty quotes", L"A,B\n\"\",\"\"\n", {L"", L""}},
    {"a quote inside plain text", L"A,B\n5\",y\n", {L"5\"", L"y"}},
    {"line break in quotes", L"A,B\n\"x\r\nz\",y\n", {L"x\r\nz", L"y"}},
    {"fewer fields", L"A,B\nx\n", {L"x"}},
    {"more fields", L"A,B\nx,y,z\n", {L"x", L"y", L"z"}},
    {"empty lines around", L"\n\nA,B\n\nx,y\n\n", {L"x", L"y"}},
};

struct Refused {
    const char* name;
    const wchar_t* text;
    const wchar_t* message;
};

const Refused RefusedTexts[] = {
    {"nothing", L"", L"the first line must name the columns, and there is none"},
    {"empty lines", L"\n\r\n", L"the first line must name the columns, and there is none"},
    {"a nameless column", L"A,,B\n", L"line 1: a column has no name"},
    {"a blank column", L"A, ,B\n", L"line 1: a column has no name"},
    {"a column twice", L"\nA,B, A\n", L"line 2: column \"A\" stands twice"},
    {"an open quote", L"A\nx\n\"y\nz\n", L"line 3: a quote is opened and never closed"},
    {"a quote at the end", L"A\n\"", L"line 2: a quote is opened and never closed"},
    {"text after a quote", L"A\n\"y\nz\"w\n",
     L"line 3: text follows a closed quote; double the quotes inside a quoted field"},
};

} // namespace

TEST(CsvTest, ReadsRecords) {
    for (const Accepted& row : AcceptedRecords) {
        const CsvTable table = ParseCsv(row.text);
        EXPECT_EQ(table.columns, (Fields{L"A", L"B"})) << row.name;
        ASSERT_EQ(table.records.size(), 1U) << row.name;
        EXPECT_EQ(table.records[0].fields, row.fields) << row.name;
    }
}

TEST(CsvTest, RefusesWithLineAndCause) {
    for (const Refused& row : RefusedTexts) {
        try {
            static_cast<void>(ParseCsv(row.text));
            ADD_FAILURE() << row.name << " was accepted";
        } catch (const HostError& error) {
            EXPECT_EQ(error.Message(), row.message) << row.name;
        }
    }
}

TEST(CsvTest, APieceMayEndAnywhere) {
    for (const Accepted& row : AcceptedRecords) {
        const std::wstring text = row.text;
        for (std::size_t size = 1; size <= text.size(); ++size) {
            std::size_t at = 0;
            CsvReader reader([&] { return text.substr(std::min(std::exchange(at, at + size), text.size()), size); });
            EXPECT_EQ(reader.Columns(), (Fields{L"A", L"B"})) << row.name;
            const auto record = reader.Next();
            ASSERT_TRUE(record) << row.name << " in pieces of " << size;
            EXPECT_EQ(record->fields, row.fields) << row.name << " in pieces of " << size;
            EXPECT_FALSE(reader.Next()) << row.name << " in pieces of " << size;
        }
    }
}

TEST(CsvTest, CountsLinesInQuotedFieldsAndEmptyLines) {
    const CsvTable table = ParseCsv(L"A,B\n\"1\n2\",x\n\n3,y\r\n4,z");
    ASSERT_EQ(table.records.size(), 3U);
    EXPECT_EQ(table.records[0].line, 2U);
    EXPECT_EQ(table.records[1].line, 5U);
    EXPECT_EQ(table.records[2].line, 6U);
}

TEST(CsvTest, TakesAnotherSeparator) {
    const CsvTable table = ParseCsv(L"A;B\n1,5;x\n", L';');
    ASSERT_EQ(table.records.size(), 1U);
    EXPECT_EQ(table.records[0].fields, (Fields{L"1,5", L"x"}));
}
