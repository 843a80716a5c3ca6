// The formulas of a rule, as far as they make sense together.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ledger/core/formulas/Functions.h"

namespace ledger {

struct MacroFormula {
    std::wstring macro;
    std::wstring formula;
};

// What the rule has that a formula can name.
struct FormulaNames {
    std::vector<std::wstring> items;            // fields and macros
    std::map<std::wstring, std::wstring> bands; // and the item that each is bound to; empty for none
};

// What a formula names.
struct FormulaReferences {
    std::vector<std::wstring> items; // fields and macros
    std::vector<std::wstring> bands;
};

// Fails with HostError on an unknown function and on arguments that do not fit.
[[nodiscard]] FormulaReferences ReferencesOf(const Expression& call);

struct PlannedFormula {
    std::wstring macro;
    std::wstring text;
    Expression call;
    FormulaReferences names;
    bool isLate = false; // computed from parts of the code, so when the code has its numbers
};

class FormulaSet {
  public:
    FormulaSet() = default;
    // Fails with HostError, naming the macro, on a formula that cannot be read, an unknown function, field or band,
    // arguments that do not fit, and on macros that are computed from each other.
    FormulaSet(const std::vector<MacroFormula>& formulas, const FormulaNames& names);

    // Each after those that it is computed from.
    [[nodiscard]] const std::vector<PlannedFormula>& Planned() const noexcept { return mvarPlanned; }
    // Null when the macro has no formula.
    [[nodiscard]] const PlannedFormula* Find(const std::wstring& macro) const;
    // What a record must bring so that these items have values: those without a formula, and what the formulas of the
    // others need; each once.
    [[nodiscard]] std::vector<std::wstring> Given(const std::vector<std::wstring>& items) const;

  private:
    std::vector<PlannedFormula> mvarPlanned;
};

} // namespace ledger
