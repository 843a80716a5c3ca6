#include "hosts/common/Text.h"

#include <algorithm>
#include <cwctype>

namespace hosts {

namespace {

bool IsControl(wchar_t character) {
    constexpr wchar_t space = 0x20;
    constexpr wchar_t del = 0x7F;
    constexpr wchar_t lastControl = 0x9F;
    constexpr wchar_t lineSeparator = 0x2028;
    constexpr wchar_t paragraphSeparator = 0x2029;
    return character < space || (character >= del && character <= lastControl) || character == lineSeparator ||
           character == paragraphSeparator;
}

std::wstring Written(wchar_t character) {
    if (character == L'\n') return L"\\n";
    if (character == L'\r') return L"\\r";
    if (character == L'\t') return L"\\t";
    constexpr const wchar_t* digits = L"0123456789abcdef";
    std::wstring text = L"\\u";
    for (unsigned shift = 16; shift > 0;) {
        shift -= 4;
        text.push_back(digits[static_cast<unsigned>(character) >> shift & 0xFU]);
    }
    return text;
}

bool IsHigh(wchar_t character) { return character >= 0xD800 && character < 0xDC00; }
bool IsLow(wchar_t character) { return character >= 0xDC00 && character < 0xE000; }

} // namespace

std::wstring Shown(std::wstring_view text) {
    std::wstring shown;
    for (const wchar_t character : text)
        if (IsControl(character))
            shown += Written(character);
        else
            shown.push_back(character);
    return shown;
}

bool HasControl(std::wstring_view text) noexcept { return std::ranges::any_of(text, IsControl); }

bool IsWhole(std::wstring_view text) noexcept {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isPair = IsHigh(text[at]) && at + 1 < text.size() && IsLow(text[at + 1]);
        if (isPair)
            ++at;
        else if (text[at] == L'\0' || IsHigh(text[at]) || IsLow(text[at]))
            return false;
    }
    return true;
}

std::wstring OneLine(std::wstring_view message) {
    std::wstring line;
    bool pending = false;
    for (const wchar_t character : message) {
        const bool isBreak = character == L'\r' || character == L'\n';
        if (!isBreak && pending && !line.empty()) line += L"; ";
        if (!isBreak) line.push_back(character);
        pending = isBreak;
    }
    return line;
}

std::wstring Trimmed(std::wstring_view text) {
    const auto first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos) return {};
    return std::wstring(text.substr(first, text.find_last_not_of(L' ') + 1 - first));
}

std::wstring_view WithoutBlanks(std::wstring_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(L" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(L" \t") + 1);
}

std::wstring Folded(std::wstring text) {
    std::ranges::transform(text, text.begin(), [](wchar_t character) { return std::towlower(character); });
    return text;
}

std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> pieces(1);
    for (const wchar_t character : text) {
        if (character == separator)
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    return pieces;
}

std::wstring Quoted(std::wstring_view text) { return L"'" + std::wstring(text) + L"'"; }

} // namespace hosts
