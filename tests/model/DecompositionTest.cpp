// ExpCode: how a code is taken apart.
#include <limits>

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

class DecompositionTest : public testing::Test {
  protected:
    [[nodiscard]] String FieldValue(const wchar_t* name) const { return mvarRule->UsrFields().Item(name)->Value(); }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

TEST_F(DecompositionTest, SpreadsTheCodeOfARealisticRule) {
    const auto rule = OrdersRule();
    rule->ExpCode(L"PO-24060200317");
    EXPECT_EQ(rule->Band(L"Period")->Value(), L"2406");
    EXPECT_EQ(rule->Band(L"Customer")->Value(), L"02");
    EXPECT_EQ(rule->Band(L"Number")->Value(), L"00317");
    EXPECT_EQ(rule->UsrFields().Item(L"Customer")->Value(), L"Widgets & Co");
    EXPECT_EQ(rule->UsrMacros().Item(L"Month")->Value(), L"2406");
    EXPECT_EQ(rule->UsrFields().Item(L"Clerk")->Value(), L"");
}

TEST_F(DecompositionTest, RefusesACodeOfAnotherLengthBeforeAnyBandChanges) {
    const auto field = AddField(*mvarRule, L"F", L"F", 2);
    AddFixed(*mvarRule, L"A", L"x");
    for (const auto* code : {L"", L"ab", L"abxx"})
        EXPECT_FAILURE(mvarRule->ExpCode(code), IllegalCodeLength) << testing::PrintToString(String(code));
    EXPECT_EQ(field->Value(), L"");
}

TEST_F(DecompositionTest, FailsAsTheLengthDoesWhere32BitsCannotHoldIt) {
    AddField(*mvarRule, L"Long", L"L", std::numeric_limits<std::int32_t>::max());
    AddFixed(*mvarRule, L"Last", L"x");
    EXPECT_FAILURE(mvarRule->ExpCode(L""), Overflow);
    EXPECT_FAILURE(mvarRule->ExpCode(L"x"), Overflow);
}

TEST_F(DecompositionTest, RefusesEveryCodeInTheSimpleStyle) {
    AddField(*mvarRule, L"F", L"F", 2);
    mvarRule->SetStyle(csSimple);
    EXPECT_FAILURE(mvarRule->ExpCode(L"ab"), IllegalCodeLength);
    EXPECT_FAILURE(mvarRule->ExpCode(L""), IncorrectValueLength.WithDetail(L"F"));
}

TEST_F(DecompositionTest, OfTheEmptyCodeInTheSimpleStyleGivesEachBandAnEmptyPart) {
    mvarRule->Load(L"#####16\r0=A\r1=0\r17\r16\r0=B\r1=0\r17\r16\r0=C\r1=0\r3=x\r17");
    mvarRule->SetStyle(csSimple);
    EXPECT_FAILURE(mvarRule->ExpCode(L""), FixedValueError);
    mvarRule->Remove(L"C");
    EXPECT_SUCCESS(mvarRule->ExpCode(L""));
}

TEST_F(DecompositionTest, OfAnEmptyRuleTakesTheEmptyCode) {
    EXPECT_SUCCESS(mvarRule->ExpCode(L""));
    EXPECT_FAILURE(mvarRule->ExpCode(L"x"), IllegalCodeLength);
}

TEST_F(DecompositionTest, ComparesFixedBandsExactlyAndKeepsThePartsBefore) {
    const auto before = AddField(*mvarRule, L"F", L"F", 2);
    AddFixed(*mvarRule, L"A", L"x");
    const auto after = AddField(*mvarRule, L"G", L"G", 1);
    EXPECT_FAILURE(mvarRule->ExpCode(L"abXc"), FixedValueError);
    EXPECT_EQ(before->Value(), L"ab");
    EXPECT_EQ(after->Value(), L"");
    EXPECT_EQ(FieldValue(L"F"), L"");
    EXPECT_SUCCESS(mvarRule->ExpCode(L"abxc"));
    EXPECT_EQ(FieldValue(L"F"), L"ab");
    EXPECT_EQ(FieldValue(L"G"), L"c");
}

TEST_F(DecompositionTest, StopsAtAPartThatItsBandRefuses) {
    AddNumber(*mvarRule, L"N", 2);
    AddLetter(*mvarRule, L"L");
    EXPECT_FAILURE(mvarRule->ExpCode(L"abC"), InvalidParameter);
    EXPECT_FAILURE(mvarRule->ExpCode(L"127"), InvalidParameter);
    EXPECT_SUCCESS(mvarRule->ExpCode(L"12c"));
    EXPECT_EQ(mvarRule->Band(L"N")->Value(), L"12");
    EXPECT_EQ(mvarRule->Band(L"L")->Value(), L"C");
}

TEST_F(DecompositionTest, ConvertsBackThroughTheBandsOwnTree) {
    const auto field = AddField(*mvarRule, L"F", L"F", 2, smSimpleSwap);
    field->Relations()->Add({}, tvwFirst, L"aB", L"North");
    mvarRule->ExpCode(L"Ab");
    EXPECT_EQ(FieldValue(L"F"), L"North");
    EXPECT_EQ(field->Value(), L"Ab");
    EXPECT_FAILURE(mvarRule->ExpCode(L"zz"), NoRelatedRelation);
    EXPECT_EQ(field->Value(), L"zz");
    EXPECT_EQ(FieldValue(L"F"), L"North");
}

TEST_F(DecompositionTest, ConvertsLayersBackUnderTheNodeOfTheLayerBefore) {
    AddField(*mvarRule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*mvarRule, L"Region", L"Gebiet", 1, smLayersSwap);
    mvarRule->Relations().ImportNodes(L"4;,1,DE,Germany;1,2,B,Berlin;,3,AT,Austria;3,4,B,Burgenland");
    mvarRule->ExpCode(L"ATB");
    EXPECT_EQ(FieldValue(L"Land"), L"Austria");
    EXPECT_EQ(FieldValue(L"Gebiet"), L"Burgenland");
    EXPECT_FAILURE(mvarRule->ExpCode(L"DEX"), NoRelatedRelation);
    EXPECT_EQ(FieldValue(L"Land"), L"Germany");
    EXPECT_EQ(FieldValue(L"Gebiet"), L"Burgenland");
}

TEST_F(DecompositionTest, WithoutAFieldFailsAfterTheBandsAreSet) {
    mvarRule->Load(L"#####16\r0=F\r1=2\r5=2\r17");
    EXPECT_FAILURE(mvarRule->ExpCode(L"ab"), InvalidCall);
    EXPECT_EQ(mvarRule->Band(L"F")->Value(), L"ab");
}

TEST_F(DecompositionTest, ReversesWhatWasIssued) {
    const auto rule = OrdersRule();
    const auto answer = rule->GetLastCode.Subscribe([](const String&, String& value) { value = L"PO-24050100041"; });
    const String code = rule->GetCode(gsNewCode);
    const auto other = OrdersRule();
    other->ExpCode(code);
    for (const auto& band : rule->Bands())
        EXPECT_EQ(other->Band(band->Name())->Value(), band->Value());
    EXPECT_EQ(other->UsrFields().Item(L"Customer")->Value(), L"Acme");
}

} // namespace kestrel::test
