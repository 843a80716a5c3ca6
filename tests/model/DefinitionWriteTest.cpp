// The definition string as the rule writes it, byte for byte.
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

class DefinitionWriteTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
};

TEST_F(DefinitionWriteTest, OfANewRuleHoldsItsSettings) {
    EXPECT_EQ(mvarRule->Definition(), L"#####02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1");
}

TEST_F(DefinitionWriteTest, LeavesOutTheNameInTheNormalStyle) {
    mvarRule->SetName(L"Orders");
    EXPECT_EQ(mvarRule->Definition(), L"#####02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1");
}

TEST_F(DefinitionWriteTest, GluesTheStyleToTheNumberThatFollows) {
    mvarRule->SetName(L"Orders");
    mvarRule->SetStyle(csSimple);
    EXPECT_EQ(mvarRule->Definition(),
              L"#####11\rOrders\r2\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1");
}

TEST_F(DefinitionWriteTest, WritesAnEmptyNameInTheSimpleStyle) {
    mvarRule->SetStyle(csSimple);
    EXPECT_EQ(mvarRule->Definition(), L"#####11\r\r2\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1");
}

TEST_F(DefinitionWriteTest, WritesEverySetting) {
    mvarRule->SetApplyMode(amSuccessive);
    mvarRule->SetAllowAddBand(true);
    mvarRule->SetAllowDropBand(true);
    mvarRule->SetAllowSetup(true);
    mvarRule->SetAllowSimpleStyle(true);
    mvarRule->SetAllowFieldManage(true);
    mvarRule->SetCodeUCased(false);
    mvarRule->SetSeparaOfDay(6.5 / 24);
    mvarRule->SetSeparaOfWeek(wdSaturday);
    mvarRule->SetSeparaOfMonth(28);
    mvarRule->SetSeparaOfYear(12);
    EXPECT_EQ(mvarRule->Definition(),
              L"#####02\r1\r3\r1\r4\r1\r5\r1\r6\r1\r7\r1\r8\r0\r10\r06:30\r11\r7\r12\r28\r13\r12");
}

TEST_F(DefinitionWriteTest, TellsTheFlagsApart) {
    const auto only = [](auto set) {
        const auto rule = Make<CodeClass>();
        set(*rule);
        return rule->Definition().substr(5, 28);
    };
    EXPECT_EQ(only([](auto& rule) { rule.SetAllowAddBand(true); }), L"02\r0\r3\r1\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1");
    EXPECT_EQ(only([](auto& rule) { rule.SetAllowDropBand(true); }), L"02\r0\r3\r0\r4\r1\r5\r0\r6\r0\r7\r0\r8\r1");
    EXPECT_EQ(only([](auto& rule) { rule.SetAllowSetup(true); }), L"02\r0\r3\r0\r4\r0\r5\r1\r6\r0\r7\r0\r8\r1");
    EXPECT_EQ(only([](auto& rule) { rule.SetAllowSimpleStyle(true); }), L"02\r0\r3\r0\r4\r0\r5\r0\r6\r1\r7\r0\r8\r1");
    EXPECT_EQ(only([](auto& rule) { rule.SetAllowFieldManage(true); }), L"02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r1\r8\r1");
    EXPECT_EQ(only([](auto& rule) { rule.SetCodeUCased(false); }), L"02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r0");
}

TEST_F(DefinitionWriteTest, OfARealisticRule) { EXPECT_EQ(OrdersRule()->Definition(), OrdersDefinition); }

TEST_F(DefinitionWriteTest, PutsTheTreeLastAndRepeatsItInEachLayerStyleBand) {
    AddField(*mvarRule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*mvarRule, L"Region", L"Gebiet", 1, smLayersSwap);
    mvarRule->Relations().ImportNodes(L"3;,1,DE,Germany;1,2,B,Berlin;,3,FR,France");
    EXPECT_EQ(mvarRule->Definition(),
              L"#####02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1\r"
              L"14\rLand,,;Gebiet,,\r"
              L"16\r0=Country\r1=2\r2=2\r3=\r4=\r5=2\r6=Land\r7=0\r8=\r9=\r10=\r11=1899-12-30 00:00:00\r12=\r13=\r"
              L"14=3;,1,DE,Germany;1,2,B,Berlin;,3,FR,France\r15=1\r16=1\r17\r"
              L"16\r0=Region\r1=2\r2=2\r3=\r4=\r5=1\r6=Gebiet\r7=0\r8=\r9=\r10=\r11=1899-12-30 00:00:00\r12=\r13=\r"
              L"14=3;,1,DE,Germany;1,2,B,Berlin;,3,FR,France\r15=1\r16=1\r17\r"
              L"17\rCountry,,;Region,,\r"
              L"9\r3;,1,DE,Germany;1,2,B,Berlin;,3,FR,France");
}

TEST_F(DefinitionWriteTest, OfALetterBand) {
    const auto letter = AddLetter(*mvarRule, L"Series", L"c");
    letter->SetInitStart(L"B");
    letter->SetInitEnd(L"Y");
    letter->SetValue(L"d");
    EXPECT_EQ(mvarRule->Definition(),
              L"#####02\r0\r3\r0\r4\r0\r5\r0\r6\r0\r7\r0\r8\r1\r11\r2\r12\r1\r13\r1\r"
              L"16\r0=Series\r1=4\r2=0\r3=C\r4=\r5=1\r6=\r7=1\r8=B\r9=Y\r10=\r11=1899-12-30 00:00:00\r12=D\r13=\r14=\r"
              L"15=1\r16=1\r17");
}

TEST_F(DefinitionWriteTest, WritesAnEmptyTreeOfASimpleConversionAsItsCounter) {
    AddField(*mvarRule, L"F", L"F", 1, smSimpleSwap);
    EXPECT_NE(mvarRule->Definition().find(L"\r13=\r14=0\r15=1\r"), String::npos);
}

TEST_F(DefinitionWriteTest, LeavesOutAnEmptyTreeOfTheRule) {
    mvarRule->Relations().Add();
    mvarRule->Relations().Cls();
    EXPECT_EQ(mvarRule->Definition(), Make<CodeClass>()->Definition());
}

TEST_F(DefinitionWriteTest, EscapesNothing) {
    AddFixed(*mvarRule, L"A", L"x\ry=z");
    EXPECT_NE(mvarRule->Definition().find(L"\r3=x\ry=z\r4="), String::npos);
}

TEST_F(DefinitionWriteTest, ChangesNothingOfTheRule) {
    const auto rule = OrdersRule();
    const RuleRecorder events(*rule);
    const String first = rule->Definition();
    EXPECT_EQ(rule->Definition(), first);
    EXPECT_EQ(events.lines, Lines{});
}

} // namespace kestrel::test
