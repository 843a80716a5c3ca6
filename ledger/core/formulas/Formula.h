// Formulas: how a macro says what the ledger computes it from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledger {

struct Expression {
    enum class Kind { Call, Name, Text, Number };

    Kind kind = Kind::Name;
    std::wstring text;                 // the function's name, the name, the text or the digits
    std::vector<Expression> arguments; // of a call
};

// Whether a macro's description is meant as a formula: it begins with "=", or is a word, "(" right behind it, and ")"
// at the end. Any other description is a text for people.
[[nodiscard]] bool IsFormula(std::wstring_view description);

// The call that the formula is. Fails with HostError, which shows the place, on a text that is none. Which functions
// there are is not looked at.
[[nodiscard]] Expression ParseFormula(std::wstring_view formula);

} // namespace ledger
