// For how many numbers a number band has room.
#pragma once

#include <cstdint>

#include "bands/Band.h"

namespace kestrel {

// How many numbers from `start` on, one after the other, the band's format gives the band's length; the first of them
// is known to have it. Counts no further than `enough`, which is at least 1.
[[nodiscard]] std::uint32_t FittingNumbers(const Band& band, const String& start, std::uint32_t enough);

} // namespace kestrel
