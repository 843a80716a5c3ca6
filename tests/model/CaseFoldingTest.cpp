// What is compared without regard to case: by one plain folding everywhere, as the user's locale does in Conversion
// only. The stand-in for the platform takes full-width letters and soft hyphens as a locale takes them.
#include "common/CaseFolding.h"

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

constexpr const wchar_t* Wide = L"\uFF21"; // "A" in full width

} // namespace

class CaseFoldingTest : public testing::Test {
  protected:
    CaseFoldingTest() {
        AddFixed(*mvarRule, L"A", L"x");
        AddFixed(*mvarRule, Wide, L"y");
        mvarNumber = AddNumber(*mvarRule, L"Number", 2);
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    Ref<Band> mvarNumber;
};

TEST_F(CaseFoldingTest, IsTheOneOfBandNamesAsKeys) {
    struct Row {
        const wchar_t* left;
        const wchar_t* right;
        bool same;
    };
    for (const auto& [left, right, same] :
         {Row{L"", L"", true}, Row{L"aBc", L"AbC", true}, Row{L"a1", L"A1", true}, Row{L"a", L"b", false},
          Row{L"ab", L"a", false}, Row{L"A", Wide, false}, Row{L"a\u00ADb", L"ab", false}, Row{L"[", L"{", false},
          Row{L"@", L"`", false}, Row{L"x\u00ADA", L"X\u00ADa", true}, Row{L"\u00ADa", L"a\u00AD", false}}) {
        EXPECT_EQ(SameFolded(left, right), same) << testing::PrintToString(String(left));
        EXPECT_EQ(SameFolded(right, left), same) << testing::PrintToString(String(right));
        EXPECT_EQ(CaseFolded(left) == CaseFolded(right), same) << testing::PrintToString(String(left));
    }
}

TEST_F(CaseFoldingTest, ComparesTheNamesThatABandTracks) {
    EXPECT_SUCCESS(mvarNumber->TrackBands()->Add(Wide));
    EXPECT_FAILURE(mvarNumber->TrackBands()->Add(L"num\u00ADber"), AddFailed.Followed(InvalidParameter.description));
    EXPECT_FAILURE(mvarNumber->TrackBands()->Add(L"NUMBER"), AddFailed.Followed(L"No sense to track itself."));
    AddNumber(*mvarRule, L"Num\u00ADber", 2);
    EXPECT_SUCCESS(mvarNumber->TrackBands()->Add(L"num\u00ADber"));
}

TEST_F(CaseFoldingTest, RemovesABandWithoutAnotherThatALocaleTakesForIt) {
    mvarNumber->TrackBands()->Add(Wide);
    mvarRule->Remove(L"a");
    EXPECT_EQ(mvarStandIns.prompts.asked, (std::vector<String>{}));
    EXPECT_EQ(mvarNumber->TrackBands()->NamesText(), Wide);
    EXPECT_EQ(BandsOf(*mvarRule), String(Wide) + L" Number");
}

TEST_F(CaseFoldingTest, KeepsTheLayerOfAnotherBand) {
    AddField(*mvarRule, L"L", L"F", 1, smLayersSwap);
    AddField(*mvarRule, L"\uFF2C", L"F", 1, smLayersSwap);
    mvarRule->Remove(L"l");
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"\uFF2C");
}

TEST_F(CaseFoldingTest, ChoosesTheBandsThatStandInThePattern) {
    AddLetter(*mvarRule, L"T");
    AddLetter(*mvarRule, L"\uFF34");
    mvarRule->Band(L"T")->SetValue(L"B");
    mvarRule->Band(L"\uFF34")->SetValue(L"C");
    mvarNumber->TrackBands()->Add(L"t");
    String asked;
    const auto host = mvarRule->GetLastCode.Subscribe([&](const String& filter, const String&) { asked = filter; });
    static_cast<void>(mvarRule->GetCode());
    EXPECT_EQ(asked, L"xy??B?");
}

TEST_F(CaseFoldingTest, SavesWhatDiffersInMoreThanCase) {
    const String definition = mvarRule->Definition();
    String held = definition;
    held.replace(held.find(L"0=A"), 3, L"0=\uFF21");
    int saved = 0;
    const auto settings = mvarRule->GetSettings.Subscribe([&](const String&, String& value) { value = held; });
    const auto save = mvarRule->SaveRequested.Subscribe([&](const String&, bool& achieved) {
        ++saved;
        achieved = true;
    });
    mvarRule->Save();
    EXPECT_EQ(saved, 1) << "a full-width letter";
    held = definition;
    held.insert(held.find(L"0=A") + 3, L"\u00AD");
    mvarRule->Save();
    EXPECT_EQ(saved, 2) << "a soft hyphen";
    held = TheText().Lower(definition);
    mvarRule->Save();
    EXPECT_EQ(saved, 2) << "case alone";
}

TEST_F(CaseFoldingTest, WritesAForeignNameThatDiffersInMoreThanCase) {
    auto& fields = mvarRule->UsrFields();
    fields.Add(L"Cent", L"\uFF23ent");
    fields.Add(L"Center", L"Cen\u00ADter");
    fields.Add(L"Coin", L"COIN");
    EXPECT_EQ(fields.ListsText(), L"Cent,\uFF23ent,;Center,Cen\u00ADter,;Coin,,");
}

TEST_F(CaseFoldingTest, IsNotTheComparisonOfConversions) {
    const auto tree = TreeOf(L"1;,1,A,full");
    String value = Wide;
    EXPECT_EQ(tree->Conversion(csCodeToValue, value), L"N1");
    EXPECT_EQ(value, L"full");
}

} // namespace kestrel::test
