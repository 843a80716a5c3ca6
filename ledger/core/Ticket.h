// Marks that tell one attempt to store a code from every other one, on any machine.
#pragma once

#include <string>

namespace ledger {

// A new one each time, at most 40 characters.
[[nodiscard]] std::wstring NewTicket();

} // namespace ledger
