// The item of a rule's fields or macros that a band takes its value from.
#pragma once

#include "bands/Band.h"

namespace kestrel {

// The item of the band's DataFields that has the name of its DataField. Fails with 91 for a band that has no DataField
// or DataFields, with 5 when nothing is bound or the list does not hold the name.
[[nodiscard]] Ref<List> BoundItem(Band& band);

} // namespace kestrel
