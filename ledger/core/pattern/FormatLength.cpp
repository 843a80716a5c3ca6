#include "ledger/core/pattern/FormatLength.h"

#include "hosts/common/HostError.h"
#include "ledger/core/formulas/Functions.h"

namespace ledger {

namespace {

wchar_t Small(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

// Runs of one letter of dates and times whose text is always as long as the run.
bool IsFixedRun(wchar_t letter, std::size_t count) {
    if (letter == L'y') return count == 2 || count == 4;
    if (letter == L'q' || letter == L'w') return count == 1;
    return (letter == L'm' || letter == L'd' || letter == L'h' || letter == L'n' || letter == L's') && count == 2;
}

bool IsOneCharacter(wchar_t character) {
    constexpr std::wstring_view alike = L"0@-./: _";
    return alike.find(character) != std::wstring_view::npos;
}

} // namespace

std::optional<std::size_t> FixedLengthOf(std::wstring_view format) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < format.size();) {
        const wchar_t character = format[at];
        if (IsOneCharacter(character)) {
            ++length;
            ++at;
            continue;
        }
        if (character == L'\\' && at + 1 < format.size()) { // the next character as it stands
            ++length;
            at += 2;
            continue;
        }
        const wchar_t letter = Small(character);
        std::size_t end = at + 1;
        while (end < format.size() && Small(format[end]) == letter)
            ++end;
        if (!IsFixedRun(letter, end - at)) return std::nullopt;
        length += end - at;
        at = end;
    }
    return length > 0 ? std::optional(length) : std::nullopt;
}

std::optional<std::size_t> FormulaLengthOf(std::wstring_view formula) {
    try {
        return LengthOf(ParseFormula(formula));
    } catch (const hosts::HostError&) { // it is told of when the rule is stored
        return std::nullopt;
    }
}

} // namespace ledger
