// What a band's box shows of the codes to come.
#pragma once

#include "bands/Band.h"

namespace kestrel::dialogs {

// A text as long as the band's value: the text of a fixed band, the value last issued, the first number or letter, or
// "X" for each character that a field or macro will bring. Long ones are cut, with "…" at the end.
[[nodiscard]] String SampleText(const Band& band);

// The name of the band's style as users see it; empty while it has none.
[[nodiscard]] String StyleName(BandStyles style);

} // namespace kestrel::dialogs
