#include "ledger/core/definition/RuleReview.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/common/Rule.h"
#include "hosts/common/Utf8.h"
#include "ledger/Replaced.h"
#include "ledger/core/pattern/PatternText.h"
#include "ledger/core/pattern/RuleBuilder.h"

namespace {

using Lines = std::vector<std::wstring>;

const ledger::CodeFiles AreaFiles = [](const std::wstring& file) {
    return hosts::ParseCsv(file == L"areas.csv" ? L"Land code,Land,Town code,Town\nD,Germany,1,Ulm\nF,France,1,Nice\n"
                                                : L"c,v\n1,North\n2,South\n");
};

std::wstring Definition(const wchar_t* pattern) {
    return ledger::BuildDefinition(ledger::ParsePattern(pattern), {}, AreaFiles);
}

Lines LinesOf(const std::wstring& text) {
    Lines lines(1);
    for (const wchar_t character : text) {
        if (character == L'\r')
            lines.emplace_back();
        else
            lines.back() += character;
    }
    return lines;
}

std::wstring Joined(const Lines& lines) {
    std::wstring text = lines.front();
    for (std::size_t line = 1; line < lines.size(); ++line)
        text += L'\r' + lines[line];
    return text;
}

class RuleReviewTest : public testing::Test {
    hosts::Apartment mvarApartment;
};

// A band of each style and conversion.
const wchar_t* const Everything = L"INV-{Date:yymm}{@User=users.csv}{Land=areas.csv|1}{Town=areas.csv|2}{=year(Date)}"
                                  L"{###:5..900/Date,Land}{B..F:C}";

} // namespace

TEST_F(RuleReviewTest, WhatTheComponentWritesIsTakenWhole) {
    for (const wchar_t* pattern : {Everything, L"A{####}", L"{A:4}", L"{A..Z}{A:1}{##:10}"})
        EXPECT_TRUE(ledger::ReviewDefinition(Definition(pattern)).untaken.empty()) << hosts::ToUtf8(pattern);
}

TEST_F(RuleReviewTest, EveryValueThatIsChangedIsHeldOrTold) {
    const Lines lines = LinesOf(Definition(Everything));
    std::size_t tried = 0;
    std::size_t told = 0;
    for (std::size_t line = 1; line < lines.size(); ++line) {
        const auto equals = lines[line].find(L'=');
        const bool isNumberLine = equals == std::wstring::npos && lines[line].size() <= 2;
        if (isNumberLine) continue;
        Lines changed = lines;
        changed[line] = lines[line].substr(0, equals + 1) + L"?odd";
        const std::wstring text = Joined(changed);
        hosts::Rule rule;
        rule.Load(text);
        const Lines held = LinesOf(rule.Definition());
        const ledger::RuleReview review = ledger::ReviewDefinition(text);
        const bool isTold = std::ranges::any_of(
            review.untaken, [line](const ledger::Untaken& untaken) { return untaken.line == line + 1; });
        const bool isHeld = std::ranges::any_of(held, [&](const std::wstring& one) {
            return one == changed[line] || one == changed[line] + L",,"; // as a list writes a name
        });
        EXPECT_NE(isTold, isHeld) << hosts::ToUtf8(lines[line]);
        ++tried;
        told += isTold ? 1 : 0;
    }
    EXPECT_GT(tried, 130U);
    EXPECT_GT(told, 100U);
}

TEST_F(RuleReviewTest, EveryTextThatEndsEarlyIsTold) {
    const Lines lines = LinesOf(Definition(L"{A:4}-{###}"));
    const auto firstBand = static_cast<std::size_t>(std::ranges::find(lines, L"16") - lines.begin());
    const auto firstEnd = static_cast<std::size_t>(
        std::find(lines.begin() + static_cast<std::ptrdiff_t>(firstBand), lines.end(), L"17") - lines.begin());
    ASSERT_LT(firstEnd, lines.size());
    for (std::size_t count = firstEnd + 2; count < lines.size(); ++count) {
        if (lines[count - 1] == L"17") continue; // a whole band more or less is no half a text
        const Lines cut(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count));
        const auto untaken = ledger::ReviewDefinition(Joined(cut)).untaken;
        EXPECT_TRUE(std::ranges::any_of(untaken, [count](const ledger::Untaken& one) {
            return one.line == count && one.holds.starts_with(L"the text ends");
        })) << count;
    }
}

