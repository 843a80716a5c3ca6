// What a check of a rule finds: for each kind a rule that has it, and one beside it that has not.
#include <gtest/gtest.h>

#include "engine/FormatTrials.h"
#include "support/CheckedRules.h"
#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

class RuleCheckTest : public testing::Test {
  protected:
    [[nodiscard]] Lines Found(FindingKind kind) const { return SentencesOf(*rule, kind); }
    [[nodiscard]] Ref<Band> Named(const wchar_t* name) const { return rule->Band(name); }
    // A rule whose only band is a number that tracks a fixed band.
    Ref<Band> CountingRule(std::int32_t length, const String& start, const String& format) {
        rule = Make<CodeClass>();
        AddFixed(*rule, L"P", L"P");
        auto band = AddNumber(*rule, L"N", length, start);
        band->SetFormate(format);
        band->TrackBands()->Add(L"P");
        return band;
    }
    // A rule with a band bound to a macro.
    Ref<Band> MacroRule(std::int32_t length, const String& format) {
        rule = GoodRule();
        auto band = AddMacro(*rule, L"M", L"Any", length);
        band->SetFormate(format);
        return band;
    }
    // What the rule holds after it was stored and read again.
    [[nodiscard]] Ref<CodeClass> Reloaded() const {
        auto copy = Make<CodeClass>();
        copy->Load(rule->Definition());
        return copy;
    }

    StandIns standIns;
    Ref<CodeClass> rule = GoodRule();
};

using RuleCheckTest_Numbers = RuleCheckTest;
using RuleCheckTest_Formats = RuleCheckTest;
using RuleCheckTest_Tracked = RuleCheckTest;
using RuleCheckTest_Sources = RuleCheckTest;
using RuleCheckTest_Relations = RuleCheckTest;
using RuleCheckTest_Layers = RuleCheckTest;
using RuleCheckTest_Names = RuleCheckTest;
using RuleCheckTest_Unused = RuleCheckTest;
using RuleCheckTest_Rule = RuleCheckTest;

TEST_F(RuleCheckTest, FindsNothingInAGoodRule) {
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(rule->Check()->Count(), 0);
    EXPECT_EQ(SentencesOf(*Reloaded()), Lines{});
}

TEST_F(RuleCheckTest, FindsNothingInARuleThatIsNotBegun) { EXPECT_EQ(SentencesOf(*Make<CodeClass>()), Lines{}); }

TEST_F(RuleCheckTest, TellsBandByBandAndOfTheRuleLast) {
    rule->SetStyle(csSimple);
    Named(L"Number")->TrackBands()->Remove(1);
    Named(L"Period")->SetFormate(L"yyyy-mm-dd");
    const auto findings = CheckRule(*rule);
    ASSERT_EQ(findings.size(), 4U);
    EXPECT_EQ(findings[0].band, Named(L"Period"));
    EXPECT_EQ(findings[0].kind, FindingKind::FormatNeverFits);
    EXPECT_EQ(findings[0].arguments, (Lines{L"yyyy-mm-dd", L"4"}));
    EXPECT_EQ(findings[1].band, Named(L"Number"));
    EXPECT_FALSE(findings[2].band);
    EXPECT_EQ(findings[3].sentence, L"In the simple style codes cannot be taken apart.");
    const auto names = rule->Check();
    ASSERT_EQ(names->Count(), 4);
    EXPECT_EQ(names->Item(1), findings[0].sentence);
    EXPECT_NE(names, rule->Check()) << "a collection of its own each time";
}

TEST_F(RuleCheckTest, KeepsASentenceThatComesTwice) {
    for (const auto* name : {L"X;Y", L"X;Z"})
        rule->UsrFields().Add(name, L"the same", {}, {})->SetForeignName(L"a,b");
    Named(L"Number")->TrackBands()->ImportNames(L"no;no");
    const auto twice = Lines(2, L"[Number] It tracks 'no', which is no band.");
    EXPECT_EQ(Found(FindingKind::TracksNoBand), twice);
    const auto names = rule->Check()->Snapshot();
    EXPECT_EQ(Lines(names.begin(), names.begin() + 2), twice);
}

