#include "ledger/core/KnownEnds.h"

#include <gtest/gtest.h>

using ledger::HighestNumber;
using ledger::KnownEnds;

namespace {

ledger::NumberRow Stored(const std::wstring& series, std::int64_t number, const std::wstring& seal) {
    return {{L"Number", series, number}, 0, 0, seal};
}

// The number guessed; 0 for none.
std::int64_t Guess(const KnownEnds& ends, const std::wstring& series) {
    return ends.Guess(L"Number", series).value_or(HighestNumber()).number;
}

} // namespace

TEST(KnownEndsTest, AnEndIsGuessedOnceItWasFoundWhereItWasLeft) {
    KnownEnds ends;
    ends.Found(L"Number", L"a", HighestNumber{6, {}, L"six"});
    ends.Left(L"code", Stored(L"a", 7, L"seven"));
    EXPECT_EQ(Guess(ends, L"a"), 0);
    ends.Found(L"Number", L"a", HighestNumber{7, {}, L"seven"});
    EXPECT_EQ(Guess(ends, L"a"), 7);
    ends.Left(L"code", Stored(L"a", 8, L"eight"));
    EXPECT_EQ(Guess(ends, L"a"), 8);
    EXPECT_EQ(ends.Guess(L"Number", L"a")->seal, L"eight");
    EXPECT_EQ(Guess(ends, L"b"), 0);
}

TEST(KnownEndsTest, NothingIsGuessedWhereOthersCount) {
    KnownEnds ends;
    ends.Left(L"code", Stored(L"a", 7, L"seven"));
    ends.Found(L"Number", L"a", HighestNumber{8, {}, L"theirs"});
    EXPECT_EQ(Guess(ends, L"a"), 0);
    ends.Found(L"Number", L"a", HighestNumber{7, {}, L"another seven"});
    EXPECT_EQ(Guess(ends, L"a"), 0);
    ends.Found(L"Number", L"a", std::nullopt);
    EXPECT_EQ(Guess(ends, L"a"), 0);
}

TEST(KnownEndsTest, AWrongGuessEndsThemAll) {
    KnownEnds ends;
    ends.Left(L"code", Stored(L"a", 7, L"seven"));
    ends.Found(L"Number", L"a", HighestNumber{7, {}, L"seven"});
    ends.Forget();
    EXPECT_EQ(Guess(ends, L"a"), 0);
}

TEST(KnownEndsTest, ItHoldsSoManySeriesAndNoMore) {
    KnownEnds ends;
    for (int series = 0; series < 1000; ++series) {
        ends.Left(L"code", Stored(std::to_wstring(series), 1, L"one"));
        ends.Found(L"Number", std::to_wstring(series), HighestNumber{1, {}, L"one"});
    }
    EXPECT_EQ(Guess(ends, L"0"), 1);
    ends.Left(L"code", Stored(L"one more", 1, L"one"));
    EXPECT_EQ(Guess(ends, L"0"), 0);
}
