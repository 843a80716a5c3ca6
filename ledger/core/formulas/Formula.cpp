// The grammar, with blanks wherever they do no harm:
//
//   formula  = ["="] call
//   call     = word "(" [argument {blank argument}] ")"     nothing between the word and the "("
//   argument = call | name | text | number
//   name     = word | '"' characters without '"' '"'
//   text     = "'" characters without "'" "'"
//   number   = digits
//   word     = characters other than blanks, quotes, "(", ")", "," and ";"
//
// A formula is the description of a macro, and a definition ends a description at "," and ";": that is why blanks stand
// between arguments, and why neither sign has a place in a formula.
#include "ledger/core/formulas/Formula.h"

#include <algorithm>

#include "hosts/common/HostError.h"
#include "hosts/common/Text.h"

namespace ledger {

namespace {

constexpr std::size_t LongestFormula = 1000;
constexpr int DeepestCall = 20;
constexpr std::wstring_view NoWord = L" \t\"'(),;";

using hosts::WithoutBlanks;

bool IsNumber(std::wstring_view word) { return word.find_first_not_of(L"0123456789") == std::wstring_view::npos; }

class Parser {
  public:
    explicit Parser(std::wstring_view formula) : mvarFormula(formula) {
        if (formula.size() > LongestFormula)
            throw hosts::HostError(L"the formula is " + std::to_wstring(formula.size()) + L" characters long; up to " +
                                   std::to_wstring(LongestFormula) + L" are read");
    }

    Expression Parse() {
        SkipBlanks();
        if (Next() == L'=') ++mvarAt;
        SkipBlanks();
        Expression call = ReadArgument(1);
        if (call.kind != Expression::Kind::Call) Refuse(L"a function with \"(\" right behind its name was expected");
        SkipBlanks();
        if (mvarAt < mvarFormula.size()) Refuse(L"nothing more was expected");
        return call;
    }

  private:
    [[nodiscard]] wchar_t Next() const { return mvarAt < mvarFormula.size() ? mvarFormula[mvarAt] : L'\0'; }

    void SkipBlanks() {
        while (Next() == L' ' || Next() == L'\t')
            ++mvarAt;
    }

    [[noreturn]] void Refuse(const std::wstring& reason) const {
        throw hosts::HostError(L"formula \"" + std::wstring(mvarFormula) + L"\", character " +
                               std::to_wstring(std::min(mvarAt, mvarFormula.size()) + 1) + L": " + reason);
    }

    std::wstring ReadQuoted(wchar_t quote) {
        const std::size_t end = mvarFormula.find(quote, mvarAt + 1);
        if (end == std::wstring_view::npos) Refuse(L"the quote is not closed");
        std::wstring text(mvarFormula.substr(mvarAt + 1, end - mvarAt - 1));
        mvarAt = end + 1;
        return text;
    }

    Expression ReadArgument(int depth) {
        if (Next() == L'"') return {Expression::Kind::Name, ReadQuoted(L'"'), {}};
        if (Next() == L'\'') return {Expression::Kind::Text, ReadQuoted(L'\''), {}};
        const std::size_t end = std::min(mvarFormula.find_first_of(NoWord, mvarAt), mvarFormula.size());
        std::wstring word(mvarFormula.substr(mvarAt, end - mvarAt));
        if (word.empty()) Refuse(Expected());
        mvarAt = end;
        if (Next() == L'(') return ReadCall(std::move(word), depth);
        return {IsNumber(word) ? Expression::Kind::Number : Expression::Kind::Name, std::move(word), {}};
    }

    [[nodiscard]] std::wstring Expected() const {
        if (Next() == L',' || Next() == L';')
            return L"no \",\" and no \";\" stands in a formula; put blanks between arguments";
        if (mvarAt >= mvarFormula.size())
            return L"it ends too early (a definition ends a description at \",\" and \";\": put blanks between "
                   L"arguments)";
        return L"a name, a text, a number or a function was expected";
    }

    Expression ReadCall(std::wstring function, int depth) {
        if (depth > DeepestCall) Refuse(L"calls within calls go up to " + std::to_wstring(DeepestCall) + L" deep");
        Expression call{Expression::Kind::Call, std::move(function), {}};
        ++mvarAt; // the "("
        for (SkipBlanks(); Next() != L')'; SkipBlanks())
            call.arguments.push_back(ReadArgument(depth + 1));
        ++mvarAt;
        return call;
    }

    std::wstring_view mvarFormula;
    std::size_t mvarAt = 0;
};

} // namespace

bool IsFormula(std::wstring_view description) {
    description = WithoutBlanks(description);
    if (description.starts_with(L'=')) return true;
    const std::size_t end = description.find_first_of(NoWord);
    return end != std::wstring_view::npos && end > 0 && description[end] == L'(' && description.ends_with(L')');
}

Expression ParseFormula(std::wstring_view formula) { return Parser(WithoutBlanks(formula)).Parse(); }

} // namespace ledger
