// GetCode: how a code comes about.
#include <limits>
#include <new>

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

class GenerationTest : public testing::Test {
  protected:
    // Answers GetLastCode and notes the patterns asked for.
    void AnswerLastCode(CodeClass& rule, const wchar_t* code) {
        mvarAnswer = code;
        mvarHandler = rule.GetLastCode.Subscribe([this](const String& filter, String& value) {
            EXPECT_EQ(value, L"");
            mvarFilters.push_back(filter);
            value = mvarAnswer;
        });
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    String mvarAnswer;
    Lines mvarFilters;
    Subscription mvarHandler;
};

using GenerationTest_Number = GenerationTest;
using GenerationTest_Bound = GenerationTest;
using GenerationTest_Layers = GenerationTest;

TEST_F(GenerationTest, IssuesTheNextCodeOfARealisticRule) {
    const auto rule = OrdersRule();
    AnswerLastCode(*rule, L"PO-24050100041");
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PO-24050100042");
    EXPECT_EQ(rule->GetCode(), L"PO-24050100041");
    EXPECT_EQ(mvarFilters, (Lines{L"PO-240501?????", L"PO-240501?????"}));
    rule->UsrFields().Item(L"Customer")->SetValue(L"widgets & co");
    mvarAnswer = L"";
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PO-24050200001");
}

TEST_F(GenerationTest, OfAnEmptyRuleIsEmpty) { EXPECT_EQ(mvarRule->GetCode(gsNewCode), L""); }

TEST_F(GenerationTest, RefusesAnUnknownStyleBeforeAnyBandChanges) {
    const auto rule = OrdersRule();
    AnswerLastCode(*rule, L"");
    for (const int style : {-1, 2, 99})
        EXPECT_FAILURE(rule->GetCode(style), InvalidParameter) << style;
    EXPECT_EQ(rule->Band(L"Period")->Value(), L"");
    EXPECT_EQ(mvarFilters, Lines{});
}

TEST_F(GenerationTest, JoinsWhatFixedAndLetterBandsHold) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto letter = AddLetter(*mvarRule, L"L", L"C");
    AddFixed(*mvarRule, L"B", L"-y");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x-y");
    letter->SetValue(L"D");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"xD-y");
}

TEST_F(GenerationTest, LooksNeitherAtTheUpperCaseFlagNorAtTheStyleOfTheRule) {
    AddFixed(*mvarRule, L"A", L"abc");
    mvarRule->SetStyle(csSimple);
    mvarRule->SetCodeUCased(true);
    EXPECT_EQ(mvarRule->GetCode(), L"abc");
}

TEST_F(GenerationTest_Number, WithoutTrackedBandsKeepsItsValueAndAsksNoOne) {
    const auto number = AddNumber(*mvarRule, L"N", 3);
    number->SetValue(L"7");
    AnswerLastCode(*mvarRule, L"999");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"007");
    EXPECT_EQ(mvarFilters, Lines{});
}

TEST_F(GenerationTest_Number, BeginsAtItsDefaultWhenTheHostKnowsNoCode) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 3, L"50")->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x050");
    mvarHandler.End();
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x050"); // no one listens
}

TEST_F(GenerationTest_Number, BeginsAtTheStartOfItsRangeWithoutADefault) {
    mvarRule->Load(L"#####16\r0=A\r1=0\r3=x\r17\r16\r0=N\r1=3\r4=000\r5=3\r8=20\r13=A\r17");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x020");
}

TEST_F(GenerationTest_Number, StepsOnlyForANewCode) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 3)->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"x099");
    EXPECT_EQ(mvarRule->GetCode(gsCurrent), L"x099");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x100");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x100"); // the host still has the same last code
}

TEST_F(GenerationTest_Number, IsNeverBelowItsDefault) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 3, L"500");
    number->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"x041");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x500");
    EXPECT_EQ(mvarRule->GetCode(gsCurrent), L"x500");
    mvarAnswer = L"x499";
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x500");
    mvarAnswer = L"x500";
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x501");
}

