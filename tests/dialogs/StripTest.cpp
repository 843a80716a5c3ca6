// What the band strip decides and shows, without a window.
#include "dialogs/BandBox.h"
#include "dialogs/MenuRules.h"
#include "dialogs/PropertyProbe.h"
#include "dialogs/RangeStep.h"
#include "dialogs/SampleText.h"
#include "dialogs/StripLayout.h"
#include "dialogs/frmDesigners.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

using dialogs::StripLayout;

class StripTest : public DialogTest {
  protected:
    const StripLayout layout{{100, 50, 150}}; // edges 0, 100, 150, 300
};

} // namespace

TEST_F(StripTest, FindsTheBoxUnderTheMouse) {
    for (const auto& [x, box] : {std::pair(-5, 0), {0, 0}, {99, 0}, {100, 1}, {149, 1}, {150, 2}, {299, 2}, {300, -1}})
        EXPECT_EQ(layout.BoxAt(x), box) << x;
    EXPECT_EQ(StripLayout().BoxAt(0), -1);
}

TEST_F(StripTest, FindsTheNearestGap) {
    for (const auto& [x, gap] : {std::pair(0, 0), {49, 0}, {51, 1}, {124, 1}, {126, 2}, {224, 2}, {226, 3}, {900, 3}})
        EXPECT_EQ(layout.GapNearest(x), gap) << x;
}

TEST_F(StripTest, ADropLandsBeforeTheBoxOrAfterTheLast) {
    EXPECT_EQ(layout.DropAt(120).target, 1);
    EXPECT_FALSE(layout.DropAt(120).after);
    EXPECT_EQ(layout.DropAt(300).target, 2);
    EXPECT_TRUE(layout.DropAt(300).after);
    EXPECT_EQ(layout.EdgeOf(layout.DropAt(120)), 100);
    EXPECT_EQ(layout.EdgeOf(layout.DropAt(300)), 300);
    EXPECT_EQ(StripLayout().DropAt(5).target, -1);
}

TEST_F(StripTest, ScrollsOnlyAsFarAsNeeded) {
    EXPECT_EQ(layout.OffsetToShow(0, 0, 120), 0);
    EXPECT_EQ(layout.OffsetToShow(1, 0, 120), 30);
    EXPECT_EQ(layout.OffsetToShow(0, 80, 120), 0);
    EXPECT_EQ(layout.OffsetToShow(2, 0, 120), 150) << "a box wider than the view shows its beginning";
}

TEST_F(StripTest, SamplesAreAsLongAsTheValue) {
    const auto rule = InvoiceRule();
    const auto sample = [&rule](int band) { return dialogs::BoxOf(*rule->Band(band)).sample; };
    EXPECT_EQ(sample(ibPrefix), L"INV");
    EXPECT_EQ(sample(ibYear), L"XXXX");
    EXPECT_EQ(sample(ibNumber), L"00001");
    EXPECT_EQ(sample(ibLetter), L"A");
    rule->Band(ibNumber)->SetValue(L"42");
    EXPECT_EQ(sample(ibNumber), L"00042") << "the value last issued";
    rule->Band(ibRegion)->SetLength(2000000000);
    EXPECT_EQ(sample(ibRegion), String(24, L'X') + L"…");
}

TEST_F(StripTest, BoxesShowNameAndStyle) {
    const auto rule = InvoiceRule();
    const auto box = dialogs::BoxOf(*rule->Band(ibRegion));
    EXPECT_EQ(box.name, L"Region");
    EXPECT_EQ(box.style, L"Bounded Field");
}

TEST_F(StripTest, NumbersAndLettersStepWithinTheirDomain) {
    using dialogs::SteppedText;
    EXPECT_EQ(SteppedText(bsIncreaseNumber, L"9", 1), L"10");
    EXPECT_EQ(SteppedText(bsIncreaseNumber, L"1", -1), L"0");
    EXPECT_EQ(SteppedText(bsIncreaseNumber, L"0", -1), L"0");
    EXPECT_EQ(SteppedText(bsIncreaseNumber, L"", 1), L"1");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"A", 1), L"B");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"b", 1), L"C");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"Z", 1), L"Z");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"A", -1), L"A");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"", 1), L"A");
    EXPECT_EQ(SteppedText(bsIncreaseAlpha, L"", -1), L"Z");
    EXPECT_EQ(SteppedText(bsFixed, L"INV", 1), L"INV");
}

