// What a check finds about single bands: numbers, formats and where values come from.
#include "engine/FormatTrials.h"
#include "support/Failures.h"
#include "support/RuleCheckFixture.h"

namespace kestrel::test {

using RuleCheckBandsTest_Numbers = RuleCheckFixture;
using RuleCheckBandsTest_Formats = RuleCheckFixture;
using RuleCheckBandsTest_Sources = RuleCheckFixture;

// ------------------------------------------------------------------------------------------------------------- numbers

TEST_F(RuleCheckBandsTest_Numbers, FirstNumberOfAnotherLength) {
    CountingRule(4, L"7", L"000");
    EXPECT_EQ(Found(FindingKind::FirstNumberLength),
              (Lines{L"[N] The first number 7 is written as '007', which does not have 4 character(s)."}));
    EXPECT_FAILURE(rule->GetCode(gsNewCode), IncorrectValueLength.WithDetail(L"N"));
    CountingRule(4, L"7", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, FirstNumberIsTheBeginWithoutADefault) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=P\r17\r16\r0=N\r1=3\r5=3\r8=12\r13=P\r17");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[N] The first number 12 is written as '12', which does not have 3 character(s)."}));
    Named(L"N")->SetInitStart(L"120");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, EndThatNeedsMoreCharacters) {
    CountingRule(3, L"1", L"000")->SetInitEnd(L"1000");
    EXPECT_EQ(Found(FindingKind::EndLength),
              (Lines{L"[N] The end 1000 is written as '1000', which has more than 3 character(s)."}));
    Named(L"N")->SetInitEnd(L"999");
    EXPECT_EQ(Found(FindingKind::EndLength), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, EndBelowTheBeginning) {
    CountingRule(3, L"200", L"000")->SetInitEnd(L"0199");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), (Lines{L"[N] The end 0199 lies below the beginning 200."}));
    Named(L"N")->SetInitEnd(L"0200");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, LetterEndBelowItsBeginning) {
    const auto letter = AddLetter(*rule, L"L", L"M");
    letter->SetInitStart(L"M");
    letter->SetInitEnd(L"C");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), (Lines{L"[L] The end C lies below the beginning M."}));
    letter->SetInitEnd(L"M");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, FewerThanAHundred) {
    CountingRule(2, L"1", L"00");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] There are only 99 number(s), from 1 to 99."}));
    CountingRule(2, L"99", L"00");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] There are only 1 number(s), from 99 to 99."}));
    CountingRule(4, L"9901", L"0000");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] There are only 99 number(s), from 9901 to 9999."}));
    CountingRule(4, L"9900", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    CountingRule(2, L"0", L"00");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

// From below zero on texts become shorter before they become longer.
TEST_F(RuleCheckBandsTest_Numbers, FewFromBelowZero) {
    CountingRule(2, L"-5", L"");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] There are only 5 number(s), from -5 to -1."}));
    String last;
    const auto host = rule->GetLastCode.Subscribe([&last](const String&, String& value) { value = last; });
    for (const auto* expected : {L"P-5", L"P-4", L"P-3", L"P-2", L"P-1"}) {
        last = rule->GetCode(gsNewCode);
        EXPECT_EQ(last, expected);
    }
    EXPECT_FAILURE(rule->GetCode(gsNewCode), IncorrectValueLength.WithDetail(L"N"));
    CountingRule(4, L"-105", L"");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] There are only 6 number(s), from -105 to -100."}));
    CountingRule(4, L"-500", L"");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, TracksNothing) {
    const auto number = CountingRule(3, L"1", L"000");
    number->TrackBands()->Remove(1);
    EXPECT_EQ(Found(FindingKind::TracksNothingEmpty),
              (Lines{L"[N] It tracks no band, so the last number is never asked for: its part of the code stays empty, "
                     L"and codes cannot be taken apart."}));
    EXPECT_EQ(rule->GetCode(gsNewCode), L"P");
    number->SetValue(L"7");
    EXPECT_EQ(Found(FindingKind::TracksNothing),
              (Lines{L"[N] It tracks no band, so the last number is never asked for: it stays '007'."}));
    EXPECT_EQ(rule->GetCode(gsNewCode), L"P007");
    number->TrackBands()->Add(L"P");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Numbers, LettersStay) {
    const auto letter = AddLetter(*rule, L"L", L"B");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[L] Issuing a code does not raise letters, and this one is not set: its "
                                         L"part of the code stays empty, and codes cannot be taken apart."}));
    letter->SetValue(L"B");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[L] Issuing a code does not raise letters: it stays 'B'."}));
    rule->Remove(L"L");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

// ------------------------------------------------------------------------------------------------------------- formats

