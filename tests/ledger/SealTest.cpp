#include "ledger/core/Seal.h"

#include <gtest/gtest.h>

using ledger::SealSum;
using ledger::SealText;

TEST(SealTest, Sha256IsTheStandardsOwn) {
    EXPECT_EQ(ledger::HexOf(ledger::Sha256Of("")), L"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(ledger::HexOf(ledger::Sha256Of("abc")),
              L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(SealTest, APartCannotMoveIntoTheNextOne) {
    EXPECT_NE(SealText(L"").Add(L"ab").Add(L"c").Seal(), SealText(L"").Add(L"a").Add(L"bc").Seal());
    EXPECT_NE(SealText(L"").Add(L"").Add(L"a").Seal(), SealText(L"").Add(L"a").Add(L"").Seal());
    EXPECT_NE(SealText(L"1").Add(L"a").Seal(), SealText(L"2").Add(L"a").Seal()) << "the seal before counts";
    EXPECT_EQ(SealText(L"1").Add(L"a").Add(7).Seal(), SealText(L"1").Add(L"a").Add(L"7").Seal());
}

TEST(SealTest, ASumTellsRowsWhateverTheirOrder) {
    SealSum one;
    one.Add(L"a");
    one.Add(L"b");
    SealSum other;
    other.Add(L"b");
    other.Add(L"a");
    EXPECT_EQ(one.Text(), other.Text());
    other.Add(L"a");
    EXPECT_NE(one.Text(), other.Text());
    SealSum changed;
    changed.Add(L"a");
    changed.Add(L"c");
    EXPECT_NE(one.Text(), changed.Text());
    EXPECT_TRUE(SealSum().Text().starts_with(L"0 rows "));
}
