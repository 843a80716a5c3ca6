// What a check of a rule finds: its sentences, and what it tells of the rule as a whole. For each kind of finding there
// is a rule that has it, and one beside it that has not; so in the tests of the other kinds.
#include "support/Orders.h"
#include "support/RuleCheckFixture.h"

namespace kestrel::test {

using RuleCheckTest = RuleCheckFixture;
using RuleCheckTest_Rule = RuleCheckFixture;
using RuleCheckTest_Unused = RuleCheckFixture;

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

// ------------------------------------------------------------------------------------------- what issuing does not use

TEST_F(RuleCheckTest_Unused, BeginBesideADefault) {
    const auto number = Named(L"Number");
    number->SetDefault(L"500");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "every number begins with 1 if it is told nothing";
    number->SetInitStart(L"500");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    number->SetInitStart(L"200");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Number] Numbers begin with 500; the beginning 200 is not used; it is kept for the application."}));
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
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] The raise mode 'Triggered Increase' and the trigger band '(None)' "
                                         L"are not used; they are kept for the application."}));
    Named(L"Number")->SetIncrMode(imIncrAuto);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Number")->SetTrigerBand(Named(L"Period"));
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] The raise mode 'Auto Increase' and the trigger band 'Period' are "
                                         L"not used; they are kept for the application."}));
}

TEST_F(RuleCheckTest_Unused, SmallLettersInAFixedText) {
    Named(L"Prefix")->SetDefault(L"Inv-");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Prefix] The rule writes capitals, but the fixed text 'Inv-' stays as it is."}));
    rule->SetCodeUCased(false);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTest_Unused, InARealisticRule) {
    EXPECT_EQ(SentencesOf(*OrdersRule()),
              (Lines{L"[Number] Numbers do not stop at the end 099999; it is kept for the application.",
                     L"[Number] The raise mode 'Triggered Increase' and the trigger band 'Period' are not used; they "
                     L"are kept for the application."}));
}

} // namespace kestrel::test
