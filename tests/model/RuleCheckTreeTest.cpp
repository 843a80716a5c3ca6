// What a check finds about relations and the layers that they stand in.
#include <algorithm>

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
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] 2 relation(s) have a code (first: '2') that does not have 2 "
                                         L"character(s) as the band writes it."}));
    rule->Relations().ImportNodes(L"2;,1,DE,Germany;1,2,NO,North");
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,01,Acme");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Region] 1 relation(s) have a code (first: 'NO') that does not have 1 "
                                         L"character(s) as the band writes it."}));
}

TEST_F(RuleCheckTreeTest_Relations, CodesThatAFormatChanges) {
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,1,Acme");
    Named(L"Customer")->SetFormate(L"00");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] 1 relation(s) have a code, first '1', that the format '00' "
                                         L"changes: codes cannot be taken apart."}));
    Named(L"Customer")->Relations()->ImportNodes(L"1;,1,01,Acme");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SameCodesAndValuesInAnotherCase) {
    rule->SetCodeUCased(false);
    Named(L"Customer")->Relations()->ImportNodes(L"3;,1,ab,Acme;,2,AB,Best;,3,cc,acme");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] 1 relation(s), first 'AB', have the same code as another one "
                                         L"beside them, in small or capital letters.",
                                         L"[Customer] 1 relation(s), first 'acme', have the same value as another one "
                                         L"beside them, in small or capital letters."}));
    Named(L"Customer")->Relations()->ImportNodes(L"3;,1,ab,Acme;,2,ba,Best;,3,cc,Acmes");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SameCodesUnderDifferentOnesAreWell) {
    rule->Relations().ImportNodes(L"5;,1,DE,Germany;1,2,N,North;,3,FR,France;3,4,N,North;3,5,n,Other");
    EXPECT_EQ(Found(FindingKind::SameCodes), (Lines{L"[Region] 1 relation(s), first 'n', have the same code as another "
                                                    L"one beside them, in small or capital letters."}));
}

// Conversion compares as the user's locale does: the second of these is never found.
TEST_F(RuleCheckTreeTest_Relations, SameCodesAndValuesToTheLocale) {
    const auto tree = Named(L"Customer")->Relations();
    tree->ImportNodes(L"3;,1,AB,Acme;,2,A\uFF22,Best;,3,CC,Ac\u00ADme");
    EXPECT_EQ(Found(FindingKind::SameCodes),
              (Lines{L"[Customer] 1 relation(s), first 'A\uFF22', have the same code as another one beside them, in "
                     L"small or capital letters."}));
    EXPECT_EQ(
        Found(FindingKind::SameValues),
        (Lines{L"[Customer] 1 relation(s), first 'Ac\u00ADme', have the same value as another one beside them, in "
               L"small or capital letters."}));
    String value = L"Best";
    tree->Conversion(csValueToCode, value);
    tree->Conversion(csCodeToValue, value);
    EXPECT_EQ(value, L"Acme");
    tree->ImportNodes(L"2;,1,AB,Acme;,2,A\uFF23,Best");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SmallLetters) {
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,ab,Acme;,2,CD,Best");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Customer] The rule writes capitals, but 1 relation(s) have a code with small letters, first 'ab'."}));
    rule->SetCodeUCased(false);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
}

TEST_F(RuleCheckTreeTest_Relations, SeparatorsInCodesAndValues) {
    const auto tree = Named(L"Customer")->Relations();
    tree->Add({}, tvwFirst, L"03", L"Smith, Sons");
    tree->Add({}, tvwFirst, L"0;", L"Other");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Customer] 2 relation(s), first '03', hold a comma, semicolon or line "
                                         L"break: a saved definition loses them."}));
    EXPECT_EQ(Reloaded()->Band(L"Customer")->Relations()->Node(3)->Tag(), L"Smith");
    tree->Remove(4);
    tree->Node(3)->SetTag(L"Smith: Sons = 2");
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    EXPECT_EQ(Reloaded()->Band(L"Customer")->Relations()->Node(3)->Tag(), L"Smith: Sons = 2");
}

TEST_F(RuleCheckTreeTest_Relations, LayerWithoutAny) {
    rule->Relations().ImportNodes(L"1;,1,DE,Germany");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'DE': "
                                         L"no code can be issued for these.",
                                         L"[Region] Its layer, layer 2, has no relations: no code can be issued."}));
}

TEST_F(RuleCheckTreeTest_Relations, CodeWithoutAnyBelow) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;,3,FR,France");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"[Country] 1 relation(s) have none below them in the next layer, first 'FR': "
                                         L"no code can be issued for these."}));
}

TEST_F(RuleCheckTreeTest_Relations, BelowTheLastLayer) {
    rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,X,Village");
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"1 relation(s), first 'X', lie below the last layer and are never used."}));
    rule->Relations().Node(3)->SetTag(L"Village, Town");
    EXPECT_EQ(
        Found(FindingKind::RelationNotSaved),
        (Lines{L"1 relation(s), first 'X', hold a comma, semicolon or line break: a saved definition loses them."}));
    rule->Relations().Remove(3);
    EXPECT_EQ(SentencesOf(*rule), Lines{});
    Named(L"Customer")->Relations()->ImportNodes(L"2;,1,01,Acme;1,2,02,Branch");
    EXPECT_EQ(SentencesOf(*rule),
              (Lines{L"[Customer] 1 relation(s), first '02', lie below the last layer and are never used."}));
}