TEST_F(GenerationTest_Number, CountsAPartThatIsNoNumberAsZero) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 3, L"0")->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"xabc");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x001");
    EXPECT_FAILURE(mvarRule->GetCode(gsCurrent), InvalidParameter);
}

// The part of the last code does not begin with a number then, and so counts as 0.
TEST_F(GenerationTest_Number, IsTheFirstOneAgainUnderAFormatThatPutsTextBeforeTheDigits) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 4);
    number->SetFormate(L"\\N000");
    number->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"xN041");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"xN001");
    mvarAnswer = mvarRule->GetCode(gsNewCode);
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), mvarAnswer);
}

TEST_F(GenerationTest_Number, FailsForWantOfMemoryWhenThePatternIsLongerThanAnyText) {
    constexpr auto longest = std::numeric_limits<std::int32_t>::max();
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 3);
    number->TrackBands()->Add(L"A");
    number->SetLength(longest);
    EXPECT_THROW(static_cast<void>(mvarRule->GetCode()), std::bad_alloc) << "one band";
    for (const auto* name : {L"B", L"C", L"D"})
        AddNumber(*mvarRule, name, 3)->SetLength(longest);
    EXPECT_THROW(static_cast<void>(mvarRule->GetCode()), std::bad_alloc) << "a sum that wraps around in 32 bits";
    number->SetLength(static_cast<std::int32_t>(LongestText));
    EXPECT_THROW(static_cast<void>(mvarRule->GetCode()), std::bad_alloc) << "one character too many";
}

TEST_F(GenerationTest_Number, FindsNoPartBehindLengthsThatWrapAround) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 1);
    for (const auto* name : {L"B", L"C", L"D"}) { // tracked ones stand with their values, of whatever length they are
        AddNumber(*mvarRule, name, 1);
        number->TrackBands()->Add(name);
        mvarRule->Band(name)->SetLength(std::numeric_limits<std::int32_t>::max());
    }
    mvarRule->Band(L"D")->SetLength(2); // the sum before N is 1 beyond 32 bits
    mvarRule->Drag(L"N", {}, L"D");
    AnswerLastCode(*mvarRule, L"x7");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x1");
}

TEST_F(GenerationTest_Number, RefusesALastCodeOfAnotherLength) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 3);
    number->TrackBands()->Add(L"A");
    number->SetValue(L"5");
    for (const auto* code : {L"x01", L"x0001", L"x"}) {
        AnswerLastCode(*mvarRule, code);
        EXPECT_FAILURE(mvarRule->GetCode(gsNewCode), IncorrectPreviousCode);
    }
    EXPECT_EQ(number->Value(), L"005");
}

TEST_F(GenerationTest_Number, OverflowsItsLengthWithTheBandsError) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 2)->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"x99");
    EXPECT_FAILURE(mvarRule->GetCode(gsNewCode), IncorrectValueLength.WithDetail(L"N"));
}

TEST_F(GenerationTest_Number, StaysExactBeyondADouble) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = mvarRule->Add({.name = L"N", .style = bsIncreaseNumber, .defaultValue = L"1", .length = 18});
    number->TrackBands()->Add(L"A");
    AnswerLastCode(*mvarRule, L"x123456789012345678");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x123456789012345679");
}

TEST_F(GenerationTest_Number, AsksWithFixedAndTrackedBandsInThePattern) {
    AddFixed(*mvarRule, L"A", L"x?");
    const auto number = AddNumber(*mvarRule, L"N", 3);
    AddMacro(*mvarRule, L"Macro", L"M", 2);
    number->TrackBands()->Add(L"MACRO");
    AddField(*mvarRule, L"F", L"F", 2);
    AddLetter(*mvarRule, L"L")->SetValue(L"Q");
    mvarRule->UsrMacros().Item(L"M")->SetValue(L"24");
    mvarRule->UsrFields().Item(L"F")->SetValue(L"ab");
    AnswerLastCode(*mvarRule, L"x?00124abQ");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x?00224abQ");
    EXPECT_EQ(mvarFilters, (Lines{L"x????24???"}));
}

