// The functions of formulas: what each takes, and what it makes of that.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "ledger/core/formulas/Calendar.h"
#include "ledger/core/formulas/Formula.h"

namespace ledger {

// What a formula comes to, within another one also a day.
using FormulaValue = std::variant<std::wstring, DateTime>;
// A day as IsoText writes it.
[[nodiscard]] std::wstring TextOf(const FormulaValue& value);

// What formulas are computed from. Each function fails with RecordError for what has no value.
struct Surroundings {
    std::function<FormulaValue(const std::wstring& name)> valueOf; // a field or macro
    std::function<std::wstring(const std::wstring& band)> partOf;  // a band's part of the code
    std::function<DateTime(bool isUtc)> clock;
    Calendar calendar;
    DateFormat dates;
};

enum class Takes {
    Value,  // the name of a field or macro, a text, or a call
    Date,   // the same where it is a date
    Number, // digits
    Word,   // one of the words
    Text,   // in quotes
    Bands   // the names of one band or more; the last parameter
};

struct Parameter {
    Takes takes = Takes::Value;
    const wchar_t* name = L""; // for people
    bool isOptional = false;
    int lowest = 0; // of a number
    int highest = 0;
    std::vector<std::wstring> words;
};

struct Arguments;

struct Function {
    const wchar_t* name = L"";
    std::vector<Parameter> parameters;
    FormulaValue (*compute)(const Arguments& arguments, const Surroundings& surroundings) = nullptr;
    std::size_t length = 0; // of every result; 0 where it depends on the arguments

    // "fiscal(DATE [start|end|both] [MONTH])"
    [[nodiscard]] std::wstring Usage() const;
    [[nodiscard]] bool TakesBands() const;
};

// The arguments of a call beside the parameters that they are for.
struct Arguments {
    std::vector<const Expression*> at; // by parameter; null for one that was left out
    std::vector<std::wstring> bands;
};

// In the order of the documentation.
[[nodiscard]] std::span<const Function> AllFunctions();

// The function of a call, whatever its letter case; fails with HostError, naming the nearest one, when there is none.
[[nodiscard]] const Function& FunctionOf(const Expression& call);

// Fails with HostError, with the function's usage, on arguments that are too few, too many or not what it takes.
[[nodiscard]] Arguments MatchArguments(const Function& function, const Expression& call);

// The length of what the call gives, where it is always the same. Fails as FunctionOf and MatchArguments do.
[[nodiscard]] std::optional<std::size_t> LengthOf(const Expression& call);

// Fails with RecordError when a value is not what the function needs, and as FunctionOf and MatchArguments do.
[[nodiscard]] FormulaValue Evaluate(const Expression& expression, const Surroundings& surroundings);

} // namespace ledger
