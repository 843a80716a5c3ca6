// Band names as keys: compared without regard to case.
#pragma once

#include "common/Ports.h"

namespace kestrel {

struct BandKeys {
    static String Fold(const String& name) { return TheText().Lower(name); }
};

} // namespace kestrel
