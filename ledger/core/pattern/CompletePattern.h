// What a pattern leaves open: the names of its bands and what its numbers track.
#pragma once

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

// Names every band that has no name: after its field, macro or formula, or "Text", "Number" and "Letter", with a number
// behind it where the name is taken. Letter case makes no difference between names of bands.
//
// A number that does not say what it tracks tracks every field, macro and formula, except check digits and other
// formulas that are computed of a number. A tracked name is a band's, or a field's or macro's, which stands for all its
// bands.
//
// Fails with PatternError on names that are used twice, tracked names that are no band's, and layers that are not those
// of one file from 1 on.
void CompletePattern(Pattern& pattern);

} // namespace ledger
