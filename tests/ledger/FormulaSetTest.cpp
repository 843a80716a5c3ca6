#include "ledger/core/formulas/FormulaSet.h"

#include <gtest/gtest.h>

#include "hosts/common/HostError.h"

using ledger::FormulaNames;
using ledger::FormulaSet;
using ledger::MacroFormula;

namespace {

const FormulaNames KnownNames = {{L"Date", L"Name", L"A", L"B", L"C", L"Check"},
                                 {{L"Number", L""}, {L"Digit", L"Check"}, {L"Second", L"B"}, {L"Year", L"A"}}};

std::wstring RefusalOfSet(const std::vector<MacroFormula>& formulas) {
    try {
        const FormulaSet set(formulas, KnownNames);
        return {};
    } catch (const hosts::HostError& error) {
        return error.Message();
    }
}

std::wstring Order(const std::vector<MacroFormula>& formulas) {
    std::wstring order;
    const FormulaSet set(formulas, KnownNames);
    for (const auto& formula : set.Planned())
        order += formula.macro + (formula.isLate ? L"! " : L" ");
    return order;
}

} // namespace

TEST(FormulaSetTest, FormulasComeAfterThoseThatTheyAreComputedFrom) {
    EXPECT_EQ(Order({{L"A", L"=upper(B)"}, {L"B", L"=left(C 2)"}, {L"C", L"=upper(Name)"}}), L"C B A ");
    EXPECT_EQ(Order({{L"A", L"=upper(Name)"}, {L"B", L"=upper(Name)"}}), L"A B ");
}

TEST(FormulaSetTest, WhatNamesBandsIsLate) {
    EXPECT_EQ(Order({{L"Check", L"=luhn(Year Number)"}, {L"A", L"=year(Date)"}}), L"A Check! ");
    EXPECT_EQ(Order({{L"A", L"=pad(B 2)"}, {L"B", L"=luhn(Number)"}}), L"B! A! ") << "and what names something late";
    EXPECT_EQ(Order({{L"Check", L"=luhn(Second Number)"}, {L"B", L"=luhn(Number)"}}), L"B! Check! ")
        << "a digit over another one comes after it";
}

TEST(FormulaSetTest, ARecordBringsWhatFormulasNeed) {
    using Texts = std::vector<std::wstring>;
    const FormulaSet set({{L"A", L"=upper(B)"}, {L"B", L"=fiscal(Date end)"}, {L"Check", L"=luhn(Number)"}},
                         KnownNames);
    EXPECT_EQ(set.Given({L"A", L"Check", L"Name"}), (Texts{L"Name", L"Date"}));
    EXPECT_EQ(set.Given({L"Check"}), Texts());
    EXPECT_EQ(set.Given({L"Name", L"Name"}), Texts{L"Name"});
    EXPECT_NE(set.Find(L"B"), nullptr);
    EXPECT_EQ(set.Find(L"Name"), nullptr);
}

TEST(FormulaSetTest, CirclesAreRefused) {
    EXPECT_EQ(RefusalOfSet({{L"A", L"=upper(A)"}}), L"macros are computed from each other in a circle: A from A");
    EXPECT_EQ(RefusalOfSet({{L"C", L"=upper(A)"}, {L"A", L"=upper(B)"}, {L"B", L"=left(A 1)"}}),
              L"macros are computed from each other in a circle: A from B from A");
    EXPECT_EQ(RefusalOfSet({{L"Check", L"=luhn(Number Digit)"}}),
              L"macros are computed from each other in a circle: Check from Check")
        << "the digit's own band";
    EXPECT_EQ(RefusalOfSet({{L"Check", L"=luhn(Second)"}, {L"B", L"=luhn(Digit)"}}),
              L"macros are computed from each other in a circle: Check from B from Check");
}

TEST(FormulaSetTest, RefusalsNameTheMacroAndTheReason) {
    const wchar_t* const rows[][2] = {
        {L"=fiscl(Date)", L"there is no function \"fiscl\"; nearest: 'fiscal'"},
        {L"=nothing(Date)", L"there is no function \"nothing\""},
        {L"=year(Dat)", L"the rule has no field or macro \"Dat\"; nearest: 'Date'"},
        {L"=luhn(Numbr)", L"the rule has no band \"Numbr\"; nearest: 'Number'"},
        {L"=year()", L"year is given too few arguments; write year(DATE)"},
        {L"=year(Date Name)", L"year cannot take \"Name\"; write year(DATE)"},
        {L"=year(7)", L"year cannot take \"7\"; write year(DATE)"},
        {L"=left(Name)", L"left is given too few arguments; write left(VALUE LENGTH)"},
        {L"=left(Name 0)", L"left cannot take \"0\"; write left(VALUE LENGTH)"},
        {L"=left(Name 256)", L"left cannot take \"256\"; write left(VALUE LENGTH)"},
        {L"=left(Name 99999999999999999999)", L"left cannot take \"99999999999999999999\"; write left(VALUE LENGTH)"},
        {L"=hash(Name 19)", L"hash cannot take \"19\"; write hash(VALUE DIGITS)"},
        {L"=fiscal(Date bth)", L"fiscal cannot take \"bth\"; write fiscal(DATE [start|end|both] [MONTH])"},
        {L"=fiscal(Date 13)", L"fiscal cannot take \"13\"; write fiscal(DATE [start|end|both] [MONTH])"},
        {L"=pad(Name 3 X)", L"pad cannot take \"X\"; write pad(VALUE LENGTH ['FILL'] [left|right])"},
        {L"=luhn()", L"luhn is given no band; write luhn(BAND ...)"},
        {L"=luhn(upper(Name))", L"luhn is given no band; write luhn(BAND ...)"},
        {L"=mod11(2 Number)", L"mod11 is given no band; write mod11([HIGHEST] BAND ...)"},
        {L"=today(Date)", L"today cannot take \"Date\"; write today([local|utc])"},
        {L"=upper(fiscl(Date))", L"there is no function \"fiscl\"; nearest: 'fiscal'"}};
    for (const auto& row : rows)
        EXPECT_EQ(RefusalOfSet({{L"A", row[0]}}), L"macro A, formula " + std::wstring(row[0]) + L": " + row[1]);
    EXPECT_EQ(
        RefusalOfSet({{L"A", L"year(Date"}}),
        L"macro A, formula year(Date: formula \"year(Date\", character 10: it ends too early (a definition ends a "
        L"description at \",\" and \";\": put blanks between arguments)");
}