TEST_F(RuleCheckTest, PutsAnyTextIntoASentence) {
    Named(L"Number")->TrackBands()->ImportNames(L"a * b");
    EXPECT_EQ(Found(FindingKind::TracksNoBand), (Lines{L"[Number] It tracks 'a * b', which is no band."}));
}

// ------------------------------------------------------------------------------------------------------------ numbers

TEST_F(RuleCheckTest_Numbers, FirstNumberOfAnotherLength) {
    CountingRule(4, L"7", L"000");
    EXPECT_EQ(Found(FindingKind::FirstNumberLength),
              (Lines{L"[N] The first number 7 is written as '007', which has not 4 character(s)."}));
    EXPECT_FAILURE(rule->GetCode(gsNewCode), IncorrectValueLength.WithDetail(L"N"));
    CountingRule(4, L"7", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Numbers, FirstNumberIsTheBeginWithoutADefault) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=P\r17\r16\r0=N\r1=3\r5=3\r8=12\r13=P\r17");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[N] The first number 12 is written as '12', which has not 3 character(s)."}));
    Named(L"N")->SetInitStart(L"120");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Numbers, EndThatNeedsMoreCharacters) {
    CountingRule(3, L"1", L"000")->SetInitEnd(L"1000");
    EXPECT_EQ(Found(FindingKind::EndLength),
              (Lines{L"[N] The end 1000 is written as '1000', which has more than 3 character(s)."}));
    Named(L"N")->SetInitEnd(L"999");
    EXPECT_EQ(Found(FindingKind::EndLength), Lines{});
}

TEST_F(RuleCheckTest_Numbers, EndBelowTheBeginning) {
    CountingRule(3, L"200", L"000")->SetInitEnd(L"0199");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), (Lines{L"[N] The end 0199 lies below the beginning 200."}));
    Named(L"N")->SetInitEnd(L"0200");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), Lines{});
}

TEST_F(RuleCheckTest_Numbers, LetterEndBelowItsBeginning) {
    const auto letter = AddLetter(*rule, L"L", L"M");
    letter->SetInitStart(L"M");
    letter->SetInitEnd(L"C");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), (Lines{L"[L] The end C lies below the beginning M."}));
    letter->SetInitEnd(L"M");
    EXPECT_EQ(Found(FindingKind::EndBelowBegin), Lines{});
}

TEST_F(RuleCheckTest_Numbers, FewerThanAHundred) {
    CountingRule(2, L"1", L"00");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The numbers run only from 1 to 99; that many they are: 99."}));
    CountingRule(2, L"99", L"00");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The numbers run only from 99 to 99; that many they are: 1."}));
    CountingRule(4, L"9901", L"0000");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The numbers run only from 9901 to 9999; that many they are: 99."}));
    CountingRule(4, L"9900", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    CountingRule(2, L"0", L"00");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Numbers, TracksNothing) {
    const auto number = CountingRule(3, L"1", L"000");
    number->TrackBands()->Remove(1);
    EXPECT_EQ(
        Found(FindingKind::TracksNothingEmpty),
        (Lines{
            L"[N] It tracks no band, so that the last number is never asked for: its part of the code stays empty."}));
    EXPECT_EQ(rule->GetCode(gsNewCode), L"P");
    number->SetValue(L"7");
    EXPECT_EQ(Found(FindingKind::TracksNothing),
              (Lines{L"[N] It tracks no band, so that the last number is never asked for: it stays '007'."}));
    EXPECT_EQ(rule->GetCode(gsNewCode), L"P007");
    number->TrackBands()->Add(L"P");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Numbers, LettersStay) {
    const auto letter = AddLetter(*rule, L"L", L"B");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[L] Issuing a code does not raise letters, and this one is not set: its part of "
                     L"the code stays empty."}));
    letter->SetValue(L"B");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[L] Issuing a code does not raise letters: it stays 'B'."}));
    rule->Remove(L"L");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

