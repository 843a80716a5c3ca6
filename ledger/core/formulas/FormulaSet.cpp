#include "ledger/core/formulas/FormulaSet.h"

#include <algorithm>

#include "hosts/common/HostError.h"
#include "hosts/common/Nearest.h"

namespace ledger {

namespace {

void Collect(const Expression& expression, FormulaReferences& references) {
    if (expression.kind == Expression::Kind::Name) references.items.push_back(expression.text);
    if (expression.kind != Expression::Kind::Call) return;
    const Function& function = FunctionOf(expression);
    const Arguments arguments = MatchArguments(function, expression);
    references.bands.insert(references.bands.end(), arguments.bands.begin(), arguments.bands.end());
    for (std::size_t at = 0; at < arguments.at.size(); ++at)
        if (arguments.at[at] != nullptr && function.parameters[at].takes != Takes::Word)
            Collect(*arguments.at[at], references);
}

void RefuseUnknown(const FormulaReferences& references, const FormulaNames& names) {
    for (const std::wstring& item : references.items)
        if (std::ranges::find(names.items, item) == names.items.end())
            throw hosts::HostError(L"the rule has no field or macro \"" + item + L"\"" +
                                   hosts::NearestHint(item, names.items));
    std::vector<std::wstring> bands;
    for (const auto& [band, item] : names.bands)
        bands.push_back(band);
    for (const std::wstring& band : references.bands)
        if (!names.bands.contains(band))
            throw hosts::HostError(L"the rule has no band \"" + band + L"\"" + hosts::NearestHint(band, bands));
}

PlannedFormula Read(const MacroFormula& macro, const FormulaNames& names) {
    PlannedFormula formula{macro.macro, macro.formula, {}, {}, false};
    try {
        formula.call = ParseFormula(macro.formula);
        formula.names = ReferencesOf(formula.call);
        RefuseUnknown(formula.names, names);
    } catch (const hosts::HostError& error) {
        throw hosts::HostError(L"macro " + macro.macro + L", formula " + macro.formula + L": " + error.Message());
    }
    return formula;
}

// Puts each formula behind those that it is computed from.
class Planner {
  public:
    Planner(std::vector<PlannedFormula> read, const FormulaNames& names) : mvarNames(names) {
        for (PlannedFormula& formula : read)
            mvarRead.emplace(formula.macro, std::move(formula));
    }

    std::vector<PlannedFormula> Plan(const std::vector<MacroFormula>& order) {
        for (const MacroFormula& macro : order)
            Place(macro.macro);
        return std::move(mvarPlanned);
    }

  private:
    // Whether the macro has a formula and is late.
    bool Place(const std::wstring& macro) {
        const auto placed = std::ranges::find(mvarPlanned, macro, &PlannedFormula::macro);
        if (placed != mvarPlanned.end()) return placed->isLate;
        const auto found = mvarRead.find(macro);
        if (found == mvarRead.end()) return false;
        RefuseCircle(macro);
        mvarUnderWay.push_back(macro);
        PlannedFormula& formula = found->second;
        formula.isLate = !formula.names.bands.empty();
        for (const std::wstring& item : formula.names.items)
            if (Place(item)) formula.isLate = true;
        for (const std::wstring& band : formula.names.bands)
            Place(mvarNames.bands.at(band));
        mvarUnderWay.pop_back();
        mvarPlanned.push_back(formula);
        return formula.isLate;
    }

    void RefuseCircle(const std::wstring& macro) const {
        const auto begin = std::ranges::find(mvarUnderWay, macro);
        if (begin == mvarUnderWay.end()) return;
        std::wstring circle;
        for (auto at = begin; at != mvarUnderWay.end(); ++at)
            circle += *at + L" from ";
        throw hosts::HostError(L"macros are computed from each other in a circle: " + circle + macro);
    }

    const FormulaNames& mvarNames;
    std::map<std::wstring, PlannedFormula> mvarRead;
    std::vector<std::wstring> mvarUnderWay; // each is computed from the one behind it
    std::vector<PlannedFormula> mvarPlanned;
};

} // namespace

FormulaReferences ReferencesOf(const Expression& call) {
    FormulaReferences references;
    Collect(call, references);
    return references;
}

FormulaSet::FormulaSet(const std::vector<MacroFormula>& formulas, const FormulaNames& names) {
    std::vector<PlannedFormula> read;
    read.reserve(formulas.size());
    for (const MacroFormula& macro : formulas)
        read.push_back(Read(macro, names));
    mvarPlanned = Planner(std::move(read), names).Plan(formulas);
}

const PlannedFormula* FormulaSet::Find(const std::wstring& macro) const {
    const auto found = std::ranges::find(mvarPlanned, macro, &PlannedFormula::macro);
    return found == mvarPlanned.end() ? nullptr : &*found;
}

std::vector<std::wstring> FormulaSet::Given(const std::vector<std::wstring>& items) const {
    std::vector<std::wstring> open = items;
    std::vector<std::wstring> given;
    for (std::size_t at = 0; at < open.size(); ++at) {
        if (std::find(open.begin(), open.begin() + static_cast<std::ptrdiff_t>(at), open[at]) !=
            open.begin() + static_cast<std::ptrdiff_t>(at))
            continue;
        const PlannedFormula* formula = Find(open[at]);
        if (formula == nullptr)
            given.push_back(open[at]);
        else
            open.insert(open.end(), formula->names.items.begin(), formula->names.items.end());
    }
    return given;
}

} // namespace ledger
