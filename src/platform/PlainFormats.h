// The formats that numbering rules use most, without the platform's parser: digits padded with zeros ("0000") and plain
// dates ("yyyymmdd", "yy-mm").
#pragma once

#include <optional>

#include "common/String.h"

namespace kestrel {

// What the platform's formatting function says, in every locale with the Gregorian calendar; nothing for a value or a
// format that is not as plain as that:
//   digits    1 to 28 digits under a format of zeros alone
//   a date    "yyyy-mm-dd", from the year 1000 on, with or without " hh:nn:ss", under yyyy, yy, mm, m, dd, d and "-"
[[nodiscard]] std::optional<String> PlainlyFormatted(StringView value, StringView format);

} // namespace kestrel
