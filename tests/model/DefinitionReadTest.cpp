// What a rule reads from a definition string.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

class DefinitionReadTest : public testing::Test {
  protected:
    void Load(const String& lines) { mvarRule->Load(L"#####" + lines); }

    // Reads one band from its key lines.
    Ref<Band> LoadBand(const String& keyLines) {
        Load(L"14\rF,,v;G\r15\rM,,w\r16\r" + keyLines + L"\r17");
        return mvarRule->Count() == 1 ? mvarRule->Band(1) : nullptr;
    }

    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

using DefinitionReadTest_Band = DefinitionReadTest;
using DefinitionReadTest_Lines = DefinitionReadTest;
using DefinitionReadTest_Whole = DefinitionReadTest;

TEST_F(DefinitionReadTest_Whole, RestoresARealisticRule) {
    mvarRule->Load(OrdersDefinition);
    EXPECT_EQ(BandsOf(*mvarRule), L"Prefix Period Customer Number");
    EXPECT_EQ(mvarRule->Definition(), OrdersDefinition);
    const auto number = mvarRule->Band(L"Number");
    EXPECT_EQ(number->TrigerBand(), mvarRule->Band(L"Period"));
    EXPECT_EQ(mvarRule->Band(L"Customer")->DataField(), mvarRule->UsrFields().Item(L"Customer"));
    EXPECT_EQ(mvarRule->Band(L"Customer")->Relations()->Style(), tsSimplified);
    EXPECT_EQ(NamesOf(mvarRule->UsedFields()), L"Month Customer");
    EXPECT_EQ(mvarStandIns.prompts.informed, Lines{});
}

TEST_F(DefinitionReadTest_Whole, RestoresLayersAndTheirTreeWithoutABox) {
    AddField(*mvarRule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*mvarRule, L"Region", L"Gebiet", 1, smLayersSwap);
    mvarRule->LayeredBands().MoveItem(L"Region", L"Country", {});
    mvarRule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,B,Berlin;,3,FR,France");
    const String definition = mvarRule->Definition();
    const auto loaded = Make<CodeClass>();
    loaded->Load(definition);
    EXPECT_EQ(loaded->Definition(), definition);
    EXPECT_EQ(NamesOf(loaded->LayeredBands()), L"Region Country");
    EXPECT_EQ(loaded->Relations().Count(), 3);
    EXPECT_EQ(mvarStandIns.prompts.informed, Lines{});
}

TEST_F(DefinitionReadTest_Whole, ReplacesBandsLayersAndRelationsOfTheRule) {
    AddField(*mvarRule, L"Old", L"F", 1, smLayersSwap);
    mvarRule->Relations().Add();
    mvarRule->Load(OrdersDefinition);
    EXPECT_EQ(mvarRule->Definition(), OrdersDefinition);
    EXPECT_EQ(mvarRule->Relations().Count(), 0);
    EXPECT_EQ(mvarStandIns.prompts.informed, Lines{});
}

TEST_F(DefinitionReadTest_Whole, RaisesBandsChangedForTheClearingAndForEachBand) {
    const RuleRecorder events(*mvarRule);
    mvarRule->Load(OrdersDefinition);
    EXPECT_EQ(events.lines, (Lines{L"bands", L"fields", L"fields", L"fields", L"bands", L"bands", L"bands", L"bands"}));
}

TEST_F(DefinitionReadTest_Whole, OfFiveCharactersOrFewerLeavesAnEmptyRule) {
    for (const auto* text : {L"", L"#", L"#####", L"12345", L"\r\r"}) {
        AddFixed(*mvarRule, L"A", L"a");
        mvarRule->Load(text);
        EXPECT_EQ(mvarRule->Count(), 0);
    }
}

TEST_F(DefinitionReadTest_Whole, DoesNotLookAtTheHeader) {
    mvarRule->Load(L"abcde12\r9");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
}

TEST_F(DefinitionReadTest_Whole, KeepsSettingsThatTheTextDoesNotMention) {
    mvarRule->SetName(L"Orders");
    mvarRule->SetSeparaOfYear(7);
    Load(L"12\r9");
    EXPECT_EQ(mvarRule->Name(), L"Orders");
    EXPECT_EQ(mvarRule->SeparaOfYear(), 7);
}

TEST_F(DefinitionReadTest, AssignsEachEntryToItsProperty) {
    Load(L"0\r Orders \r1\r1\r2\r1\r3\r1\r4\r1\r5\r1\r6\r1\r7\r1\r8\r0\r10\r06:30\r12\r28\r13\r12\r14\rF,,1\r15\rM,,2\r"
         L"9\r5;,1,a,A");
    EXPECT_EQ(mvarRule->Name(), L"Orders");
    EXPECT_EQ(mvarRule->Style(), csSimple);
    EXPECT_EQ(mvarRule->ApplyMode(), amSuccessive);
    EXPECT_TRUE(mvarRule->AllowAddBand() && mvarRule->AllowDropBand() && mvarRule->AllowSetup());
    EXPECT_TRUE(mvarRule->AllowSimpleStyle() && mvarRule->AllowFieldManage());
    EXPECT_FALSE(mvarRule->CodeUCased());
    EXPECT_DOUBLE_EQ(mvarRule->SeparaOfDay(), 6.5 / 24);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 28);
    EXPECT_EQ(mvarRule->SeparaOfYear(), 12);
    EXPECT_EQ(mvarRule->UsrFields().ListsText(), L"F,,1");
    EXPECT_EQ(mvarRule->UsrMacros().ListsText(), L"M,,2");
    EXPECT_EQ(mvarRule->Relations().ExportNodes(), L"5;,1,a,A");
}

