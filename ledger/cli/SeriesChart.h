// A series as a picture: numbers upwards, time to the right.
#pragma once

#include <string>

#include "ledger/core/Report.h"

namespace ledger {

// An inline SVG that stretches to its place: the line is how far the numbers had come, bands across are numbers that
// are missing, crosses are void codes. Texts stand outside of it, so that they keep their size.
[[nodiscard]] std::wstring ChartOf(const SeriesReport& report);

} // namespace ledger
