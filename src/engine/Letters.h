// Letter case of texts of which there may be very many: printable ASCII, alike in every locale, is looked at here, and
// only what goes beyond it is asked of the platform.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

// Whether putting the text in capitals would change it.
[[nodiscard]] bool HasSmallLetters(const String& text);

// The same number for texts that differ in nothing but letter case.
[[nodiscard]] std::uint64_t FoldedHash(const String& text);

} // namespace kestrel
