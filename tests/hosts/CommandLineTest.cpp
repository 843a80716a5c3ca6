#include "hosts/issuer/CommandLine.h"

#include <gtest/gtest.h>

using hosts::ParseCommandLine;

TEST(CommandLineTest, IssueTakesRuleAndRecords) {
    const auto line = ParseCommandLine({L"issue", L"r.rule", L"--codes", L"c.txt", L"r.csv"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->command, L"issue");
    EXPECT_EQ(line->rulePath, L"r.rule");
    EXPECT_EQ(line->subject, L"r.csv");
    EXPECT_EQ(line->codesPath, L"c.txt");
}

TEST(CommandLineTest, PreviewTakesValues) {
    const auto line = ParseCommandLine({L"preview", L"r.rule", L"A=1", L"B=x=y", L"C="});
    ASSERT_TRUE(line);
    ASSERT_EQ(line->values.size(), 3U);
    EXPECT_EQ(line->values[1].first, L"B");
    EXPECT_EQ(line->values[1].second, L"x=y");
    EXPECT_EQ(line->values[2].second, L"");
    EXPECT_TRUE(line->codesPath.empty());
}

TEST(CommandLineTest, RefusesWhatTheUsageDoesNotShow) {
    const std::vector<std::vector<std::wstring>> wrong = {
        {},
        {L"issue"},
        {L"issue", L"r.rule"},
        {L"issue", L"r.rule", L"r.csv", L"more"},
        {L"issue", L"r.rule", L"r.csv", L"--codes"},
        {L"explain", L"r.rule"},
        {L"preview", L"r.rule", L"no value"},
        {L"preview", L"r.rule", L"=x"},
        {L"unknown", L"r.rule", L"x"},
    };
    for (std::size_t row = 0; row < wrong.size(); ++row)
        EXPECT_FALSE(ParseCommandLine(wrong[row])) << "row " << row;
}
