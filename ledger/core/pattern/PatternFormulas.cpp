#include "ledger/core/pattern/PatternFormulas.h"

#include <algorithm>

#include "hosts/common/Text.h"
#include "ledger/core/formulas/FormulaSet.h"

namespace ledger {

namespace {

class FormulasCheck {
  public:
    explicit FormulasCheck(const Pattern& pattern) {
        for (const PatternPart& part : pattern)
            Add(part);
    }

    void Run() const {
        if (Refusal(mvarParts.size()).empty()) return;
        // What the first formulas do wrong all of them do: halving finds the one that it begins with.
        std::size_t right = 0;
        std::size_t wrong = mvarParts.size();
        while (wrong - right > 1) {
            const std::size_t middle = right + (wrong - right) / 2;
            (Refusal(middle).empty() ? right : wrong) = middle;
        }
        throw PatternError(mvarParts[wrong - 1]->position, hosts::OneLine(Refusal(wrong)));
    }

  private:
    void Add(const PatternPart& part) {
        const bool isBound =
            part.kind != PartKind::Text && part.kind != PartKind::Number && part.kind != PartKind::Letter;
        mvarNames.bands[part.name] = isBound ? part.text : std::wstring();
        if (isBound) mvarNames.items.push_back(part.text);
        if (part.kind != PartKind::Formula ||
            std::ranges::find(mvarFormulas, part.text, &MacroFormula::macro) != mvarFormulas.end())
            return;
        mvarParts.push_back(&part);
        mvarFormulas.push_back({part.text, part.formula});
        AddItems(part.formula);
    }

    // Whatever a formula names is a field of the rule that is made of the pattern.
    void AddItems(const std::wstring& formula) {
        try {
            for (const std::wstring& item : ReferencesOf(ParseFormula(formula)).items)
                mvarNames.items.push_back(item);
        } catch (const hosts::HostError&) { // it is told of with all the others
            return;
        }
    }

    // Why the first so many formulas make no sense; empty when they do.
    [[nodiscard]] std::wstring Refusal(std::size_t count) const {
        try {
            const FormulaSet formulas({mvarFormulas.begin(), mvarFormulas.begin() + static_cast<std::ptrdiff_t>(count)},
                                      mvarNames);
            return {};
        } catch (const hosts::HostError& error) {
            return error.Message();
        }
    }

    FormulaNames mvarNames;
    std::vector<const PatternPart*> mvarParts; // with a formula, each formula once
    std::vector<MacroFormula> mvarFormulas;    // theirs
};

} // namespace

void CheckFormulas(const Pattern& pattern) { FormulasCheck(pattern).Run(); }

} // namespace ledger
