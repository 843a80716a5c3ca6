// The type library inside this module, loaded once per process.
#pragma once

#include <oaidl.h>

#include "platform/ComPtr.h"

namespace kestrel {

// Each fails with ComFailure when the library cannot be read.
[[nodiscard]] ITypeLib& TheTypeLibrary();
// The library's identifier.
[[nodiscard]] GUID TypeLibraryId();
// The description of a class or interface of the library.
[[nodiscard]] ComPtr<ITypeInfo> TypeInfoOf(REFGUID guid);

} // namespace kestrel
