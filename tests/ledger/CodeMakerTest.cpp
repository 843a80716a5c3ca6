#include "ledger/core/CodeMaker.h"

#include <gtest/gtest.h>

using ledger::CodeWithNumber;
using ledger::NumberBand;
using ledger::SeriesOf;

namespace {

// "AB-000-C": two characters, a dash, the number, a dash, one character; only the first two and the dashes are shown.
const NumberBand CodeBand = {L"Number", 3, 3, 1, 999, {true, true, true, false, false, false, true, false}};

} // namespace

TEST(CodeMakerTest, ACodeIsNumberedInItsSeries) {
    EXPECT_EQ(CodeWithNumber(CodeBand, L"AB-??\?-?", 7), L"AB-007-?");
    EXPECT_EQ(CodeWithNumber(CodeBand, L"AB-??\?-?", 0), L"AB-000-?");
    EXPECT_EQ(CodeWithNumber(CodeBand, L"AB-??\?-?", 999), L"AB-999-?");
    EXPECT_EQ(CodeWithNumber(CodeBand, L"AB-??\?-?", -1), L"") << "nothing comes before the number 0";
    EXPECT_EQ(CodeWithNumber(CodeBand, L"AB", 7), L"") << "a series shorter than its band";
}

TEST(CodeMakerTest, TheSeriesOfACodeShowsWhatIsFixedOrTracked) {
    EXPECT_EQ(SeriesOf(CodeBand, L"AB-007-C"), L"AB-??\?-?");
    EXPECT_EQ(SeriesOf(CodeBand, L"?\?-007-C"), L"?\?-??\?-?");
}
