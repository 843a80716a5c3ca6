// A type library as text: every name, identifier, flag, dispatch id, place in the vtable, parameter and help text,
// alike for both bitnesses.
#pragma once

#include <oaidl.h>

#include <string>

namespace kestrel::test {

// In UTF-8, one line per fact, lines end with "\n". Throws HostError when the library cannot be read.
[[nodiscard]] std::string Dump(ITypeLib& library);

} // namespace kestrel::test
