// Dates and times of day as texts that read alike in every locale.
#pragma once

#include "common/String.h"
#include "common/TextPort.h"

namespace kestrel {

// "HH:MM", the time of day; "00:00" for what is no date.
[[nodiscard]] String TimeText(Date date);

// "yyyy-mm-dd hh:nn:ss" in the Gregorian calendar; day 0 for what is no date from year 100 to 9999.
[[nodiscard]] String DateText(Date date);

} // namespace kestrel
