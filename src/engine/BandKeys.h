// Band names as keys: compared without regard to case.
#pragma once

#include "common/CaseFolding.h"

namespace kestrel {

struct BandKeys {
    static String Fold(const String& name) { return CaseFolded(name); }
    static bool IsSame(const String& folded, const String& name) { return SameFolded(folded, name); }
};

} // namespace kestrel
