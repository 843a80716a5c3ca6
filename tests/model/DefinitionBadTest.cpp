// Definitions that are damaged, shuffled or far too long: reading goes on as far as it can, and what it made is whole.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/Checks.h"
#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

String LinesOf(const String& definition) { return definition.substr(5); }

std::vector<String> SplitLines(const String& definition) {
    const String lines = LinesOf(definition);
    const auto views = Split(lines, L'\r');
    return {views.begin(), views.end()};
}

} // namespace

class DefinitionBadTest : public testing::Test {
  protected:
    // Loads and checks that the rule is whole.
    void Load(const String& definition) {
        EXPECT_SUCCESS(mvarRule->Load(definition));
        EXPECT_EQ(FaultOf(*mvarRule), "");
        EXPECT_EQ(DanglingOf(*mvarRule), "");
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    const String mvarOrders = OrdersDefinition;
};

TEST_F(DefinitionBadTest, CutAtEveryCharacter) {
    const auto ends = [this](std::size_t length) { // of the band records that are complete
        int count = 0;
        for (auto end = mvarOrders.find(L"\r17\r"); end != String::npos && end + 3 <= length;
             end = mvarOrders.find(L"\r17\r", end + 1))
            ++count;
        return count;
    };
    for (std::size_t length = 0; length < mvarOrders.size(); ++length) {
        Load(mvarOrders.substr(0, length));
        EXPECT_EQ(mvarRule->Count(), ends(length)) << length;
    }
}

TEST_F(DefinitionBadTest, WithEachLineMissing) {
    const auto lines = SplitLines(mvarOrders);
    for (std::size_t missing = 0; missing < lines.size(); ++missing) {
        auto rest = lines;
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(missing));
        Load(L"#####" + Join(rest, L"\r"));
    }
}

TEST_F(DefinitionBadTest, WithEachLineDoubled) {
    const auto lines = SplitLines(mvarOrders);
    for (std::size_t doubled = 0; doubled < lines.size(); ++doubled) {
        auto more = lines;
        more.insert(more.begin() + static_cast<std::ptrdiff_t>(doubled), lines[doubled]);
        Load(L"#####" + Join(more, L"\r"));
        EXPECT_LE(mvarRule->Count(), 4);
    }
}

TEST_F(DefinitionBadTest, WithAnUnknownLineAtEachPlace) {
    const auto lines = SplitLines(mvarOrders);
    for (std::size_t place = 0; place <= lines.size(); ++place) {
        auto more = lines;
        more.insert(more.begin() + static_cast<std::ptrdiff_t>(place), L"99=what");
        Load(L"#####" + Join(more, L"\r"));
    }
}

TEST_F(DefinitionBadTest, Shuffled) {
    auto lines = SplitLines(mvarOrders);
    unsigned state = 12345;
    for (int round = 0; round < 300; ++round) {
        for (auto i = lines.size() - 1; i > 0; --i) {
            state = state * 1664525U + 1013904223U;
            std::swap(lines[i], lines[(state >> 8U) % (i + 1)]);
        }
        Load(L"#####" + Join(lines, L"\r"));
    }
}

TEST_F(DefinitionBadTest, TwiceInOneText) {
    Load(mvarOrders + L"\r" + LinesOf(mvarOrders));
    EXPECT_EQ(BandsOf(*mvarRule), L"Prefix Period Customer Number");
}

TEST_F(DefinitionBadTest, WithNuls) {
    const String nul(1, L'\0');
    for (std::size_t place = 0; place <= mvarOrders.size(); ++place)
        Load(mvarOrders.substr(0, place) + nul + mvarOrders.substr(place));
    Load(String(1000, L'\0'));
    EXPECT_EQ(mvarRule->Count(), 0);
    Load(L"#####16\r0=" + nul + L"\r1=0\r3=" + nul + nul + L"\r17");
    EXPECT_EQ(mvarRule->Band(1)->Name(), nul);
    EXPECT_EQ(mvarRule->Band(1)->Length(), 2);
}

TEST_F(DefinitionBadTest, WithLineFeedsInstead) {
    auto text = mvarOrders;
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    Load(text);
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(DefinitionBadTest, WithAMillionBandLinesOfOneBand) {
    String text = L"#####16\r0=A\r1=0";
    for (int i = 0; i < 1'000'000; ++i)
        text += L"\r3=x";
    Load(text + L"\r17");
    EXPECT_EQ(BandsOf(*mvarRule), L"A");
}

TEST_F(DefinitionBadTest, WithAMillionEmptyBandRecords) {
    String text = L"#####";
    for (int i = 0; i < 1'000'000; ++i)
        text += L"16\r17\r";
    Load(text);
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(DefinitionBadTest, WithAHundredThousandBandsThatConvertInLayers) {
    String text = L"#####14\rF\r";
    for (int i = 0; i < 100'000; ++i)
        text += L"16\r0=B" + ToText(i) + L"\r1=2\r2=2\r6=F\r17\r";
    EXPECT_SUCCESS(mvarRule->Load(text));
    EXPECT_EQ(mvarRule->Count(), 100'000);
    EXPECT_EQ(mvarRule->LayeredBands().Count(), 100'000);
    EXPECT_EQ(mvarRule->UsedFields().Count(), 1);
}

TEST_F(DefinitionBadTest, WithAMillionSeparatorsOrDigits) {
    for (const wchar_t filler : {L'\r', L'=', L'1', L'#', L';', L','})
        Load(String(1'000'000, filler));
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(DefinitionBadTest, WithABandOfHugeLength) {
    Load(L"#####14\rF\r16\r0=A\r1=2\r5=2147483647\r17\r16\r0=B\r1=2\r5=2147483648\r17");
    EXPECT_EQ(mvarRule->Band(L"A")->Length(), 2147483647);
    EXPECT_EQ(mvarRule->Band(L"B")->Length(), 1);
}

TEST_F(DefinitionBadTest, WithATreeOfADeepChain) {
    Load(L"#####9\r" + ChainText(20'000));
    EXPECT_EQ(mvarRule->Relations().Count(), 20'000);
    mvarRule->Cls();
    EXPECT_EQ(mvarRule->Relations().Count(), 0);
}

} // namespace kestrel::test
