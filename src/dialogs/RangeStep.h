// One step of a number or letter up or down, as the spin bars make it.
#pragma once

#include "common/Enumerations.h"
#include "common/String.h"

namespace kestrel::dialogs {

// The text one unit up (step 1) or down (step -1) in the domain of the style: numbers from 0 on, letters from A to Z.
// At the end of the domain, and for any other style, the text unchanged. A text that is no number counts as 0, one that
// is no letter starts at the end that the step comes from.
[[nodiscard]] String SteppedText(BandStyles style, const String& text, int step);

} // namespace kestrel::dialogs
