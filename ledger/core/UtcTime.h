// Times as the ledger's rows have them.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace ledger {

// The time of "2024-05-06T07:08:09Z" or of a beginning of it ("2024-05-06T07" is the beginning of that hour); nothing
// of any other text.
[[nodiscard]] std::optional<std::chrono::sys_seconds> TimeOf(const std::wstring& text);

// "2024-05-06".
[[nodiscard]] std::wstring DateText(std::chrono::sys_seconds time);

} // namespace ledger