TEST_F(RuleReviewTest, FindingsAreThoseOfTheLedger) {
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"A{####}")).Lines(), Lines()) << "the ledger counts it";
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{A:4}{####:..5000}")).Lines(), Lines())
        << "the ledger keeps to the end";
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{A:4}{##:10..12}")).Lines(), Lines()) << "so few were meant";
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{A:4}")).findings.size(), 1U) << "two records, one code";
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{A:4}{##}")).findings.size(), 1U) << "few numbers";
}

TEST_F(RuleReviewTest, WhatKeepsEveryCodeFromBeingIssued) {
    const std::wstring good = Definition(L"A{F=f.csv}{###:5..9}{B..D}");
    EXPECT_EQ(ledger::ReviewDefinition(good).obstacles, Lines());
    const struct {
        const wchar_t* from;
        const wchar_t* to;
        const wchar_t* obstacle;
    } rows[] = {
        {L"6=F", L"6=G", L"band F: it is bound to no field or macro"},
        {L"14=2;,1,1,North;,2,2,South", L"14=0", L"band F: it is converted, but there are no codes and values"},
        {L"9=9", L"9=4", L"band Number: the end 4 lies below the first number, 5"},
        {L"4=000", L"4=00", L"band Number: the first number \"5\" does not fit 3 characters with the format \"00\""},
        {L"12=B", L"12=", L"band Letter: no letter is set"},
        {L"12=B", L"12=E", L"band Letter: no letter is set"},
        {L"2=1", L"2=2", L"band F: it is converted, but there are no codes and values"},
    };
    for (const auto& row : rows) {
        const Lines obstacles = ledger::ReviewDefinition(Replaced(good, row.from, row.to)).obstacles;
        ASSERT_EQ(obstacles.size(), 1U) << hosts::ToUtf8(row.to);
        EXPECT_TRUE(obstacles[0].starts_with(row.obstacle)) << hosts::ToUtf8(obstacles[0]);
    }
}

TEST_F(RuleReviewTest, WhatIsWrittenAtAnotherLengthThanTheBandsKeepsEveryCode) {
    const auto obstacles = [](const std::wstring& text) { return ledger::ReviewDefinition(text).obstacles; };
    EXPECT_EQ(obstacles(Definition(L"{Date:yyyy}{#}")), Lines());
    EXPECT_EQ(obstacles(Replaced(Definition(L"{Date:yyyy}{#}"), L"5=4", L"5=3")),
              (Lines{L"band Date: the format \"yyyy\" writes 4 characters, and the band has 3"}));
    EXPECT_EQ(obstacles(Definition(L"{C=luhn(Number):2}{#}")),
              (Lines{L"band C: the formula luhn(Number) gives 1 character, and the band has 2"}));
}

TEST_F(RuleReviewTest, AFormulaThatMakesNoSenseKeepsEveryCode) {
    const std::wstring good = Definition(L"{###}{C=damm(Number)}");
    EXPECT_EQ(ledger::ReviewDefinition(good).NoCode(), Lines());
    for (const wchar_t* formula : {L"dam(Number)", L"damm(Numer)", L"damm()"}) {
        std::wstring text = good;
        text.replace(text.find(L"damm(Number)"), 12, formula);
        EXPECT_EQ(ledger::ReviewDefinition(text).NoCode().size(), 1U) << hosts::ToUtf8(formula);
    }
}

TEST_F(RuleReviewTest, CountingSeparatelyByWhatNoCodeShowsIsTold) {
    ledger::RuleSettings settings;
    settings.series = L"Company";
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{###}"), settings).findings.size(), 1U);
    EXPECT_EQ(ledger::ReviewDefinition(Definition(L"{Company:2}{####}"), settings).findings, Lines());
}
