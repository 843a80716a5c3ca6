#include <limits>

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Rules.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::test {

class CodeClassSettingsTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

TEST_F(CodeClassSettingsTest, StartWithTheirDefaults) {
    EXPECT_EQ(mvarRule->Name(), L"");
    EXPECT_EQ(mvarRule->Value(), L"");
    EXPECT_EQ(mvarRule->Style(), csNormal);
    EXPECT_EQ(mvarRule->ApplyMode(), amOverAgain);
    EXPECT_TRUE(mvarRule->CodeUCased());
    EXPECT_EQ(mvarRule->SeparaOfYear(), 1);
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 1);
    EXPECT_EQ(mvarRule->SeparaOfWeek(), 2);
    EXPECT_EQ(mvarRule->SeparaOfDay(), 0);
    EXPECT_FALSE(mvarRule->AllowAddBand());
    EXPECT_FALSE(mvarRule->AllowDropBand());
    EXPECT_FALSE(mvarRule->AllowFieldManage());
    EXPECT_FALSE(mvarRule->AllowSimpleStyle());
    EXPECT_FALSE(mvarRule->AllowSetup());
    EXPECT_EQ(mvarRule->Count(), 0);
    EXPECT_EQ(mvarRule->Length(), 0);
    EXPECT_EQ(mvarRule->UsrFields().ListStyle(), lsFields);
    EXPECT_EQ(mvarRule->UsrMacros().ListStyle(), lsMacros);
    EXPECT_EQ(mvarRule->LayeredBands().ListStyle(), lsLayers);
    EXPECT_EQ(mvarRule->UsedFields().ListStyle(), lsMulriple);
    EXPECT_FALSE(mvarRule->ExistingRelations());
    EXPECT_EQ(mvarRule->Relations().Style(), tsNormal);
}

TEST_F(CodeClassSettingsTest, NameIsStoredWithoutBlanksAsOftenAsSet) {
    mvarRule->SetName(L"  Orders ");
    EXPECT_EQ(mvarRule->Name(), L"Orders");
    mvarRule->SetName(L" ");
    EXPECT_EQ(mvarRule->Name(), L"");
}

TEST_F(CodeClassSettingsTest, ValueIsPlainText) {
    mvarRule->SetValue(L" any\r\ntext ");
    EXPECT_EQ(mvarRule->Value(), L" any\r\ntext ");
}

TEST_F(CodeClassSettingsTest, StyleAndApplyModeAreZeroOrOne) {
    mvarRule->SetStyle(csSimple);
    mvarRule->SetApplyMode(amSuccessive);
    for (const int value : {-1, 2, 99}) {
        EXPECT_FAILURE(mvarRule->SetStyle(value), InvalidParameter) << value;
        EXPECT_FAILURE(mvarRule->SetApplyMode(value), InvalidParameter) << value;
    }
    EXPECT_EQ(mvarRule->Style(), csSimple);
    EXPECT_EQ(mvarRule->ApplyMode(), amSuccessive);
}

TEST_F(CodeClassSettingsTest, SeparatorsHaveTheirRanges) {
    for (const int month : {1, 12})
        EXPECT_SUCCESS(mvarRule->SetSeparaOfYear(month)) << month;
    for (const int month : {0, 13, -1})
        EXPECT_FAILURE(mvarRule->SetSeparaOfYear(month), InvalidParameter) << month;
    EXPECT_EQ(mvarRule->SeparaOfYear(), 12);
    for (const int day : {1, 28})
        EXPECT_SUCCESS(mvarRule->SetSeparaOfMonth(day)) << day;
    for (const int day : {0, 29, -1})
        EXPECT_FAILURE(mvarRule->SetSeparaOfMonth(day), InvalidParameter) << day;
    EXPECT_EQ(mvarRule->SeparaOfMonth(), 28);
    for (const int day : {0, 7})
        EXPECT_SUCCESS(mvarRule->SetSeparaOfWeek(day)) << day;
    for (const int day : {-1, 8})
        EXPECT_FAILURE(mvarRule->SetSeparaOfWeek(day), InvalidParameter) << day;
    EXPECT_EQ(mvarRule->SeparaOfWeek(), 7);
}