// ------------------------------------------------------------------------------------------------------------ formats

TEST_F(RuleCheckTest_Formats, NeverFits) {
    MacroRule(5, L"yymm");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[M] The format 'yymm' gives none of the values tried (numbers, dates, texts) 5 character(s)."}));
    MacroRule(4, L"yymm");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Formats, NeverFitsANumber) {
    CountingRule(3, L"1", L"0000");
    EXPECT_EQ(Found(FindingKind::FormatNeverFits),
              (Lines{L"[N] The format '0000' gives none of the values tried (numbers, dates, texts) 3 character(s)."}));
    CountingRule(5, L"10000", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Formats, AreTriedWithWhateverTheyApplyTo) {
    for (const auto* format : {L"", L">", L"<", L"0", L"000", L"unknown"}) {
        MacroRule(3, format);
        EXPECT_EQ(SentencesOf(*rule), Lines{}) << testing::PrintToString(String(format));
    }
    MacroRule(FormatTrials::LongestTried + 1, L"000");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "not tried";
}

TEST_F(RuleCheckTest_Formats, ChangeTheirOwnResult) {
    MacroRule(3, L"\\X>");
    const auto found = Found(FindingKind::FormatUnstable);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0],
              L"[M] The format '\\X>' changes its own result: 'X01' becomes 'XX01'. Codes cannot be taken apart.");
    MacroRule(3, L">");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Formats, TextBeforeTheDigits) {
    CountingRule(4, L"1", L"\\N000");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[N] The format '\\N000' writes 100 as 'N100', and the number cannot be read back: "
                     L"the next code does not get the next one."}));
    const auto host = rule->GetLastCode.Subscribe([](const String&, String& value) { value = L"PN041"; });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"PN001") << "it begins anew";
    CountingRule(4, L"1", L"0000");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Formats, GroupedDigits) {
    CountingRule(5, L"1000", L"#,##0");
    EXPECT_EQ(
        Found(FindingKind::NumberUnreadable),
        (Lines{L"[N] The format '#,##0' writes 1000 as '1,000', and the number cannot be read back: the next code does "
               L"not get the next one."}));
    CountingRule(3, L"100", L"#,##0");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "no number has a group";
}

TEST_F(RuleCheckTest_Formats, TextAfterTheDigits) {
    CountingRule(4, L"1", L"000\\N");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[N] The format '000\\N' writes the number 100 as '100N', which is no "
                                         L"number: codes cannot be taken apart."}));
    EXPECT_FAILURE(rule->ExpCode(L"P001N"), InvalidParameter);
    CountingRule(4, L"1", L"0000");
    EXPECT_SUCCESS(rule->ExpCode(L"P0001"));
}

// ------------------------------------------------------------------------------------------------------ tracked bands

TEST_F(RuleCheckTest_Tracked, NameOfNoBand) {
    Named(L"Number")->TrackBands()->ImportNames(L"Period;Gone");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] It tracks 'Gone', which is no band."}));
    Named(L"Number")->TrackBands()->ImportNames(L"period");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Tracked, Itself) {
    Named(L"Number")->TrackBands()->ImportNames(L"Period;NUMBER");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] It tracks itself."}));
}

TEST_F(RuleCheckTest_Tracked, ANumberThatComesLater) {
    const auto later = AddNumber(*rule, L"Later", 3);
    later->TrackBands()->Add(L"Number");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Number")->TrackBands()->Add(L"Later");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] It tracks 'Later', which comes later and has the number of the code "
                     L"before at that time."}));
}

