// What a check finds about relations and the layers that they stand in.
#include "support/Failures.h"
#include "support/Orders.h"
#include "support/RuleCheckFixture.h"

namespace kestrel::test {

using RuleCheckTreeTest_Relations = RuleCheckFixture;
using RuleCheckTreeTest_Layers = RuleCheckFixture;

// ----------------------------------------------------------------------------------------------------------- relations

TEST_F(RuleCheckTreeTest_Relations, None) {
    Named(L"Customer")->Relations()->Cls();
    rule->Relations().Cls();
    const String text = L"It is converted, but there are no relations: no code can be issued.";
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] " + text, L"[Country] " + text, L"[Region] " + text}));
}

TEST_F(RuleCheckTreeTest_Relations, CodesOfAnotherLength) {
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

TEST_F(RuleCheckTreeTest_Relations, CodesThatAFormatChanges) {
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,1,Acme");
    Named(L"Customer")->SetFormate(L"00");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Customer] 1 relation(s) have a code, first '1', that the format '00' changes: codes cannot be taken "
               L"apart."}));
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,01,Acme");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SameCodesAndValuesInAnotherCase) {
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

TEST_F(RuleCheckTreeTest_Relations, SameCodesUnderDifferentOnesAreWell) {
    rule->Relations().ImportNodes(L"5;,1,DE,Germany;1,2,N,North;,3,FR,France;3,4,N,North;3,5,n,Other");
    EXPECT_EQ(
        Found(FindingKind::SameCodes),
        (Lines{L"[Region] 1 relation(s), first 'n', have the same code as another one beside them, in small or capital "
               L"letters."}));
}

TEST_F(RuleCheckTreeTest_Relations, SmallLetters) {
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,ab,Acme;,2,CD,Best");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] The rule writes capitals, but 1 relation(s) have a code with small "
                     L"letters, first 'ab'."}));
    rule->SetCodeUCased(false);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SeparatorsInCodesAndValues) {
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

TEST_F(RuleCheckTreeTest_Relations, LayerWithoutAny) {
    rule->Relations().ImportNodes(L"1;,1,DE,Germany");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'DE': no code can be issued for "
               L"these.",
               L"[Region] Its layer, layer 2, has no relations: no code can be issued."}));
}

TEST_F(RuleCheckTreeTest_Relations, CodeWithoutAnyBelow) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;,3,FR,France");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'FR': no code can be issued for "
               L"these."}));
}

TEST_F(RuleCheckTreeTest_Relations, BelowTheLastLayer) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,X,Village");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"1 relation(s), first 'X', lie below the last layer and are never used."}));
    rule->Relations().Remove(3);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,01,Acme;1,2,02,Branch");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] 1 relation(s), first '02', lie below the last layer and are never used."}));
}

TEST_F(RuleCheckTreeTest_Relations, BeforeTheOneThatTheyLieBelow) {
    rule->Relations().Drag(2, tvwLast, 1); // behind its own child
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"1 relation(s), first 'N', stand before the one that they lie below: a saved "
                                         L"definition loses them."}));
    EXPECT_EQ(Reloaded()->Relations().Count(), 0);
}

TEST_F(RuleCheckTreeTest_Relations, BelowOneThatLeftTheTree) {
    auto& tree = rule->Relations();
    tree.Add({}, tvwFirst, L"AT", L"germany");
    tree.Node(5)->SetTag(L"Austria");
    EXPECT_FAILURE(tree.Drag(99, tvwNext, 1), OutOfRange);
    EXPECT_EQ(Found(FindingKind::RelationsLost).size(), 1U);
}

// -------------------------------------------------------------------------------------------------------------- layers

TEST_F(RuleCheckTreeTest_Layers, BandNotAmongThem) {
    const auto host =
        rule->LayeredBands().BeforeRemove.Subscribe([](const String&, bool& cancel, const String&) { cancel = false; });
    rule->LayeredBands().Remove(L"Region");
    rule->Relations().ImportNodes(L"1;,1,DE,Germany");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{
            L"[Region] It is converted in layers, but is not among the layers: issuing a code leaves it as it is."}));
}

TEST_F(RuleCheckTreeTest_Layers, BandTwiceAmongThem) {
    rule->LayeredBands().Add(L"REGION");
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,N,North");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Region] It is more than once among the layers: the later one is looked up below "
                     L"the earlier one."}));
}

TEST_F(RuleCheckTreeTest_Layers, BandThatIsNotConverted) {
    rule->LayeredBands().Add(L"Prefix");
    EXPECT_EQ(Found(FindingKind::NotLayered),
              (Lines{L"[Prefix] It is among the layers, but is not converted in layers."}));
    rule->LayeredBands().Remove(L"Prefix");
    EXPECT_EQ(Found(FindingKind::NotLayered), Lines{});
}

TEST_F(RuleCheckTreeTest_Layers, NameOfNoBand) {
    const auto host = rule->LayeredBands().BeforeAdd.Subscribe(
        [](const String&, bool& cancel, const String&, std::int32_t) { cancel = false; });
    rule->LayeredBands().Add(L"Nowhere");
    EXPECT_EQ(Found(FindingKind::LayerOfNoBand), (Lines{L"The layer 'Nowhere' is no band: no code can be issued."}));
    rule->LayeredBands().Remove(L"Nowhere");
    EXPECT_EQ(Found(FindingKind::LayerOfNoBand), Lines{});
}

TEST_F(RuleCheckTreeTest_Layers, NameWithASeparator) {
    rule = Make<CodeClass>();
    AddField(*rule, L"A,B", L"F", 1, smLayersSwap);
    AddNumber(*rule, L"N", 3)->TrackBands()->ImportNames(L"A,B");
    rule->Relations().Add({}, tvwFirst, L"X", L"Y");
    EXPECT_EQ(Found(FindingKind::LayerNameNotSaved),
              (Lines{L"[A,B] Its name holds a comma or semicolon: a saved definition loses it as a layer."}));
    EXPECT_EQ(Reloaded()->LayeredBands().Count(), 0);
}

TEST_F(RuleCheckTreeTest_Layers, OtherNamesComeBack) {
    rule = Make<CodeClass>();
    AddField(*rule, L"A:B=C", L"F", 1, smLayersSwap);
    AddField(*rule, L"A,B;C", L"G", 1);
    AddNumber(*rule, L"N", 3)->TrackBands()->Add(L"A:B=C");
    rule->Relations().Add({}, tvwFirst, L"X", L"Y");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Definition(), rule->Definition());
}

} // namespace kestrel::test
