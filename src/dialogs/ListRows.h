// The rows of the drop-down lists that the designer and the new-band dialog share, and which of them is chosen.
#pragma once

#include <vector>

#include "engine/CodeClass.h"

namespace kestrel::dialogs {

[[nodiscard]] std::vector<String> StyleRows();
[[nodiscard]] std::vector<String> SwapRows();
[[nodiscard]] std::vector<String> IncrRows();
// "(None)", then the names of the fields or macros that the band can be bound to; empty when it cannot.
[[nodiscard]] std::vector<String> BoundRows(const Band& band);
[[nodiscard]] int BoundRow(const Band& band);
// The item of that row; nothing for "(None)" or no row.
[[nodiscard]] Ref<List> BoundItem(const Band& band, int row);
// What the host says of the field or macro that the band is bound to, such as what a macro is computed from; empty when
// it says nothing.
[[nodiscard]] String BoundDescription(const Band& band);
// "(None)", then the names of the rule's bands except the one left out.
[[nodiscard]] std::vector<String> TriggerRows(const CodeClass& rule, const Band* leftOut);
[[nodiscard]] int TriggerRow(const CodeClass& rule, const Band& band, const Band* leftOut);
[[nodiscard]] Ref<Band> TriggerBand(const CodeClass& rule, const Band* leftOut, int row);

} // namespace kestrel::dialogs
