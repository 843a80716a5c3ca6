#include "ledger/core/formulas/Formula.h"

#include <gtest/gtest.h>

#include "hosts/common/HostError.h"

using ledger::Expression;
using ledger::IsFormula;
using ledger::ParseFormula;

namespace {

// With every call in brackets, names in double and texts in single quotes, numbers plain.
std::wstring Shown(const Expression& expression) {
    switch (expression.kind) {
    case Expression::Kind::Name: return L"\"" + expression.text + L"\"";
    case Expression::Kind::Text: return L"'" + expression.text + L"'";
    case Expression::Kind::Number: return expression.text;
    default: break;
    }
    std::wstring text = L"[" + expression.text;
    for (const Expression& argument : expression.arguments)
        text += L" " + Shown(argument);
    return text + L"]";
}

std::wstring ShownOrRefused(const std::wstring& formula) {
    try {
        return Shown(ParseFormula(formula));
    } catch (const hosts::HostError& error) {
        return error.Message();
    }
}

} // namespace

TEST(FormulaTest, AcceptedFormulas) {
    const wchar_t* const rows[][2] = {{L"today()", L"[today]"},
                                      {L"=today()", L"[today]"},
                                      {L" = today( ) ", L"[today]"},
                                      {L"year(Date)", L"[year \"Date\"]"},
                                      {L"left(Name 3)", L"[left \"Name\" 3]"},
                                      {L"left( Name\t3 )", L"[left \"Name\" 3]"},
                                      {L"pad(left(Name 3) 5 'X')", L"[pad [left \"Name\" 3] 5 'X']"},
                                      {L"upper(\"Last name\")", L"[upper \"Last name\"]"},
                                      {L"upper(\"12\")", L"[upper \"12\"]"},
                                      {L"pad(A 3 ' ')", L"[pad \"A\" 3 ' ']"},
                                      {L"pad(A 3 '(')", L"[pad \"A\" 3 '(']"},
                                      {L"luhn(Year-1 Number_2)", L"[luhn \"Year-1\" \"Number_2\"]"},
                                      {L"upper(Stra\u00dfe)", L"[upper \"Stra\u00dfe\"]"},
                                      {L"a(b(c(d)))", L"[a [b [c \"d\"]]]"},
                                      {L"f(A(B) C)", L"[f [A \"B\"] \"C\"]"},
                                      {L"f('')", L"[f '']"}};
    for (const auto& row : rows)
        EXPECT_EQ(ShownOrRefused(row[0]), row[1]) << testing::PrintToString(std::wstring(row[0]));
}

TEST(FormulaTest, RejectedFormulasAndTheirPlaces) {
    const struct {
        const wchar_t* formula;
        unsigned place;
        const wchar_t* reason;
    } rows[] = {{L"=", 2, L"it ends too early"},
                {L"=Name", 6, L"a function with \"(\" right behind its name was expected"},
                {L"='x'", 5, L"a function with \"(\""},
                {L"=7", 3, L"a function with \"(\""},
                {L"year(Date", 10, L"it ends too early"},
                {L"year(", 6, L"it ends too early"},
                {L"year(Date))", 11, L"nothing more was expected"},
                {L"year(Date) x", 12, L"nothing more was expected"},
                {L"year(Date, x)", 10, L"no \",\" and no \";\" stands in a formula"},
                {L"year(Date;)", 10, L"no \",\" and no \";\""},
                {L"upper(\"Last name)", 7, L"the quote is not closed"},
                {L"pad(A 3 'x)", 9, L"the quote is not closed"},
                {L"=(Date)", 2, L"a name, a text, a number or a function was expected"},
                {L"f(A (B))", 5, L"a name, a text, a number or a function was expected"}};
    for (const auto& row : rows) {
        const std::wstring refusal = ShownOrRefused(row.formula);
        const std::wstring begin = L"formula \"" + std::wstring(row.formula) + L"\", character " +
                                   std::to_wstring(row.place) + L": " + row.reason;
        EXPECT_TRUE(refusal.starts_with(begin)) << testing::PrintToString(refusal);
    }
}

TEST(FormulaTest, EndlessFormulasAreRefused) {
    EXPECT_EQ(ShownOrRefused(std::wstring(1'000'000, L'a')),
              L"the formula is 1000000 characters long; up to 1000 are read");
    std::wstring deep;
    for (int call = 0; call < 200; ++call)
        deep += L"f(";
    EXPECT_NE(ShownOrRefused(deep).find(L"calls within calls go up to 20 deep"), std::wstring::npos);
}

TEST(FormulaTest, DescriptionsForPeopleAreNoFormulas) {
    for (const wchar_t* text : {L"=fiscal(Date)", L"fiscal(Date)", L" fiscal(Date) ", L"=anything", L"fiscl(Date)"})
        EXPECT_TRUE(IsFormula(text)) << testing::PrintToString(std::wstring(text));
    for (const wchar_t* text :
         {L"", L"The year", L"Company (legal name)", L"(old)", L"year", L"name(s) of it", L"\"f\"(x)", L"See docs (2)"})
        EXPECT_FALSE(IsFormula(text)) << testing::PrintToString(std::wstring(text));
}
