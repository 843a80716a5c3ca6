#include "engine/TextTraits.h"

#include "common/PlainText.h"
#include "common/Ports.h"

namespace kestrel {

TextTraits TraitsOf(const String& text) {
    const auto look = LookAt(text);
    TextTraits traits{look.foldedHash, look.hasSmallLetters, look.hasSeparators, look.isPlain};
    if (traits.isPlain) return traits;
    traits.hasSmallLetters = traits.hasSmallLetters || TheText().Upper(text) != text;
    return traits;
}

} // namespace kestrel
