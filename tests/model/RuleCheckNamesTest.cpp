// What a check finds about names: of tracked bands, of bands and items, of the rule.
#include "support/Failures.h"
#include "support/RuleCheckFixture.h"

namespace kestrel::test {

using RuleCheckNamesTest_Tracked = RuleCheckFixture;
using RuleCheckNamesTest_Names = RuleCheckFixture;

// ------------------------------------------------------------------------------------------------------- tracked bands

TEST_F(RuleCheckNamesTest_Tracked, NameOfNoBand) {
    Named(L"Number")->TrackBands()->ImportNames(L"Period;Gone");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] It tracks 'Gone', which is no band."}));
    Named(L"Number")->TrackBands()->ImportNames(L"period");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckNamesTest_Tracked, Itself) {
    Named(L"Number")->TrackBands()->ImportNames(L"Period;NUMBER");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] It tracks itself."}));
}

TEST_F(RuleCheckNamesTest_Tracked, ANumberThatComesLater) {
    const auto later = AddNumber(*rule, L"Later", 3);
    later->TrackBands()->Add(L"Number");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Number")->TrackBands()->Add(L"Later");
    later->TrackBands()->Remove(1);
    EXPECT_EQ(Found(FindingKind::TracksLater), Lines{}) << "its value is always the same";
    later->TrackBands()->Add(L"Number");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{
            L"[Number] It tracks 'Later', which comes later and still holds the number of the previous code then."}));
}

TEST_F(RuleCheckNamesTest_Tracked, NameWithAComma) {
    AddFixed(*rule, L"A,B", L"X");
    Named(L"Number")->TrackBands()->Add(L"A,B");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Number] It tracks 'A,B': a saved definition loses the name of a tracked band that holds a comma."}));
    EXPECT_EQ(Reloaded()->Band(L"Number")->TrackBands()->NamesText(), L"Period");
}

// A fixed text is known to a number whatever its name is.
TEST_F(RuleCheckNamesTest_Tracked, NameOfAFixedBandWithASemicolonIsWell) {
    AddFixed(*rule, L"A;B", L"X");
    Named(L"Number")->TrackBands()->Add(L"A;B");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

// Letters are never raised, whatever they track.
TEST_F(RuleCheckNamesTest_Tracked, ALetterIsNotIssuedByThem) {
    AddMacro(*rule, L"A;B", L"M", 2);
    AddLetter(*rule, L"L", L"B")->TrackBands()->ImportNames(L"A;B");
    Named(L"L")->TrackBands()->Add(L"A;B");
    AddNumber(*rule, L"Later", 3)->TrackBands()->Add(L"Prefix");
    Named(L"L")->TrackBands()->Add(L"Later");
    EXPECT_EQ(Found(FindingKind::TrackedNameSplit), Lines{});
    EXPECT_EQ(Found(FindingKind::TracksLater), Lines{});
    Named(L"L")->TrackBands()->ImportNames(L"Gone");
    EXPECT_EQ(Found(FindingKind::TracksNoBand), (Lines{L"[L] It tracks 'Gone', which is no band."}));
}

TEST_F(RuleCheckNamesTest_Tracked, NameWithASemicolon) {
    AddMacro(*rule, L"A;B", L"M", 2);
    Named(L"Number")->TrackBands()->Add(L"A;B");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Number] It tracks 'A;B': the name of a tracked band that holds a semicolon "
                                         L"is not recognised when a code is issued."}));
}

// A tracked field whose name holds a semicolon stands as unknown in the pattern that the host is asked with.
TEST_F(RuleCheckNamesTest_Tracked, NameWithASemicolonIsNotRecognised) {
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

TEST_F(RuleCheckNamesTest_Tracked, OtherNamesComeBack) {
    AddFixed(*rule, L"A:B=C", L"X");
    Named(L"Number")->TrackBands()->Add(L"A:B=C");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"Number")->TrackBands()->NamesText(), L"Period,A:B=C");
}

// --------------------------------------------------------------------------------------------------------------- names