TEST_F(RuleCheckTreeTest_Relations, BeforeTheOneThatTheyLieBelow) {
    rule->Relations().Drag(2, tvwLast, 1); // behind its own child
    EXPECT_EQ(SentencesOf(*rule), (Lines{L"4 relation(s), from 'N' on, are lost in a saved definition: the first of "
                                         L"them stands before its parent, or its parent has left the tree."}));
    EXPECT_EQ(Reloaded()->Relations().Count(), 0);
}

TEST_F(RuleCheckTreeTest_Relations, BelowOneThatLeftTheTree) {
    auto& tree = rule->Relations();
    tree.Add({}, tvwFirst, L"AT", L"germany");
    tree.Node(5)->SetTag(L"Austria");
    EXPECT_FAILURE(tree.Drag(99, tvwNext, 1), OutOfRange);
    EXPECT_EQ(Found(FindingKind::RelationsLost).size(), 1U);
    EXPECT_EQ(Reloaded()->Relations().Count(), 0) << "the first of the list is lost";
}

TEST_F(RuleCheckTreeTest_Relations, EverythingFromThereOnIsLost) {
    rule->Relations().ImportNodes(L"6;,1,DE,Germany;,2,FR,France;2,3,N,North;1,4,N,North;1,5,S,South;,6,AT,Austria");
    rule->Relations().Drag(L"N6", tvwNext, L"N2"); // behind its own child
    const auto found = CheckRule(*rule);
    const auto lost = std::find_if(found.begin(), found.end(),
                                   [](const Finding& each) { return each.kind == FindingKind::RelationsLost; });
    ASSERT_NE(lost, found.end());
    EXPECT_EQ(lost->arguments, (Lines{L"5", L"N"}));
    EXPECT_EQ(Reloaded()->Relations().Count(), 1);
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
    rule->Relations().Node(3)->SetText(L"NN");
    EXPECT_EQ(Found(FindingKind::CodeLength).size(), 1U) << "in its second place";
    rule->Relations().Node(3)->SetText(L"N");
    EXPECT_EQ(
        SentencesOf(*rule),
        (Lines{L"[Region] It is more than once among the layers: the later one is looked up below the earlier one."}));
}

TEST_F(RuleCheckTreeTest_Layers, BandThatIsNotConverted) {
    rule->LayeredBands().Add(L"Customer");
    EXPECT_EQ(Found(FindingKind::NotLayered),
              (Lines{L"[Customer] It is among the layers, but is not converted in layers."}));
    rule->LayeredBands().Remove(L"Customer");
    EXPECT_EQ(Found(FindingKind::NotLayered), Lines{});
}

// It is looked up in the tree as any other layer.
TEST_F(RuleCheckTreeTest_Layers, RelationsOfABandThatIsNotConverted) {
    rule->LayeredBands().Add(L"Customer");
    rule->Relations().ImportNodes(L"4;,1,DE,Germany;1,2,N,North;2,3,1,One;2,4,02,on,e");
    rule->Relations().Node(4)->SetTag(L"one");
    EXPECT_EQ(Found(FindingKind::CodeLength),
              (Lines{L"[Customer] 1 relation(s) have a code (first: '1') that does not have 2 character(s) as the band "
                     L"writes it."}));
    EXPECT_EQ(Found(FindingKind::SameValues),
              (Lines{L"[Customer] 1 relation(s), first 'one', have the same value as another one beside them, in small "
                     L"or capital letters."}));
    rule->Relations().Cls();
    EXPECT_EQ(Found(FindingKind::NoRelations).size(), 3U);
}

TEST_F(RuleCheckTreeTest_Layers, BandWithoutFieldAmongThem) {
    rule->UsrFields().Item(L"Land")->SetValue(L"Germany");
    rule->UsrFields().Item(L"Area")->SetValue(L"North");
    for (const auto* name : {L"Prefix", L"Number"}) {
        rule->LayeredBands().Add(name);
        rule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,N,North;2,3,INV-,one");
        EXPECT_EQ(Found(FindingKind::LayerNotBound),
                  (Lines{L"[" + String(name) +
                         L"] It is among the layers, but has no field or macro to convert: no code can be issued."}));
        EXPECT_FAILURE(rule->GetCode(gsNewCode), ObjectNotSet);
        rule->LayeredBands().Remove(name);
    }
    EXPECT_EQ(Found(FindingKind::LayerNotBound), Lines{});
}

TEST_F(RuleCheckTreeTest_Layers, NameOfNoBand) {
    const auto host = rule->LayeredBands().BeforeAdd.Subscribe(
        [](const String&, bool& cancel, const String&, std::int32_t) { cancel = false; });
    rule->LayeredBands().Add(L"Nowhere");
    EXPECT_EQ(Found(FindingKind::LayerOfNoBand), (Lines{L"The layer 'Nowhere' is no band: no code can be issued."}));
    rule->Relations().ImportNodes(L"4;,1,DE,Germany;1,2,N,North;2,3,X,One;2,4,x,Two");
    rule->Relations().Node(3)->SetTag(L"One, first");
    EXPECT_EQ(Found(FindingKind::SameCodes).size(), 1U);
    EXPECT_EQ(
        Found(FindingKind::RelationNotSaved),
        (Lines{L"1 relation(s), first 'X', hold a comma, semicolon or line break: a saved definition loses them."}));
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
