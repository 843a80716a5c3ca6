#include "automation/TypeLibrary.h"

#include <oleauto.h>

#include "automation/Boundary.h"
#include "platform/Module.h"

namespace kestrel {

namespace {

// Loading costs milliseconds, so it happens once; the reference is never let go, as the system may have ended its side
// before this module is unloaded.
ITypeLib* Load() {
    ITypeLib* library = nullptr;
    Require(LoadTypeLibEx(ModulePath(ThisModule()).c_str(), REGKIND_NONE, &library));
    return library;
}

} // namespace

ITypeLib& TheTypeLibrary() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): automation interfaces have no const members
    static ITypeLib* const library = Load();
    return *library;
}

GUID TypeLibraryId() {
    TLIBATTR* attributes = nullptr;
    Require(TheTypeLibrary().GetLibAttr(&attributes));
    const GUID id = attributes->guid;
    TheTypeLibrary().ReleaseTLibAttr(attributes);
    return id;
}

ComPtr<ITypeInfo> TypeInfoOf(REFGUID guid) {
    ComPtr<ITypeInfo> info;
    Require(TheTypeLibrary().GetTypeInfoOfGuid(guid, info.Out()));
    return info;
}

} // namespace kestrel
