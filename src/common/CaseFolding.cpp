#include "common/CaseFolding.h"

#include <cstdint>

#include "common/PlainText.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

bool IsAscii(wchar_t character) { return static_cast<std::uint32_t>(character) < 0x80; }

} // namespace

String CaseFolded(const String& text) { return TheText().Lower(text); }

bool SameFolded(StringView left, StringView right) {
    if (left.size() != right.size()) return false;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (left[i] == right[i]) continue;
        // Of what goes beyond ASCII only the platform knows the other case.
        if (!IsAscii(left[i]) || !IsAscii(right[i])) return CaseFolded(String(left)) == CaseFolded(String(right));
        if (FoldedAscii(left[i]) != FoldedAscii(right[i])) return false;
    }
    return true;
}

} // namespace kestrel
