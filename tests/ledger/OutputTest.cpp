#include "ledger/cli/Output.h"

#include <gtest/gtest.h>

using ledger::FieldValues;

TEST(OutputTest, ATableIsAsWideAsItsWidestCells) {
    ledger::Table table({L"NAME", L"N"});
    table.Add({L"a", L"100"});
    table.Add({L"longer", L""});
    const std::vector<std::wstring> expected = {L"NAME    N", L"------  ---", L"a       100", L"longer"};
    EXPECT_EQ(table.Lines(), expected);
}

TEST(OutputTest, NoCellEndsItsLine) {
    ledger::Table table({L"NAME"});
    table.Add({L"a\nb"});
    EXPECT_EQ(table.Lines().back(), L"a\\nb");
}

TEST(OutputTest, FieldsSurviveJson) {
    const FieldValues values = {{L"Z\u00FCrich", L"\"quoted\""}, {L"b", L"line\nbreak"}, {L"a", L""}};
    EXPECT_EQ(ledger::FieldsOf(ledger::JsonText(ledger::ToJson(values))), values);
}

TEST(OutputTest, WhatIsNoJsonObjectOfTextsHasNoFields) {
    EXPECT_TRUE(ledger::FieldsOf(L"").empty());
    EXPECT_TRUE(ledger::FieldsOf(L"[1").empty());
    EXPECT_TRUE(ledger::FieldsOf(L"[\"a\"]").empty());
    EXPECT_EQ(ledger::FieldsOf(L"{\"a\":1,\"b\":\"x\"}"), (FieldValues{{L"b", L"x"}}));
}
