// Where the library itself lies.
#pragma once

#include <windows.h>

#include "common/String.h"

namespace kestrel {

// The module that this code is part of.
[[nodiscard]] HMODULE ThisModule() noexcept;

// The full path of a module; null: of the host program.
[[nodiscard]] String ModulePath(HMODULE module);

} // namespace kestrel