TEST_F(RuleCheckBandsTest_Formats, NeverFits) {
    MacroRule(5, L"yymm");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[M] The format 'yymm' gives none of the values tried (numbers, dates, texts) 5 character(s)."}));
    MacroRule(4, L"yymm");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Formats, NeverFitsANumber) {
    CountingRule(3, L"1", L"0000");
    EXPECT_EQ(Found(FindingKind::FormatNeverFits),
              (Lines{L"[N] The format '0000' gives none of the values tried (numbers, dates, texts) 3 character(s)."}));
    CountingRule(5, L"10000", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Formats, AreTriedWithWhateverTheyApplyTo) {
    for (const auto* format : {L"", L">", L"<", L"0", L"000", L"unknown"}) {
        MacroRule(3, format);
        EXPECT_EQ(SentencesOf(*rule), Lines{}) << testing::PrintToString(String(format));
    }
    MacroRule(FormatTrials::LongestTried + 1, L"000");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "not tried";
}

TEST_F(RuleCheckBandsTest_Formats, ChangeTheirOwnResult) {
    MacroRule(3, L"\\X>");
    const auto found = Found(FindingKind::FormatUnstable);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0],
              L"[M] The format '\\X>' changes its own result: 'X01' becomes 'XX01'. Codes cannot be taken apart.");
    MacroRule(3, L">");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Formats, TextBeforeTheDigits) {
    CountingRule(4, L"1", L"\\N000");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The format '\\N000' writes 100 as 'N100', and the number cannot be read "
                                         L"back: the next code does not get the next one."}));
    const auto host = rule->GetLastCode.Subscribe([](const String&, String& value) { value = L"PN041"; });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PN001") << "it begins anew";
    CountingRule(4, L"1", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Formats, GroupedDigits) {
    CountingRule(5, L"1000", L"#,##0");
    EXPECT_EQ(Found(FindingKind::NumberUnreadable),
              (Lines{L"[N] The format '#,##0' writes 1000 as '1,000', and the number cannot be read back: the next "
                     L"code does not get the next one."}));
    CountingRule(3, L"100", L"#,##0");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "no number has a group";
}

TEST_F(RuleCheckBandsTest_Formats, TextAfterTheDigits) {
    CountingRule(4, L"1", L"000\\N");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The format '000\\N' writes the number 100 as '100N', which is no "
                                         L"number: codes cannot be taken apart."}));
    EXPECT_FAILURE(rule->ExpCode(L"P001N"), InvalidParameter);
    CountingRule(4, L"1", L"0000");
    EXPECT_SUCCESS(rule->ExpCode(L"P0001"));
}

// ---------------------------------------------------------------------------------------------- where values come from

TEST_F(RuleCheckBandsTest_Sources, NoStyle) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=P\r17\r16\r0=B\r17\r16\r0=N\r1=3\r13=P\r4=000\r5=3\r17");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[B] It has no style: its part of the code stays empty, and codes cannot be taken apart."}));
    EXPECT_FAILURE(rule->ExpCode(L"Px001"), StyleNotDefined);
    Named(L"B")->SetStyle(bsFixed);
    Named(L"B")->SetDefault(L"X");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Sources, FixedTextMissing) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=\r17\r16\r0=N\r1=3\r13=P\r4=000\r5=3\r17");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[P] The fixed text is missing: its part of the code stays empty, and codes cannot be taken apart."}));
    Named(L"P")->SetDefault(L"X");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Sources, BoundToNothing) {
    rule->Load(L"#####02\r0\r14\rF,,\r16\r0=B\r1=2\r6=\r17\r16\r0=N\r1=3\r13=B\r4=000\r5=3\r17");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[B] It is bound to no field or macro: no code can be issued."}));
    EXPECT_FAILURE(rule->GetCode(gsNewCode), InvalidCall);
    EXPECT_EQ(SentencesOf(*rule).size(), 1U) << "also when issuing has made an item of no name";
    Named(L"B")->SetDataField(rule->UsrFields().Item(L"F"));
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckBandsTest_Sources, ItemNoLongerInTheList) {
    const auto host =
        rule->UsrFields().BeforeRemove.Subscribe([](const String&, bool& cancel, const String&) { cancel = false; });
    rule->UsrFields().Add(L"Other");
    rule->UsrFields().Remove(L"Other");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    rule->UsrFields().Remove(L"Client");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] It is bound to 'Client', which is no longer in the list: no code can be issued."}));
    rule->UsrFields().Add(L"Client");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "issuing finds items by their names";
}

// A band that is converted in layers but is none of them is passed over: what it is bound to keeps no code from being
// issued.
TEST_F(RuleCheckBandsTest_Sources, BindingOfABandThatIsPassedOver) {
    rule->Load(L"#####02\r0\r14\rF,,\r16\r0=B\r1=2\r2=2\r5=1\r6=\r17\r16\r0=N\r1=3\r13=N\r4=000\r5=3\r17");
    const String passedOver =
        L"[B] It is converted in layers, but is not among the layers: issuing a code leaves it as it is.";
    const auto layers =
        rule->LayeredBands().BeforeRemove.Subscribe([](const String&, bool& cancel, const String&) { cancel = false; });
    rule->LayeredBands().Remove(L"B");
    EXPECT_EQ(SentencesOf(*rule).at(0), L"[B] It is bound to no field or macro.");
    EXPECT_EQ(SentencesOf(*rule).at(1), passedOver);
    EXPECT_SUCCESS(rule->GetCode(gsNewCode));
    Named(L"B")->SetDataField(rule->UsrFields().Item(L"F"));
    EXPECT_EQ(SentencesOf(*rule).at(0), passedOver);
    const auto host =
        rule->UsrFields().BeforeRemove.Subscribe([](const String&, bool& cancel, const String&) { cancel = false; });
    rule->UsrFields().Remove(L"F");
    EXPECT_EQ(SentencesOf(*rule).at(0), L"[B] It is bound to 'F', which is no longer in the list.");
    EXPECT_SUCCESS(rule->GetCode(gsNewCode));
}

} // namespace kestrel::test
