// docs/formulas.md says what each formula gives: every one of its examples is computed, and every function has one.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "hosts/common/HostError.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/Utf8.h"
#include "ledger/core/formulas/Functions.h"

using namespace ledger; // all that a formula is made of

namespace {

struct Example {
    std::wstring formula;
    std::map<std::wstring, std::wstring> with;
    std::wstring gives;
};

std::vector<std::wstring> Split(const std::wstring& text, const std::wstring& separator) {
    std::vector<std::wstring> pieces;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::wstring::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        pieces.push_back(text.substr(begin, end == std::wstring::npos ? end : end - begin));
    }
    return pieces;
}

std::wstring WithoutTicks(const std::wstring& cell) { return cell.substr(1, cell.size() - 2); }

std::vector<Example> Examples() {
    std::vector<Example> examples;
    const std::wstring document =
        hosts::ReadTextFile(hosts::FromOwnUtf8(KESTREL_DOCUMENTS_FOLDER "/formulas.md"), std::nullopt);
    for (const std::wstring& line : Split(document, L"\n")) {
        if (!line.starts_with(L"| `")) continue;
        const std::vector<std::wstring> cells = Split(line.substr(2, line.find_last_of(L'|') - 3), L" | ");
        Example example{WithoutTicks(cells.at(0)), {}, WithoutTicks(cells.at(2))};
        for (const std::wstring& pair : Split(cells.at(1), L"; "))
            example.with[pair.substr(0, pair.find(L'='))] = pair.substr(pair.find(L'=') + 1);
        examples.push_back(std::move(example));
    }
    return examples;
}

int Setting(const Example& example, const wchar_t* name, int otherwise) {
    const auto found = example.with.find(name);
    return found == example.with.end() ? otherwise : std::stoi(found->second);
}

Separators SeparatorsOf(const Example& example) {
    const auto day = example.with.find(L"SeparaOfDay");
    const int minute = day == example.with.end() ? 0 : std::stoi(day->second) * 60 + std::stoi(day->second.substr(3));
    return {Setting(example, L"SeparaOfYear", 1), Setting(example, L"SeparaOfMonth", 1),
            Setting(example, L"SeparaOfWeek", 2), minute};
}

std::wstring ResultOf(const Example& example) {
    const auto text = [&example](const std::wstring& name) { return example.with.at(name); };
    Surroundings surroundings;
    surroundings.valueOf = [&text](const std::wstring& name) -> FormulaValue { return text(name); };
    surroundings.partOf = text;
    surroundings.clock = [&text](bool) { return DateFormat().Read(text(L"clock")).value(); };
    surroundings.calendar = Calendar(SeparatorsOf(example));
    return TextOf(Evaluate(ParseFormula(example.formula), surroundings));
}

void CollectFunctions(const Expression& expression, std::set<std::wstring>& names) {
    if (expression.kind == Expression::Kind::Call) names.insert(expression.text);
    for (const Expression& argument : expression.arguments)
        CollectFunctions(argument, names);
}

} // namespace

TEST(FormulasDocumentTest, EveryExampleGivesWhatItSays) {
    const std::vector<Example> examples = Examples();
    EXPECT_GT(examples.size(), 60U);
    for (const Example& example : examples)
        EXPECT_EQ(ResultOf(example), example.gives) << testing::PrintToString(example.formula);
}

TEST(FormulasDocumentTest, LengthsThatAreAlwaysTheSameAreKnown) {
    std::size_t known = 0;
    for (const Example& example : Examples())
        if (const auto length = LengthOf(ParseFormula(example.formula))) {
            EXPECT_EQ(example.gives.size(), *length) << testing::PrintToString(example.formula);
            ++known;
        }
    EXPECT_GT(known, 50U);
    for (const wchar_t* formula : {L"upper(Name)", L"left(Name 3)", L"pad(Number 5)", L"runningweek(Date)"})
        EXPECT_EQ(LengthOf(ParseFormula(formula)), std::nullopt) << testing::PrintToString(std::wstring(formula));
}

TEST(FormulasDocumentTest, AMomentShowsItsTimeAtMidnight) {
    const Example midnight{L"now()", {{L"clock", L"2026-11-22"}}, {}};
    EXPECT_EQ(ResultOf(midnight), L"2026-11-22 00:00:00");
}

TEST(FormulasDocumentTest, EveryFunctionHasAnExample) {
    std::set<std::wstring> shown;
    for (const Example& example : Examples())
        CollectFunctions(ParseFormula(example.formula), shown);
    for (const Function& function : AllFunctions())
        EXPECT_TRUE(shown.contains(function.name)) << testing::PrintToString(std::wstring(function.name));
}

TEST(FormulasDocumentTest, AWrongValueIsRefusedWithItsNameAndWhatWasExpected) {
    const wchar_t* const rows[][3] = {
        {L"year(Date)", L"04/12/2026", L"Date: '04/12/2026' is no date, ISO 8601, such as 2026-04-12 expected"},
        {L"year(Date)", L"", L"Date: '' is no date, ISO 8601, such as 2026-04-12 expected"},
        {L"year(left(Date 4))", L"2026-04-12", L"left(...): '2026' is no date, ISO 8601, such as 2026-04-12 expected"},
        {L"runningweek(Date)", L"1999-01-01", L"the date is before the first running week, that of 2000-01-01"},
        {L"pad(Date 3 'xy')", L"1", L"'xy' does not fill, one character expected"},
        {L"ean(Date)", L"4A", L"'A' in '4A', digits expected"}};
    for (const auto& row : rows)
        try {
            static_cast<void>(ResultOf({row[0], {{L"Date", row[1]}}, {}}));
            ADD_FAILURE() << testing::PrintToString(std::wstring(row[0]));
        } catch (const hosts::RecordError& error) {
            EXPECT_EQ(error.Message(), row[2]);
        }
}