TEST_F(RuleCheckTest_Tracked, NameWithAComma) {
    AddFixed(*rule, L"A,B", L"X");
    Named(L"Number")->TrackBands()->Add(L"A,B");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] It tracks 'A,B': a saved definition loses the name of a tracked band "
                     L"that holds a comma."}));
    EXPECT_EQ(Reloaded()->Band(L"Number")->TrackBands()->NamesText(), L"Period");
}

TEST_F(RuleCheckTest_Tracked, NameWithASemicolon) {
    AddFixed(*rule, L"A;B", L"X");
    Named(L"Number")->TrackBands()->Add(L"A;B");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] It tracks 'A;B': the name of a tracked band that holds a semicolon is "
                     L"not recognised when a code is issued."}));
}

// A tracked field whose name holds a semicolon stands as unknown in the pattern that the host is asked with.
TEST_F(RuleCheckTest_Tracked, NameWithASemicolonIsNotRecognised) {
    rule = Make<CodeClass>();
    AddMacro(*rule, L"A;B", L"M", 2);
    const auto number = AddNumber(*rule, L"N", 3);
    number->TrackBands()->Add(L"A;B");
    rule->UsrMacros().Item(L"M")->SetValue(L"xy");
    String asked;
    const auto host = rule->GetLastCode.Subscribe([&asked](const String& filter, String&) { asked = filter; });
    EXPECT_EQ(rule->GetCode(gsNewCode), L"xy001");
    EXPECT_EQ(asked, L"?????");
    EXPECT_EQ(SentencesOf(*rule).size(), 1U);
}

TEST_F(RuleCheckTest_Tracked, OtherNamesComeBack) {
    AddFixed(*rule, L"A:B=C", L"X");
    Named(L"Number")->TrackBands()->Add(L"A:B=C");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"Number")->TrackBands()->NamesText(), L"Period,A:B=C");
}

// ---------------------------------------------------------------------------------------------- where values come from

TEST_F(RuleCheckTest_Sources, NoStyle) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=P\r17\r16\r0=B\r17\r16\r0=N\r1=3\r13=P\r4=000\r5=3\r17");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[B] It has no style: its part of the code stays empty."}));
    EXPECT_FAILURE(rule->ExpCode(L"Px001"), StyleNotDefined);
    Named(L"B")->SetStyle(bsFixed);
    Named(L"B")->SetDefault(L"X");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Sources, FixedTextMissing) {
    rule->Load(L"#####02\r0\r16\r0=P\r1=0\r3=\r17\r16\r0=N\r1=3\r13=P\r4=000\r5=3\r17");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[P] The fixed text is missing: its part of the code stays empty."}));
    Named(L"P")->SetDefault(L"X");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Sources, BoundToNothing) {
    rule->Load(L"#####02\r0\r14\rF,,\r16\r0=B\r1=2\r6=\r17\r16\r0=N\r1=3\r13=B\r4=000\r5=3\r17");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[B] It is bound to no field or macro: no code can be issued."}));
    EXPECT_FAILURE(rule->GetCode(gsNewCode), InvalidCall);
    EXPECT_EQ(SentencesOf(*rule).size(), 1U) << "also when issuing has made an item of no name";
    Named(L"B")->SetDataField(rule->UsrFields().Item(L"F"));
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Sources, ItemNoLongerInTheList) {
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

// ---------------------------------------------------------------------------------------------------------- relations

TEST_F(RuleCheckTest_Relations, None) {
    Named(L"Customer")->Relations()->Cls();
    rule->Relations().Cls();
    const String text = L"It is converted, but there are no relations: no code can be issued.";
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] " + text, L"[Country] " + text, L"[Region] " + text}));
}

