// A mark below the place of a text that something is wrong with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledger {

// Two lines for people: what stands around the place, and a mark below the place itself.
[[nodiscard]] std::vector<std::wstring> CaretLines(std::wstring_view text, std::size_t position);

} // namespace ledger
