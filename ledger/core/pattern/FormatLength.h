// How long a text gets that is written by a format.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace ledger {

// The length of what a band's format writes, where it is the same for every value: yyyy, yymmdd, 0000, @@@. Nothing
// where it is not, as with mmmm, the name of a month.
[[nodiscard]] std::optional<std::size_t> FixedLengthOf(std::wstring_view format);

// The length of what a formula gives, where its function always gives the same: year(Date), month(Date).
[[nodiscard]] std::optional<std::size_t> FormulaLengthOf(std::wstring_view formula);

} // namespace ledger
