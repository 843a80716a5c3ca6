// "Without regard to case" as the model means it everywhere but in the conversion of relations: one plain folding,
// character by character, the same for every user. Nothing is ignored and no two characters stand for one, so that
// texts which only a locale takes for the same stay different.
#pragma once

#include "common/String.h"

namespace kestrel {

// The form in which texts are compared; as long as the text itself.
[[nodiscard]] String CaseFolded(const String& text);

// Whether both texts have the same folded form.
[[nodiscard]] bool SameFolded(StringView left, StringView right);

} // namespace kestrel
