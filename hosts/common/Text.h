// Texts as they may stand in one line, and what is often done to them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hosts {

// Line breaks and what stands around them become "; ", so that a message of several lines is one.
[[nodiscard]] std::wstring OneLine(std::wstring_view message);

// The text with what could end a line or play with a console written out: a line feed becomes \n, a tab \t, any other
// control character and the separators of lines and paragraphs \u and four digits.
[[nodiscard]] std::wstring Shown(std::wstring_view text);

// Whether the text has a character in it that Shown would write out.
[[nodiscard]] bool HasControl(std::wstring_view text) noexcept;

// Whether the text is whole: no NUL, and no half of a surrogate pair.
[[nodiscard]] bool IsWhole(std::wstring_view text) noexcept;

// The text without the spaces around it.
[[nodiscard]] std::wstring Trimmed(std::wstring_view text);

// The piece of it without the spaces and tabs around it.
[[nodiscard]] std::wstring_view WithoutBlanks(std::wstring_view text) noexcept;

// Every letter small, so that texts that differ in capitals alone are the same.
[[nodiscard]] std::wstring Folded(std::wstring text);

// What stands between the separators; one text more than there are of them.
[[nodiscard]] std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator);

// A piece of a record or of a code as messages show it.
[[nodiscard]] std::wstring Quoted(std::wstring_view text);

// "1 code", "2 codes".
template <class Number>
[[nodiscard]] std::wstring Counted(Number number, std::wstring_view one) {
    std::wstring text = std::to_wstring(number) + L' ';
    text += one;
    return number == 1 ? text : text + L's';
}

} // namespace hosts