TEST_F(DefinitionReadTest, TakesAnyNumberButZeroAndTrueForYes) {
    for (const auto* text : {L"1", L"-1", L"2", L"0.5", L"True", L"TRUE", L" true "}) {
        Load(L"3\r0\r3\r" + String(text));
        EXPECT_TRUE(mvarRule->AllowAddBand()) << testing::PrintToString(String(text));
    }
    for (const auto* text : {L"0", L"", L"False", L"yes", L"0.0"}) {
        Load(L"3\r1\r3\r" + String(text));
        EXPECT_FALSE(mvarRule->AllowAddBand()) << testing::PrintToString(String(text));
    }
}

TEST_F(DefinitionReadTest, ReadsTheWeekIntoTheMonthWhichItsOwnEntryOverwrites) {
    mvarRule->SetSeparaOfWeek(wdFriday);
    Load(L"11\r3");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 3);
    EXPECT_EQ(mvarRule->SeparaOfWeek(), wdFriday);
    Load(L"11\r3\r12\r9");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
}

TEST_F(DefinitionReadTest, DoesNotRestoreNameAndStyleOfASimpleRule) {
    const auto rule = Make<CodeClass>();
    rule->SetName(L"Orders");
    rule->SetStyle(csSimple);
    mvarRule->Load(rule->Definition());
    EXPECT_EQ(mvarRule->Name(), L"");
    EXPECT_EQ(mvarRule->Style(), csNormal);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 1);
}

TEST_F(DefinitionReadTest, LeavesPropertiesThatRefuseTheirValue) {
    Load(L"13\r4\r12\r9");
    Load(L"1\r7\r2\rx\r13\r13\r12\r29\r10\rnoon\r13\r\r12\r9x");
    EXPECT_EQ(mvarRule->Style(), csNormal);
    EXPECT_EQ(mvarRule->ApplyMode(), amOverAgain);
    EXPECT_EQ(mvarRule->SeparaOfYear(), 4);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
    EXPECT_EQ(mvarRule->SeparaOfDay(), 0);
}

