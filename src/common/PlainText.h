// What one look at the characters of a text tells, for texts of which there may be very many. Printable ASCII is alike
// in every locale and is looked at here; of what goes beyond it only the platform knows more.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

[[nodiscard]] constexpr bool IsDigit(wchar_t character) noexcept { return character >= L'0' && character <= L'9'; }

// In lower case where it is a letter of ASCII.
[[nodiscard]] constexpr wchar_t FoldedAscii(wchar_t character) noexcept {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

struct PlainLook {
    // The same for texts that differ in nothing but the case of ASCII letters. Texts that differ in their last
    // character alone have hashes as far apart as those characters: what is numbered in order is found side by side.
    std::uint64_t foldedHash = 0;
    bool isPlain = true;          // every character is printable ASCII
    bool hasSmallLetters = false; // of ASCII
    bool hasSeparators = false;   // it holds a character that separates the parts of a definition: , ; or a line break
};

[[nodiscard]] PlainLook LookAt(StringView text) noexcept;

} // namespace kestrel