TEST_F(RuleCheckTest_Relations, CodesOfAnotherLength) {
    Named(L"Customer")->Relations()->ImportNodes(L"3;,1,01,Acme;,2,2,Widgets;,3,003,Third");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] 2 relation(s) have a code, first '2', that as the band writes it has "
                     L"not 2 character(s)."}));
    rule->Relations().ImportNodes(L"2;,1,DE,Germany;1,2,NO,North");
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,01,Acme");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Region] 1 relation(s) have a code, first 'NO', that as the band writes it has "
                     L"not 1 character(s)."}));
}

TEST_F(RuleCheckTest_Relations, CodesThatAFormatChanges) {
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,1,Acme");
    Named(L"Customer")->SetFormate(L"00");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Customer] 1 relation(s) have a code, first '1', that the format '00' changes: codes cannot be taken "
               L"apart."}));
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,01,Acme");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Relations, SameCodesAndValuesInAnotherCase) {
    rule->SetCodeUCased(false);
    Named(L"Customer")->Relations()->ImportNodes(L"3;,1,ab,Acme;,2,AB,Best;,3,cc,acme");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Customer] 1 relation(s), first 'AB', have the same code as another one beside them, in small or "
               L"capital letters.",
               L"[Customer] 1 relation(s), first 'acme', have the same value as another one beside them, in small or "
               L"capital letters."}));
    Named(L"Customer")->Relations()->ImportNodes(L"3;,1,ab,Acme;,2,ba,Best;,3,cc,Acmes");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Relations, SameCodesUnderDifferentOnesAreWell) {
    rule->Relations().ImportNodes(L"5;,1,DE,Germany;1,2,N,North;,3,FR,France;3,4,N,North;3,5,n,Other");
    EXPECT_EQ(
        Found(FindingKind::SameCodes),
        (Lines{L"[Region] 1 relation(s), first 'n', have the same code as another one beside them, in small or capital "
               L"letters."}));
}

TEST_F(RuleCheckTest_Relations, SmallLetters) {
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,ab,Acme;,2,CD,Best");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] The rule writes capitals, but 1 relation(s) have a code with small "
                     L"letters, first 'ab'."}));
    rule->SetCodeUCased(false);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Relations, SeparatorsInCodesAndValues) {
    const auto tree = Named(L"Customer")->Relations();
    tree->Add({}, tvwFirst, L"03", L"Smith, Sons");
    tree->Add({}, tvwFirst, L"0;", L"Other");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] 2 relation(s), first '03', hold a comma, semicolon or line break: a "
                     L"saved definition loses them."}));
    EXPECT_EQ(Reloaded()->Band(L"Customer")->Relations()->Node(3)->Tag(), L"Smith");
    tree->Remove(4);
    tree->Node(3)->SetTag(L"Smith: Sons = 2");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"Customer")->Relations()->Node(3)->Tag(), L"Smith: Sons = 2");
}

TEST_F(RuleCheckTest_Relations, LayerWithoutAny) {
    rule->Relations().ImportNodes(L"1;,1,DE,Germany");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'DE': no code can be issued for "
               L"these.",
               L"[Region] Its layer, layer 2, has no relations: no code can be issued."}));
}

TEST_F(RuleCheckTest_Relations, CodeWithoutAnyBelow) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;,3,FR,France");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'FR': no code can be issued for "
               L"these."}));
}

TEST_F(RuleCheckTest_Relations, BelowTheLastLayer) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,X,Village");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"1 relation(s), first 'X', lie below the last layer and are never used."}));
    rule->Relations().Remove(3);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,01,Acme;1,2,02,Branch");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] 1 relation(s), first '02', lie below the last layer and are never used."}));
}

TEST_F(RuleCheckTest_Relations, BeforeTheOneThatTheyLieBelow) {
    rule->Relations().Drag(2, tvwLast, 1); // behind its own child
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"1 relation(s), first 'N', stand before the one that they lie below: a saved "
                                         L"definition loses them."}));
    EXPECT_EQ(Reloaded()->Relations().Count(), 0);
}

