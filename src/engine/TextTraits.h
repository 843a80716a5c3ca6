// What one look at the characters of a text tells, for checks of texts of which there may be very many: printable
// ASCII, alike in every locale, is looked at here, and only what goes beyond it is asked of the platform.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

struct TextTraits {
    std::uint64_t foldedHash = 0; // of a plain text: the same for those that differ in nothing but letter case
    bool hasSmallLetters = false; // putting the text in capitals would change it
    bool hasSeparators = false;   // it holds a character that separates the parts of a definition: , ; or a line break
    bool isPlain = true;          // it holds nothing but printable ASCII
};

[[nodiscard]] TextTraits TraitsOf(const String& text);

} // namespace kestrel
