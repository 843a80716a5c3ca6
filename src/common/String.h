// Strings of the model and the few operations on them that no locale takes part in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

using String = std::wstring;
using StringView = std::wstring_view;

// The most characters that a text of the component has: more than a 32-bit process can hold, and a 64-bit one fails
// with want of memory at the same length.
inline constexpr std::size_t LongestText = 0x3FFFFFFE;

inline constexpr wchar_t CarriageReturn = L'\r';
// What stands between an error's text and the names that it speaks of.
inline constexpr StringView TwoLineBreaks = L"\r\n\r\n";

// Without the blanks (and only blanks) at both ends.
[[nodiscard]] String Trim(StringView text);

// The pieces between the separators; an empty text has one empty piece.
[[nodiscard]] std::vector<StringView> Split(StringView text, wchar_t separator);

// The piece up to the next separator; rest becomes what follows it. With no separator left, the piece is all of rest
// and hasMore becomes false. Walks a text piece by piece without building a list.
class Splitter {
  public:
    Splitter(StringView text, wchar_t separator) noexcept : mvarRest(text), mvarSeparator(separator) {}
    // The next piece, or nothing after the last one.
    [[nodiscard]] std::optional<StringView> Next() noexcept;

  private:
    StringView mvarRest;
    wchar_t mvarSeparator;
    bool mvarEnded = false;
};

// All items in order with the separator between them.
[[nodiscard]] String Join(const std::vector<String>& items, StringView separator);

// The text with each "*" replaced.
[[nodiscard]] String ReplaceStar(StringView text, StringView replacement);

// Decimal, without padding, "-" in front of a negative number.
[[nodiscard]] String ToText(std::int64_t number);

} // namespace kestrel