TEST_F(RuleCheckTest_Relations, BelowOneThatLeftTheTree) {
    auto& tree = rule->Relations();
    tree.Add({}, tvwFirst, L"AT", L"germany");
    tree.Node(5)->SetTag(L"Austria");
    EXPECT_FAILURE(tree.Drag(99, tvwNext, 1), OutOfRange);
    EXPECT_EQ(Found(FindingKind::RelationsLost).size(), 1U);
}

// ------------------------------------------------------------------------------------------------------------- layers

TEST_F(RuleCheckTest_Layers, BandNotAmongThem) {
    const auto host =
        rule->LayeredBands().BeforeRemove.Subscribe([](const String&, bool& cancel, const String&) { cancel = false; });
    rule->LayeredBands().Remove(L"Region");
    rule->Relations().ImportNodes(L"1;,1,DE,Germany");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{
            L"[Region] It is converted in layers, but is not among the layers: issuing a code leaves it as it is."}));
}

TEST_F(RuleCheckTest_Layers, BandTwiceAmongThem) {
    rule->LayeredBands().Add(L"REGION");
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,N,North");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Region] It is more than once among the layers: the later one is looked up below "
                     L"the earlier one."}));
}

TEST_F(RuleCheckTest_Layers, BandThatIsNotConverted) {
    rule->LayeredBands().Add(L"Prefix");
    EXPECT_EQ(Found(FindingKind::NotLayered),
              (Lines{L"[Prefix] It is among the layers, but is not converted in layers."}));
    rule->LayeredBands().Remove(L"Prefix");
    EXPECT_EQ(Found(FindingKind::NotLayered), Lines{});
}

TEST_F(RuleCheckTest_Layers, NameOfNoBand) {
    const auto host = rule->LayeredBands().BeforeAdd.Subscribe(
        [](const String&, bool& cancel, const String&, std::int32_t) { cancel = false; });
    rule->LayeredBands().Add(L"Nowhere");
    EXPECT_EQ(Found(FindingKind::LayerOfNoBand), (Lines{L"The layer 'Nowhere' is no band: no code can be issued."}));
    rule->LayeredBands().Remove(L"Nowhere");
    EXPECT_EQ(Found(FindingKind::LayerOfNoBand), Lines{});
}

TEST_F(RuleCheckTest_Layers, NameWithASeparator) {
    rule = Make<CodeClass>();
    AddField(*rule, L"A,B", L"F", 1, smLayersSwap);
    AddNumber(*rule, L"N", 3)->TrackBands()->ImportNames(L"A,B");
    rule->Relations().Add({}, tvwFirst, L"X", L"Y");
    EXPECT_EQ(Found(FindingKind::LayerNameNotSaved),
              (Lines{L"[A,B] Its name holds a comma or semicolon: a saved definition loses it as a layer."}));
    EXPECT_EQ(Reloaded()->LayeredBands().Count(), 0);
}

TEST_F(RuleCheckTest_Layers, OtherNamesComeBack) {
    rule = Make<CodeClass>();
    AddField(*rule, L"A:B=C", L"F", 1, smLayersSwap);
    AddField(*rule, L"A,B;C", L"G", 1);
    AddNumber(*rule, L"N", 3)->TrackBands()->Add(L"A:B=C");
    rule->Relations().Add({}, tvwFirst, L"X", L"Y");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Definition(), rule->Definition());
}

// -------------------------------------------------------------------------------------------------------------- names

TEST_F(RuleCheckTest_Names, LineBreaks) {
    AddFixed(*rule, L"A\rB", L"X");
    AddFixed(*rule, L"C", L"X\rY");
    Named(L"Period")->SetFormate(L"yy\r");
    EXPECT_EQ(Found(FindingKind::LineBreak),
              (Lines{L"[Period] A line break in 'Format': a saved definition loses what follows it.",
                     L"[A\rB] A line break in 'Name': a saved definition loses what follows it.",
                     L"[C] A line break in 'Last Value': a saved definition loses what follows it."}));
    EXPECT_EQ(BandsOf(*Reloaded()), L"Prefix Period Customer Country Region Number A C");
}

