#pragma once

#include <limits>

namespace kestrel::test {

inline constexpr double Infinity = std::numeric_limits<double>::infinity();

} // namespace kestrel::test