TEST_F(RuleCheckNamesTest_Names, LineBreaks) {
    AddFixed(*rule, L"A\rB", L"X");
    AddFixed(*rule, L"C", L"X\rY");
    Named(L"Period")->SetFormate(L"yy\r");
    EXPECT_EQ(Found(FindingKind::LineBreak),
              (Lines{L"[Period] A line break in 'Format': a saved definition loses what follows it.",
                     L"[A\rB] A line break in 'Name': a saved definition loses what follows it.",
                     L"[C] A line break in 'Last Value': a saved definition loses what follows it."}));
    EXPECT_EQ(BandsOf(*Reloaded()), L"Prefix Period Customer Country Region Number A C");
}

// The value that a field or macro band was given last is stored with it.
TEST_F(RuleCheckNamesTest_Names, LineBreakInAValue) {
    AddMacro(*rule, L"M", L"Any", 4)->SetValue(L"a\r17");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[M] A line break in 'Last Value': a saved definition loses what follows it."}));
    Named(L"M")->SetAllowDroped(false);
    EXPECT_TRUE(Reloaded()->Band(L"M")->AllowDroped()) << "the rest of the band is lost";
    Named(L"M")->SetValue(L"a\n17");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"M")->Value(), L"a\n17");
    EXPECT_FALSE(Reloaded()->Band(L"M")->AllowDroped());
}

TEST_F(RuleCheckNamesTest_Names, LineFeedsComeBack) {
    AddFixed(*rule, L"A\nB", L"X\nY");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"A\nB")->Default(), L"X\nY");
}

TEST_F(RuleCheckNamesTest_Names, LineBreakInTheRulesName) {
    rule->SetName(L"A\rB");
    EXPECT_EQ(SentencesOf(*rule), Lines{}) << "it is not written";
    rule->SetStyle(csSimple);
    EXPECT_EQ(Found(FindingKind::LineBreak),
              (Lines{L"A line break in 'Name': a saved definition loses what follows it."}));
}

TEST_F(RuleCheckNamesTest_Names, FieldsAndMacros) {
    rule->UsrFields().Add(L"A,B");
    rule->UsrMacros().Add(L"M", L"shown; as");
    rule->UsrMacros().Add(L"N:O=P", L"shown: as =");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{
            L"The field or macro 'A,B' holds a comma, semicolon or line break in a name: a saved definition loses it.",
            L"The field or macro 'M' holds a comma, semicolon or line break in a name: a saved definition loses it."}));
    const auto copy = Reloaded();
    EXPECT_FALSE(copy->UsrFields().HasKey(L"A,B"));
    EXPECT_EQ(copy->UsrMacros().Item(L"M")->ForeignName(), L"shown");
    EXPECT_EQ(FailureOf([&] { static_cast<void>(copy->UsrMacros().Item(L"N:O=P")); }), Failure{});
}

TEST_F(RuleCheckNamesTest_Names, ValuesOfFieldsAndMacros) {
    rule->UsrFields().Item(L"Client")->SetValue(L"Smith; Sons");
    rule->UsrMacros().Item(L"Day")->SetDescription(Make<TextValue>(L"first, second"));
    const String text =
        L"' holds a comma, semicolon or line break in its value or description: a saved definition loses "
        L"a part.";
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"The field or macro 'Client" + text, L"The field or macro 'Day" + text}));
    const auto copy = Reloaded();
    EXPECT_EQ(copy->UsrFields().Item(L"Client")->Value(), L"Smith");
    EXPECT_TRUE(copy->UsrFields().HasKey(L" Sons") || copy->UsrFields().HasKey(L"Sons")) << "a field of its own";
    EXPECT_EQ(copy->UsrMacros().Item(L"Day")->Description()->Text(), L"first");
    rule->UsrFields().Item(L"Client")->SetValue(L"Smith & Sons");
    rule->UsrMacros().Item(L"Day")->SetDescription(Make<TextValue>(L"first: second"));
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->UsrFields().Item(L"Client")->Value(), L"Smith & Sons");
}

TEST_F(RuleCheckNamesTest_Names, TextsOfLayers) {
    rule->LayeredBands().Item(L"Country")->SetForeignName(L"Land; Staat");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"The layer 'Country' holds a comma, semicolon or line break beside its name: "
                                         L"a saved definition loses a part."}));
    EXPECT_EQ(Reloaded()->LayeredBands().Item(L"Country")->ForeignName(), L"Land");
    rule->LayeredBands().Item(L"Country")->SetForeignName(L"Land / Staat");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->LayeredBands().Item(L"Country")->ForeignName(), L"Land / Staat");
}

} // namespace kestrel::test