TEST_F(RuleCheckTest_Names, LineFeedsComeBack) {
    AddFixed(*rule, L"A\nB", L"X\nY");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"A\nB")->Default(), L"X\nY");
}

TEST_F(RuleCheckTest_Names, LineBreakInTheRulesName) {
    rule->SetName(L"A\rB");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "it is not written";
    rule->SetStyle(csSimple);
    EXPECT_EQ(Found(FindingKind::LineBreak),
              (Lines{L"A line break in 'Name': a saved definition loses what follows it."}));
}

TEST_F(RuleCheckTest_Names, FieldsAndMacros) {
    rule->UsrFields().Add(L"A,B");
    rule->UsrMacros().Add(L"M", L"shown; as");
    rule->UsrMacros().Add(L"N:O=P", L"shown: as =");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"The field or macro 'A,B' holds a comma, semicolon or line break in a name: a saved definition loses "
               L"it.",
               L"The field or macro 'M' holds a comma, semicolon or line break in a name: a saved definition loses "
               L"it."}));
    const auto copy = Reloaded();
    EXPECT_FALSE(copy->UsrFields().HasKey(L"A,B"));
    EXPECT_EQ(copy->UsrMacros().Item(L"M")->ForeignName(), L"shown");
    EXPECT_EQ(FailureOf([&] { static_cast<void>(copy->UsrMacros().Item(L"N:O=P")); }), Failure{});
}

// ------------------------------------------------------------------------------------------ what issuing does not use

TEST_F(RuleCheckTest_Unused, BeginBesideADefault) {
    const auto number = Named(L"Number");
    number->SetDefault(L"500");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "every number begins with 1 if it is told nothing";
    number->SetInitStart(L"500");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    number->SetInitStart(L"200");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] Numbers begin with 500; the beginning 200 is not used and kept for the "
                     L"application."}));
}

TEST_F(RuleCheckTest_Unused, End) {
    Named(L"Number")->SetInitEnd(L"5000");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] Numbers do not stop at the end 5000; it is kept for the application."}));
    Named(L"Number")->SetInitEnd(L"");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Unused, Trigger) {
    Named(L"Number")->SetIncrMode(imTrigered);
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] The raise mode 'Triggered Increase' and the trigger band '(None)' are "
                     L"not used and kept for the application."}));
    Named(L"Number")->SetIncrMode(imIncrAuto);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Number")->SetTrigerBand(Named(L"Period"));
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Number] The raise mode 'Auto Increase' and the trigger band 'Period' are not "
                     L"used and kept for the application."}));
}

TEST_F(RuleCheckTest_Unused, SmallLettersInAFixedText) {
    Named(L"Prefix")->SetDefault(L"Inv-");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Prefix] The rule writes capitals, but the fixed text 'Inv-' stays as it is."}));
    rule->SetCodeUCased(false);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Unused, InARealisticRule) {
    EXPECT_EQ(
        SentencesOf(*OrdersRule()),
        (Lines{L"[Number] Numbers do not stop at the end 099999; it is kept for the application.",
               L"[Number] The raise mode 'Triggered Increase' and the trigger band 'Period' are not used and kept for "
               L"the application."}));
}

// ------------------------------------------------------------------------------------------------------ the whole rule

TEST_F(RuleCheckTest_Rule, NothingTellsRecordsApart) {
    rule->Remove(L"Number");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"No band tells two records with the same fields apart: they get the same code."}));
    AddNumber(*rule, L"Number", 4)->TrackBands()->Add(L"Prefix");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Rule, SimpleStyle) {
    rule->SetStyle(csSimple);
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"In the simple style codes cannot be taken apart."}));
    rule->SetStyle(csNormal);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

} // namespace kestrel::test
