// SHA-256, as Windows computes it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ledger {

using Sha256Sum = std::array<std::uint8_t, 32>;

// Fails with HostError when Windows does not provide it.
[[nodiscard]] Sha256Sum Sha256Of(std::string_view bytes);

// 64 hexadecimal digits, small letters.
[[nodiscard]] std::wstring HexOf(const Sha256Sum& sum);

} // namespace ledger