TEST_F(DefinitionReadTest, ReadsTheListsBeforeAVetoOrABadRecord) {
    Load(L"14\rF;;G\r15\rM;M;N");
    EXPECT_EQ(NamesOf(mvarRule->UsrFields()), L"F");
    EXPECT_EQ(NamesOf(mvarRule->UsrMacros()), L"M");
}

TEST_F(DefinitionReadTest_Lines, OutOfRangeAreSkippedOneByOne) {
    Load(L"19\r-1\r1000\r12\r9");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
}

TEST_F(DefinitionReadTest_Lines, OfEighteenTakeTheirValueAlong) {
    Load(L"18\r12\r13\r9");
    EXPECT_EQ(mvarRule->SeparaOfYear(), 9);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 1);
}

TEST_F(DefinitionReadTest_Lines, WithoutANumberCountAsZero) {
    Load(L"none\rOrders\r12\r9");
    EXPECT_EQ(mvarRule->Name(), L"Orders");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
}

TEST_F(DefinitionReadTest_Lines, CountByTheirLeadingNumber) {
    Load(L"12.9 months\r9");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
    Load(L"18.5\r13\r7");
    EXPECT_EQ(mvarRule->SeparaOfYear(), 7);
}

TEST_F(DefinitionReadTest_Lines, MayEndAfterANumber) {
    Load(L"12\r9\r13");
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
    EXPECT_EQ(mvarRule->SeparaOfYear(), 1);
}

TEST_F(DefinitionReadTest_Band, AssignsEachKeyToItsProperty) {
    const auto number =
        LoadBand(L"0= N \r1=3\r3=007\r4=000\r5=3\r7=2\r8=05\r9=099\r11=2024-05-06 07:08:09\r12=42\r15=0\r16=0");
    ASSERT_TRUE(number);
    EXPECT_EQ(number->Name(), L"N");
    EXPECT_EQ(number->Style(), bsIncreaseNumber);
    EXPECT_EQ(number->Default(), L"7");
    EXPECT_EQ(number->Formate(), L"000");
    EXPECT_EQ(number->Length(), 3);
    EXPECT_EQ(number->IncrMode(), imTrigered);
    EXPECT_EQ(number->InitStart(), L"5");
    EXPECT_EQ(number->InitEnd(), L"099");
    EXPECT_DOUBLE_EQ(number->DateUpdated(), 45418.297326388889);
    EXPECT_EQ(number->Value(), L"042");
    EXPECT_FALSE(number->AllowDroped());
    EXPECT_FALSE(number->AllowModified());
    EXPECT_EQ(number->Index(), 1);
}

TEST_F(DefinitionReadTest_Band, BindsTheFieldOrMacroOfItsStyle) {
    const auto field = LoadBand(L"0=A\r1=2\r6=G");
    EXPECT_EQ(field->DataField(), mvarRule->UsrFields().Item(L"G"));
    const auto macro = LoadBand(L"0=A\r1=1\r6=M");
    EXPECT_EQ(macro->DataField(), mvarRule->UsrMacros().Item(L"M"));
    EXPECT_FALSE(LoadBand(L"0=A\r1=1\r6=F")->BoundField());
    EXPECT_FALSE(LoadBand(L"0=A\r1=0\r6=F")->BoundField());
}

TEST_F(DefinitionReadTest_Band, ImportsTheTreeOfASimpleConversionOnly) {
    EXPECT_EQ(LoadBand(L"0=A\r1=2\r2=1\r14=1;,1,a,A")->Relations()->ExportNodes(), L"1;,1,a,A");
    EXPECT_EQ(LoadBand(L"0=A\r1=2\r2=2\r14=1;,1,a,A")->Relations()->Count(), 0);
    EXPECT_FALSE(LoadBand(L"0=A\r1=2\r14=1;,1,a,A")->Relations());
}

TEST_F(DefinitionReadTest_Band, KeepsAllOfAValueAfterTheFirstEqualsSign) {
    EXPECT_EQ(LoadBand(L"0=A\r1=0\r3=x=y==z")->Default(), L"x=y==z");
}

