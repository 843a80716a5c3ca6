// The codes that come next, without storing anything.
#pragma once

#include <string>
#include <vector>

#include "ledger/core/Issuer.h"

namespace ledger {

// `count` codes in a row for the same values; fewer when the rule numbers nothing, because then they repeat. Fails with
// RecordError when the rule refuses the values.
[[nodiscard]] std::vector<std::wstring> PreviewCodes(const Workplace& workplace, const FieldValues& values,
                                                     std::size_t count);

} // namespace ledger
