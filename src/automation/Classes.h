// The public classes of the library.
#pragma once

#include <array>

#include "automation/ClassFacts.h"

namespace kestrel {

[[nodiscard]] const std::array<const ClassFacts*, 7>& AllClasses() noexcept;

} // namespace kestrel