TEST_F(CodeClassSettingsTest, SeparaOfDayKeepsHoursAndMinutes) {
    const double minute = 1.0 / 1440;
    mvarRule->SetSeparaOfDay(45418 + (6 * 60 + 30) * minute + 45.0 / 86400);
    EXPECT_DOUBLE_EQ(mvarRule->SeparaOfDay(), 390 * minute);
    mvarRule->SetSeparaOfDay(-2.25);
    EXPECT_DOUBLE_EQ(mvarRule->SeparaOfDay(), 0.25);
    mvarRule->SetSeparaOfDay(3);
    EXPECT_EQ(mvarRule->SeparaOfDay(), 0);
    mvarRule->SetSeparaOfDay(86399.0 / 86400);
    EXPECT_DOUBLE_EQ(mvarRule->SeparaOfDay(), 1439 * minute);
    mvarRule->SetSeparaOfDay(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(mvarRule->SeparaOfDay(), 0);
    for (int each = 0; each < 1440; ++each) {
        mvarRule->SetSeparaOfDay(each * minute);
        EXPECT_NEAR(mvarRule->SeparaOfDay(), each * minute, minute / 60) << each;
    }
}

TEST_F(CodeClassSettingsTest, FlagsAreSetAndRead) {
    mvarRule->SetAllowAddBand(true);
    mvarRule->SetAllowDropBand(true);
    mvarRule->SetAllowFieldManage(true);
    mvarRule->SetAllowSimpleStyle(true);
    mvarRule->SetAllowSetup(true);
    EXPECT_TRUE(mvarRule->AllowAddBand() && mvarRule->AllowDropBand() && mvarRule->AllowFieldManage());
    EXPECT_TRUE(mvarRule->AllowSimpleStyle() && mvarRule->AllowSetup());
}

TEST_F(CodeClassSettingsTest, CodeUCasedPutsTheCodesOfTheTreeInUpperCaseWhateverItsValue) {
    for (const bool flag : {false, true}) {
        mvarRule->Relations().ImportNodes(L"3;,1,ab,North;1,2,c,East;,3,X,South");
        mvarRule->SetCodeUCased(flag);
        EXPECT_EQ(mvarRule->CodeUCased(), flag);
        EXPECT_EQ(mvarRule->Relations().ExportNodes(), L"3;,1,AB,North;1,2,C,East;,3,X,South");
    }
}

TEST_F(CodeClassSettingsTest, CodeUCasedStopsAtACollisionAndKeepsTheFlag) {
    mvarRule->Relations().ImportNodes(L"4;,1,x,North;,2,a,East;,3,A,South;,4,b,West");
    EXPECT_FAILURE(mvarRule->SetCodeUCased(false), SameCode);
    EXPECT_TRUE(mvarRule->CodeUCased());
    EXPECT_EQ(mvarRule->Relations().ExportNodes(), L"4;,1,X,North;,2,a,East;,3,A,South;,4,b,West");
}

TEST_F(CodeClassSettingsTest, CodeUCasedAnnouncesEachChangedCode) {
    mvarRule->Relations().ImportNodes(L"2;,1,a,North;,2,B,East");
    const RuleRecorder events(*mvarRule);
    mvarRule->SetCodeUCased(true);
    EXPECT_EQ(events.lines, (Lines{L"relations"}));
}

TEST_F(CodeClassSettingsTest, CodeUCasedNeedsNoTree) {
    mvarRule->SetCodeUCased(false);
    EXPECT_FALSE(mvarRule->CodeUCased());
    EXPECT_FALSE(mvarRule->ExistingRelations());
}

TEST_F(CodeClassSettingsTest, LengthIsTheSumOfTheBandsOrNoneInTheSimpleStyle) {
    AddFixed(*mvarRule, L"Prefix", L"PO-");
    AddNumber(*mvarRule, L"Number", 6);
    EXPECT_EQ(mvarRule->Length(), 9);
    mvarRule->SetStyle(csSimple);
    EXPECT_EQ(mvarRule->Length(), 0);
}

TEST_F(CodeClassSettingsTest, LengthBeyond32BitsOverflows) {
    AddField(*mvarRule, L"A", L"F", std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(mvarRule->Length(), std::numeric_limits<std::int32_t>::max());
    AddFixed(*mvarRule, L"B", L"x");
    EXPECT_FAILURE(mvarRule->Length(), Overflow);
}

TEST_F(CodeClassSettingsTest, RelationsRaiseTheRulesEvent) {
    const RuleRecorder events(*mvarRule);
    mvarRule->Relations().Add({}, tvwFirst, L"a", L"A");
    mvarRule->Relations().Cls();
    EXPECT_EQ(events.lines, (Lines{L"relations", L"relations"}));
}

TEST_F(CodeClassSettingsTest, ListsAndTreeMayOutliveTheRule) {
    const Ref<Lists> fields(&mvarRule->UsrFields());
    const Ref<cNodes> tree(&mvarRule->Relations());
    const Ref<Lists> layers(&mvarRule->LayeredBands());
    mvarRule = nullptr;
    EXPECT_SUCCESS(fields->Add(L"F"));
    EXPECT_SUCCESS(fields->Remove(1));
    EXPECT_SUCCESS(tree->Add());
    EXPECT_SUCCESS(layers->Add(L"Unguarded"));
}

} // namespace kestrel::test
