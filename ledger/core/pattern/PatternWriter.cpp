#include "ledger/core/pattern/PatternWriter.h"

#include <algorithm>

#include "hosts/common/Text.h"
#include "ledger/core/pattern/FormatLength.h"
#include "ledger/core/pattern/PatternCursor.h"

namespace ledger {

namespace {

std::wstring InQuotes(std::wstring_view text) {
    std::wstring quoted = L"\"";
    for (const wchar_t character : text)
        quoted.append(character == L'"' ? 2 : 1, character);
    return quoted + L'"';
}

std::wstring QuotedIf(const std::wstring& text, bool must) { return must ? InQuotes(text) : text; }

bool HoldsAny(const std::wstring& text, std::wstring_view characters) {
    return text.find_first_of(characters) != std::wstring::npos || text.find(PatternAs) != std::wstring::npos ||
           hosts::Trimmed(text) != text;
}

bool LooksLikeLetters(const std::wstring& name) {
    return name.size() > 2 && IsCapital(name[0]) && name[1] == L'.' && name[2] == L'.';
}

std::wstring NameText(const std::wstring& name) {
    return QuotedIf(name, HoldsAny(name, L":=/|,{}\"") || name.front() == L'#' || name.front() == L'@' ||
                              LooksLikeLetters(name));
}

std::wstring FormatText(const std::wstring& format) {
    const bool looksLikeLength = IsAllDigits(format) && format.front() != L'0';
    return QuotedIf(format, HoldsAny(format, L":={}\"") || looksLikeLength);
}

std::wstring FileText(const std::wstring& file) {
    const auto bracket = file.find(L'(');
    const bool looksLikeFormula =
        bracket != std::wstring::npos && std::ranges::all_of(file.substr(0, bracket), IsNameOfFunction);
    return QuotedIf(file, HoldsAny(file, L"|{}") || file.front() == L'"' || looksLikeFormula);
}

std::wstring TracksText(const PatternPart& part) {
    if (!part.tracked) return {};
    std::wstring text;
    for (const PatternName& tracked : *part.tracked)
        text += (text.empty() ? L"" : L",") + NameText(tracked.name);
    return L"/" + text;
}

std::wstring NumberText(const PatternPart& part) {
    std::wstring text(part.length, L'#');
    if (!part.last.empty())
        text += L":" + part.first + L".." + part.last;
    else if (part.first != L"1")
        text += L":" + part.first;
    return text;
}

std::wstring FormText(const PatternPart& part, std::optional<std::size_t> natural) {
    if (part.format.empty())
        return part.length == 0 || natural == part.length ? L"" : L":" + std::to_wstring(part.length);
    std::wstring format = L":" + FormatText(part.format);
    if (part.length == 0 || FixedLengthOf(part.format) == part.length) return format;
    return format + L":" + std::to_wstring(part.length);
}

std::wstring CodesText(const PatternPart& part) {
    if (part.file.empty()) return {};
    return L"=" + FileText(part.file) + (part.layer > 0 ? L"|" + std::to_wstring(part.layer) : std::wstring());
}

std::wstring FormulaText(const PatternPart& part) {
    const auto natural = part.file.empty() ? FormulaLengthOf(part.formula) : std::nullopt;
    const std::wstring name = part.text.empty() ? std::wstring() : NameText(part.text);
    return name + L"=" + part.formula + FormText(part, natural) + CodesText(part);
}

std::wstring BandText(const PatternPart& part) {
    switch (part.kind) {
    case PartKind::Number: return NumberText(part) + TracksText(part);
    case PartKind::Letter:
        return part.first + L".." + part.last + (part.text == part.first ? L"" : L":" + part.text) + TracksText(part);
    case PartKind::Field: return NameText(part.text) + FormText(part, std::nullopt) + CodesText(part);
    case PartKind::Macro: return L"@" + NameText(part.text) + FormText(part, std::nullopt) + CodesText(part);
    case PartKind::Formula: return FormulaText(part);
    case PartKind::Text: break;
    }
    return InQuotes(part.text);
}

std::wstring PlainText(const std::wstring& text) {
    std::wstring plain;
    for (const wchar_t character : text)
        plain.append(character == L'{' || character == L'}' ? 2 : 1, character);
    return plain;
}

} // namespace

std::wstring WritePattern(const Pattern& pattern) {
    std::wstring text;
    bool afterText = false; // two texts side by side would be read as one
    for (const PatternPart& part : pattern) {
        const bool isPlain = part.kind == PartKind::Text && part.name.empty() && !afterText;
        afterText = isPlain;
        if (isPlain)
            text += PlainText(part.text);
        else
            text += L"{" + BandText(part) + (part.name.empty() ? L"" : PatternAs.data() + NameText(part.name)) + L"}";
    }
    return text;
}

} // namespace ledger
