// Names and values of fields and macros, in an order of their own.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ledger {

using FieldValues = std::vector<std::pair<std::wstring, std::wstring>>;

} // namespace ledger
