#include "common/CaseFolding.h"

#include <algorithm>
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
    const auto [inLeft, inRight] = std::mismatch(left.begin(), left.end(), right.begin());
    if (inLeft == left.end()) return true;
    // Most texts differ in their first letters, and those that are ASCII need no folding of the whole.
    if (IsAscii(*inLeft) && IsAscii(*inRight) && FoldedAscii(*inLeft) != FoldedAscii(*inRight)) return false;
    return CaseFolded(String(left)) == CaseFolded(String(right));
}

} // namespace kestrel
