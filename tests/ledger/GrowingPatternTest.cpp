#include "ledger/core/pattern/GrowingPattern.h"

#include <gtest/gtest.h>

#include "hosts/common/Utf8.h"
#include "ledger/core/pattern/PatternText.h"
#include "ledger/core/pattern/PatternWriter.h"

namespace {

// The patterns side by side, or what is refused and where.
std::wstring Grown(const wchar_t* pattern, const wchar_t* growth) {
    try {
        std::wstring text;
        for (const ledger::Pattern& one :
             ledger::GrowingPatterns(ledger::ParsePattern(pattern), ledger::GrowthOf(growth)))
            for (const ledger::PatternPart& part : one)
                if (part.kind == ledger::PartKind::Number)
                    text += (text.empty() ? L"" : L" ") + std::wstring(part.length, L'#') + L":" + part.first;
        return text;
    } catch (const ledger::PatternError& error) {
        return std::to_wstring(error.Position()) + L": " + error.Message();
    } catch (const hosts::HostError& error) {
        return error.Message();
    }
}

struct GrowthCase {
    const wchar_t* pattern;
    const wchar_t* growth;
    const wchar_t* expected;
};

} // namespace

TEST(GrowingPatternTest, EachWidthBeginsWhereTheOneBeforeEnds) {
    const GrowthCase rows[] = {
        {L"INV{####}", L"4..6", L"####:1 #####:10000 ######:100000"},
        {L"{##:17}", L"2..3", L"##:17 ###:100"},
        {L"{Year:4}-{#}{=luhn(Number)}", L"1..2", L"#:1 ##:10"},
        {L"{#:0}", L"1..2", L"#:0 ##:10"},
        {L"{#################}", L"17..18", L"#################:1 ##################:100000000000000000"},
    };
    for (const GrowthCase& row : rows)
        EXPECT_EQ(Grown(row.pattern, row.growth), row.expected) << hosts::ToUtf8(row.pattern);
}

TEST(GrowingPatternTest, TheWidestPatternReadsBackAsItIsWritten) {
    const auto patterns = ledger::GrowingPatterns(ledger::ParsePattern(L"INV{####}"), {4, 5});
    ASSERT_EQ(patterns.size(), 2U);
    EXPECT_EQ(ledger::WritePattern(ledger::ParsePattern(ledger::WritePattern(patterns[1]))),
              ledger::WritePattern(patterns[1]));
}

TEST(GrowingPatternTest, WhatCannotGrowIsRefused) {
    const GrowthCase rows[] = {
        {L"{A:1}", L"4..6", L"0: the pattern has no number that could grow; write one such as {####}"},
        {L"{##}x{##}", L"2..6", L"5: this is a second number; only a pattern with one number can grow"},
        {L"INV{###}", L"4..6", L"3: the number has 3 digits and is to grow from 4; write {####}"},
        {L"{####:1..500}", L"4..6",
         L"0: a number that grows does not end with 500; leave its end out, it ends with its last digit"},
        {L"{####}", L"4", L"\"4\" does not say how a number grows; write its digits as in 4..9"},
        {L"{####}", L"0..9", L"\"0..9\" does not say how a number grows; write its digits as in 4..9"},
        {L"{####}", L"4..4", L"a number that grows from 4 to 4 digits does not grow; write as in 4..9"},
        {L"{####}", L"4..19", L"a number of 19 digits is too long; a ledger counts in up to 18"},
    };
    for (const GrowthCase& row : rows)
        EXPECT_EQ(Grown(row.pattern, row.growth), row.expected) << hosts::ToUtf8(row.pattern);
}