TEST_F(StripTest, ProbingAsksTheBand) {
    const auto rule = InvoiceRule();
    struct Case {
        int band;
        dialogs::PropertyId property;
        bool editable;
    };
    using namespace dialogs;
    for (const auto& [band, property, editable] :
         {Case{ibPrefix, idName, false},     Case{ibPrefix, idStyle, false},   Case{ibPrefix, idDefault, true},
          Case{ibPrefix, idFormate, false},  Case{ibPrefix, idLength, false},  Case{ibPrefix, idSwapMode, false},
          Case{ibPrefix, idBound, false},    Case{ibPrefix, idTracks, false},  Case{ibPrefix, idRelations, false},
          Case{ibYear, idFormate, true},     Case{ibYear, idLength, true},     Case{ibYear, idSwapMode, true},
          Case{ibYear, idBound, true},       Case{ibYear, idDefault, false},   Case{ibYear, idRelations, false},
          Case{ibRegion, idRelations, true}, Case{ibNumber, idIncrMode, true}, Case{ibNumber, idInitStart, true},
          Case{ibNumber, idInitEnd, true},   Case{ibNumber, idTracks, true},   Case{ibNumber, idTrigerBand, false},
          Case{ibLetter, idInitStart, true}, Case{ibLetter, idFormate, false}, Case{ibLetter, idRange, true}})
        EXPECT_EQ(IsEditable(*rule->Band(band), property), editable) << band << " " << property;
    rule->Band(ibNumber)->SetIncrMode(imTrigered);
    EXPECT_TRUE(IsEditable(*rule->Band(ibNumber), idTrigerBand));
}

TEST_F(StripTest, TheBandMenuFollowsThePermissions) {
    const auto rule = InvoiceRule();
    auto rules = dialogs::BandMenuFor(*rule, 0);
    EXPECT_TRUE(rules.add && rules.beforeAndAfter && rules.remove && rules.removeAll);
    rule->Band(1)->SetAllowDroped(false);
    EXPECT_FALSE(dialogs::BandMenuFor(*rule, 0).remove);
    EXPECT_TRUE(dialogs::BandMenuFor(*rule, 1).remove);
    rule->SetAllowDropBand(false);
    rule->SetAllowAddBand(false);
    rules = dialogs::BandMenuFor(*rule, 1);
    EXPECT_FALSE(rules.add || rules.beforeAndAfter || rules.remove || rules.removeAll);
    rules = dialogs::BandMenuFor(*EmptyRule(), 0);
    EXPECT_TRUE(rules.add);
    EXPECT_FALSE(rules.beforeAndAfter || rules.remove || rules.removeAll);
}

TEST_F(StripTest, TheRelationMenuFollowsSelectionAndLayer) {
    const auto rule = InvoiceRule();
    const auto band = rule->Band(ibRegion);
    auto rules = dialogs::RelationRulesFor(*rule, *band, nullptr);
    EXPECT_TRUE(rules.append && rules.removeAll);
    EXPECT_FALSE(rules.beforeAndAfter || rules.child || rules.modifyAndRemove);
    rules = dialogs::RelationRulesFor(*rule, *band, rule->Relations().Node(L"N3"));
    EXPECT_TRUE(rules.beforeAndAfter && rules.child && rules.modifyAndRemove);
    const auto deep = rule->Relations().Add(L"N3", tvwChild, L"9", L"Altona");
    EXPECT_FALSE(dialogs::RelationRulesFor(*rule, *band, deep).child);
    rules = dialogs::RelationRulesFor(*rule, *rule->Band(ibPrefix), nullptr);
    EXPECT_FALSE(rules.append || rules.removeAll) << "no tree, nothing to do";
    const auto year = rule->Band(ibYear);
    year->SetSwapMode(smSimpleSwap);
    const auto simple = year->Relations()->Add({}, tvwFirst, L"24", L"2024");
    EXPECT_FALSE(dialogs::RelationRulesFor(*rule, *year, simple).child) << "one layer only";
}

TEST_F(StripTest, APickedStyleEnablesItsProperties) {
    using dialogs::EnablingForStyle;
    EXPECT_TRUE(EnablingForStyle(bsUsrField).bound);
    EXPECT_FALSE(EnablingForStyle(bsUsrField).format);
    EXPECT_TRUE(EnablingForStyle(bsUsrMacro).format);
    EXPECT_TRUE(EnablingForStyle(bsFixed).defaultValue);
    EXPECT_FALSE(EnablingForStyle(bsFixed).bound);
    EXPECT_TRUE(EnablingForStyle(bsIncreaseNumber).format);
}

} // namespace kestrel::test
