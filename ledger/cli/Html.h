// Pieces of HTML.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ledger {

// The text as it may stand in an element or in a quoted attribute; control characters are written out.
[[nodiscard]] std::wstring Escaped(std::wstring_view text);

// "12,345", for people.
[[nodiscard]] std::wstring Grouped(std::int64_t number);

// "1 code", "2 codes".
[[nodiscard]] std::wstring Counted(std::int64_t number, const std::wstring& one, const std::wstring& many);

} // namespace ledger
