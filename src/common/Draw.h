// A number that nobody outside the process can foresee.
#pragma once

#include <cstdint>

namespace kestrel {

// 32 bits, every number alike likely; fails with std::bad_alloc when the system has none to give.
[[nodiscard]] std::uint32_t Draw();

} // namespace kestrel