TEST_F(GenerationTest_Number, AsksOncePerBandThatTracks) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 2)->TrackBands()->Add(L"A");
    AddNumber(*mvarRule, L"O", 2)->TrackBands()->Add(L"N");
    AnswerLastCode(*mvarRule, L"x0105");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x0206");
    EXPECT_EQ(mvarFilters, (Lines{L"x????", L"x02??"}));
}

// Tracked names are joined with ";" and taken apart again.
TEST_F(GenerationTest_Number, TracksEachPartOfANameThatHoldsASeparator) {
    AddMacro(*mvarRule, L"A", L"A", 1);
    AddMacro(*mvarRule, L"B", L"B", 1);
    AddMacro(*mvarRule, L"C", L"C", 1);
    AddNumber(*mvarRule, L"N", 2)->TrackBands()->Append(L"c;A");
    for (const wchar_t* name : {L"A", L"B", L"C"})
        mvarRule->UsrMacros().Item(name)->SetValue(name);
    AnswerLastCode(*mvarRule, L"ABC01");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"ABC02");
    EXPECT_EQ(mvarFilters, (Lines{L"A?C??"}));
}

TEST_F(GenerationTest_Number, TracksNothingByOneNameWithoutText) {
    const auto number = AddNumber(*mvarRule, L"N", 2);
    number->SetValue(L"7");
    number->TrackBands()->Append(L"");
    AnswerLastCode(*mvarRule, L"41");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"07");
    EXPECT_EQ(mvarFilters, Lines{});
    number->TrackBands()->Append(L"");
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"42");
}

TEST_F(GenerationTest_Number, IsAskedForWhenTheHostLetsItTrackWhileAskedForAnother) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 1)->TrackBands()->Add(L"A");
    const auto later = AddNumber(*mvarRule, L"O", 1);
    AnswerLastCode(*mvarRule, L"x35");
    const auto handler = mvarRule->GetLastCode.Subscribe([&later](String&, String&) {
        if (later->TrackBands()->Count() == 0) later->TrackBands()->Add(L"A");
    });
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x46");
    EXPECT_EQ(mvarFilters, (Lines{L"x??", L"x??"}));
}

TEST_F(GenerationTest_Number, IsPassedOverWhenTheHostRemovesItsBandWhileAsked) {
    AddFixed(*mvarRule, L"A", L"x");
    const auto number = AddNumber(*mvarRule, L"N", 2);
    number->TrackBands()->Add(L"A");
    const auto handler = mvarRule->GetLastCode.Subscribe([this](String&, String& value) {
        mvarRule->Remove(L"N");
        value = L"x41";
    });
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x");
    EXPECT_EQ(number->Value(), L"");
}

TEST_F(GenerationTest_Number, IgnoresWhatTheHostDoesToThePattern) {
    AddFixed(*mvarRule, L"A", L"x");
    AddNumber(*mvarRule, L"N", 2)->TrackBands()->Add(L"A");
    const auto handler = mvarRule->GetLastCode.Subscribe([](String& filter, String& value) {
        filter = L"something else";
        value = L"x01";
    });
    EXPECT_EQ(mvarRule->GetCode(gsNewCode), L"x02");
}

TEST_F(GenerationTest_Bound, TakesTheValueOfItsFieldOrMacro) {
    const auto field = AddField(*mvarRule, L"F", L"F", 2);
    AddMacro(*mvarRule, L"M", L"M", 4)->SetFormate(L"yymm");
    mvarRule->UsrFields().Item(L"F")->SetValue(L"ab");
    mvarRule->UsrMacros().Item(L"M")->SetValue(L"2024-05-06");
    EXPECT_EQ(mvarRule->GetCode(), L"ab2405");
    mvarRule->UsrFields().Item(L"F")->SetValue(L"abc");
    EXPECT_FAILURE(mvarRule->GetCode(), IncorrectValueLength.WithDetail(L"F"));
    EXPECT_EQ(field->Value(), L"ab");
}

