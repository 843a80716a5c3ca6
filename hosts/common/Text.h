// Texts as they may stand in one line.
#pragma once

#include <string>
#include <string_view>

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

// "1 code", "2 codes".
template <class Number>
[[nodiscard]] std::wstring Counted(Number number, std::wstring_view one) {
    std::wstring text = std::to_wstring(number) + L' ';
    text += one;
    return number == 1 ? text : text + L's';
}

} // namespace hosts
