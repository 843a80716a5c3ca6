#include "ledger/core/CodeQuery.h"

#include <gtest/gtest.h>

namespace {

using ledger::FitsPattern;

struct FitCase {
    const wchar_t* text;
    const wchar_t* pattern;
    bool fits;
};

TEST(CodeQueryTest, PatternsFit) {
    const FitCase rows[] = {{L"", L"", true},
                            {L"", L"*", true},
                            {L"", L"?", false},
                            {L"a", L"", false},
                            {L"INV-1", L"INV-1", true},
                            {L"INV-1", L"inv-1", false},
                            {L"INV-1", L"INV-?", true},
                            {L"INV-12", L"INV-?", false},
                            {L"INV-12", L"INV-*", true},
                            {L"INV-12", L"*12", true},
                            {L"INV-12", L"*1", false},
                            {L"aXbXc", L"a*X*c", true},
                            {L"aXbXd", L"a*X*c", false},
                            {L"abc", L"***", true},
                            {L"abc", L"a**c", true},
                            {L"abc", L"*?*?*?*", true},
                            {L"abc", L"*?*?*?*?*", false},
                            {L"a*c", L"a*c", true},
                            {L"a%c", L"a_c", false}};
    for (const FitCase& row : rows)
        EXPECT_EQ(FitsPattern(row.text, row.pattern), row.fits) << testing::PrintToString(std::wstring(row.pattern));
}

// Each star is tried from where the one before it came to, so that no pattern takes longer than text times pattern.
TEST(CodeQueryTest, ManyStarsTakeNoTime) {
    const std::wstring text(255, L'a');
    std::wstring pattern;
    for (int star = 0; star < 5'000; ++star)
        pattern += L"*a";
    EXPECT_FALSE(FitsPattern(text, pattern + L"b"));
}

TEST(CodeQueryTest, WishesThatMakeNoSenseAreRefused) {
    ledger::CodeWish wish;
    EXPECT_NO_THROW(ledger::CheckWish(wish));
    wish.state = L"gone";
    EXPECT_THROW(ledger::CheckWish(wish), hosts::HostError);
    wish.state = L"void";
    wish.since = L"2024-05";
    EXPECT_NO_THROW(ledger::CheckWish(wish));
    wish.until = L"May";
    EXPECT_THROW(ledger::CheckWish(wish), hosts::HostError);
}

} // namespace