TEST_F(GenerationTest_Bound, ConvertsThroughItsOwnTree) {
    const auto field = AddField(*mvarRule, L"F", L"F", 2, smSimpleSwap);
    mvarRule->UsrFields().Item(L"F")->SetValue(L"north");
    EXPECT_FAILURE(mvarRule->GetCode(), NoRelations);
    field->Relations()->Add({}, tvwFirst, L"01", L"North");
    EXPECT_EQ(mvarRule->GetCode(), L"01");
    EXPECT_EQ(mvarRule->UsrFields().Item(L"F")->Value(), L"north");
    mvarRule->UsrFields().Item(L"F")->SetValue(L"south");
    EXPECT_FAILURE(mvarRule->GetCode(), NoRelatedRelation);
    mvarRule->UsrFields().Item(L"F")->SetValue(L"");
    EXPECT_FAILURE(mvarRule->GetCode(), InvalidParameter);
}

TEST_F(GenerationTest_Bound, WithoutAFieldFails) {
    mvarRule->Load(L"#####16\r0=F\r1=2\r17");
    EXPECT_FAILURE(mvarRule->GetCode(), InvalidCall);
}

TEST_F(GenerationTest_Layers, ConvertEachUnderTheNodeOfTheLayerBefore) {
    AddField(*mvarRule, L"Region", L"Gebiet", 1, smLayersSwap);
    AddField(*mvarRule, L"Country", L"Land", 2, smLayersSwap);
    mvarRule->LayeredBands().MoveItem(L"Country", L"Region", {});
    mvarRule->Relations().ImportNodes(L"4;,1,DE,Germany;1,2,B,Berlin;,3,AT,Austria;3,4,B,Burgenland");
    mvarRule->UsrFields().Item(L"Land")->SetValue(L"austria");
    mvarRule->UsrFields().Item(L"Gebiet")->SetValue(L"Burgenland");
    EXPECT_EQ(mvarRule->GetCode(), L"BAT");
    mvarRule->UsrFields().Item(L"Gebiet")->SetValue(L"Berlin");
    EXPECT_FAILURE(mvarRule->GetCode(), NoRelatedRelation);
}

TEST_F(GenerationTest_Layers, KeepWhatWasSetBeforeTheFailure) {
    const auto country = AddField(*mvarRule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*mvarRule, L"Region", L"Gebiet", 1, smLayersSwap);
    mvarRule->Relations().ImportNodes(L"1;,1,DE,Germany");
    mvarRule->UsrFields().Item(L"Land")->SetValue(L"Germany");
    mvarRule->UsrFields().Item(L"Gebiet")->SetValue(L"Berlin");
    EXPECT_FAILURE(mvarRule->GetCode(), NoRelatedRelation);
    EXPECT_EQ(country->Value(), L"DE");
}

TEST_F(GenerationTest_Layers, OfABandThatIsBoundToNothingFail) {
    AddFixed(*mvarRule, L"A", L"x");
    mvarRule->LayeredBands().Add(L"A");
    EXPECT_FAILURE(mvarRule->GetCode(), ObjectNotSet);
    mvarRule->Load(L"#####14\rF\r16\r0=R\r1=2\r2=2\r17");
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"R");
    EXPECT_FAILURE(mvarRule->GetCode(), InvalidCall);
}

TEST_F(GenerationTest_Layers, WithoutATreeFail) {
    AddField(*mvarRule, L"R", L"F", 1, smLayersSwap);
    mvarRule->UsrFields().Item(L"F")->SetValue(L"x");
    EXPECT_FAILURE(mvarRule->GetCode(), NoRelations);
}

} // namespace kestrel::test
