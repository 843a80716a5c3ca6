#include <gtest/gtest.h>

#include "common/String.h"

namespace kestrel::test {

namespace {

struct SplitCase {
    const wchar_t* text;
    std::vector<StringView> pieces;
};

const SplitCase SplitCases[] = {
    {L"", {L""}},
    {L";", {L"", L""}},
    {L"a", {L"a"}},
    {L"a;b", {L"a", L"b"}},
    {L";a", {L"", L"a"}},
    {L"a;;b;", {L"a", L"", L"b", L""}},
    {L"a,b;c", {L"a,b", L"c"}},
};

} // namespace

TEST(StringTest_Trim, TakesBlanksAndOnlyBlanksFromBothEnds) {
    EXPECT_EQ(Trim(L"  a b  "), L"a b");
    EXPECT_EQ(Trim(L"a"), L"a");
    EXPECT_EQ(Trim(L"   "), L"");
    EXPECT_EQ(Trim(L""), L"");
    EXPECT_EQ(Trim(L" \ta\t "), L"\ta\t");
    EXPECT_EQ(Trim(L"\r\n"), L"\r\n");
    EXPECT_EQ(Trim(L"\u00a0a"), L"\u00a0a");
}

TEST(StringTest_Split, GivesThePiecesBetweenTheSeparators) {
    for (const auto& row : SplitCases)
        EXPECT_EQ(Split(row.text, L';'), row.pieces) << testing::PrintToString(String(row.text));
}

TEST(StringTest_Split, JoinPutsThePiecesTogetherAgain) {
    for (const auto& row : SplitCases) {
        const std::vector<String> pieces(row.pieces.begin(), row.pieces.end());
        EXPECT_EQ(Join(pieces, L";"), row.text);
    }
}

TEST(StringTest_Split, KeepsEmbeddedNuls) {
    using namespace std::string_view_literals;
    const auto pieces = Split(L"a\0b;\0"sv, L';');
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0], L"a\0b"sv);
    EXPECT_EQ(pieces[1], L"\0"sv);
}

TEST(StringTest_Join, OfNothingIsEmpty) { EXPECT_EQ(Join({}, L","), L""); }

TEST(StringTest_Splitter, IsExhaustedAfterTheLastPiece) {
    Splitter splitter(L"a;", L';');
    EXPECT_EQ(splitter.Next(), L"a");
    EXPECT_EQ(splitter.Next(), L"");
    EXPECT_EQ(splitter.Next(), std::nullopt);
    EXPECT_EQ(splitter.Next(), std::nullopt);
}

TEST(StringTest_ReplaceStar, PutsTheTextInForEachStar) {
    EXPECT_EQ(ReplaceStar(L"The field * is", L"F1"), L"The field F1 is");
    EXPECT_EQ(ReplaceStar(L"**", L"*a"), L"*a*a");
    EXPECT_EQ(ReplaceStar(L"none", L"x"), L"none");
    EXPECT_EQ(ReplaceStar(L"", L"x"), L"");
}

TEST(StringTest_ToText, WritesPlainDecimals) {
    EXPECT_EQ(ToText(0), L"0");
    EXPECT_EQ(ToText(-12), L"-12");
    EXPECT_EQ(ToText(9223372036854775807), L"9223372036854775807");
    EXPECT_EQ(ToText(-9223372036854775807 - 1), L"-9223372036854775808");
}

} // namespace kestrel::test