TEST_F(DefinitionReadTest_Band, PassesOverWhatIsRefused) {
    const auto band = LoadBand(L"0=A\r1=9\r1=0\r5=7\r2=1\r3=abc\r0\r99=x\r18=x\r=y\rnothing\r12=zzz\r11=never");
    ASSERT_TRUE(band);
    EXPECT_EQ(band->Style(), bsFixed);
    EXPECT_EQ(band->Default(), L"abc");
    EXPECT_EQ(band->Length(), 3);
}

TEST_F(DefinitionReadTest_Band, WithoutNameLineIsNotAdded) {
    Load(L"16\r1=0\r3=x\r17\r12\r9");
    EXPECT_EQ(mvarRule->Count(), 0);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 9);
}

TEST_F(DefinitionReadTest_Band, WithAnEmptyNameIsNotAdded) { EXPECT_FALSE(LoadBand(L"0= \r1=0\r3=x")); }

TEST_F(DefinitionReadTest_Band, WithoutStyleIsAddedAsItIs) {
    const auto band = LoadBand(L"0=A\r3=x");
    ASSERT_TRUE(band);
    EXPECT_EQ(band->Style(), bsUndefined);
    EXPECT_EQ(band->Default(), L"");
}

TEST_F(DefinitionReadTest_Band, DoesNotServeForTheNextRecord) {
    Load(L"16\r0=A\r1=0\r3=x\r17\r16\r3=y\r17");
    EXPECT_EQ(BandsOf(*mvarRule), L"A");
    EXPECT_EQ(mvarRule->Band(1)->Default(), L"x");
}

TEST_F(DefinitionReadTest_Band, IsTheLastOneNamedInItsRecord) {
    Load(L"16\r0=A\r1=0\r3=x\r0=B\r1=0\r3=y\r17");
    EXPECT_EQ(BandsOf(*mvarRule), L"B");
}

TEST_F(DefinitionReadTest_Band, OfANameAlreadyUsedIsNotAdded) {
    Load(L"16\r0=A\r1=0\r3=x\r17\r16\r0=a\r1=0\r3=y\r17\r16\r0=B\r1=0\r3=z\r17");
    EXPECT_EQ(BandsOf(*mvarRule), L"A B");
    EXPECT_EQ(mvarRule->Band(1)->Default(), L"x");
}

TEST_F(DefinitionReadTest_Band, WithoutEndIsNotAdded) {
    Load(L"16\r0=A\r1=0\r3=x");
    EXPECT_EQ(mvarRule->Count(), 0);
}

TEST_F(DefinitionReadTest_Band, RefersToBandsThatComeLater) {
    Load(L"16\r0=N\r1=3\r3=1\r10=B\r13=B,,X,N,c,B\r17\r16\r0=B\r1=0\r3=x\r17\r16\r0=C\r1=0\r3=y\r17");
    const auto number = mvarRule->Band(L"N");
    EXPECT_EQ(number->TrigerBand(), mvarRule->Band(L"B"));
    EXPECT_EQ(number->TrackBands()->NamesText(), L"B,c");
}

TEST_F(DefinitionReadTest_Band, LeavesTriggersThatCannotBeSet) {
    Load(L"16\r0=N\r1=3\r3=1\r10=N\r17\r16\r0=O\r1=3\r3=1\r10=X\r17");
    EXPECT_FALSE(mvarRule->Band(L"N")->TrigerBand());
    EXPECT_FALSE(mvarRule->Band(L"O")->TrigerBand());
}

TEST_F(DefinitionReadTest_Band, OfALayerStyleEntersTheLayersByItself) {
    Load(L"14\rF\r16\r0=R\r1=2\r2=2\r6=F\r17");
    EXPECT_EQ(NamesOf(mvarRule->LayeredBands()), L"R");
}

} // namespace kestrel::test
