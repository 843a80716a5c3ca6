#include "dialogs/Oleacc.h"

#include "dialogs/Guard.h"
#include "platform/SystemLibrary.h"

namespace kestrel::dialogs {

namespace {

using Library = const SystemLibrary*;

// It stays loaded: objects of its own may be in use when the last of ours has gone. Null for want of memory.
Library TheLibrary() noexcept {
    static const Library library = Guarded(Library{}, []() -> Library { return new SystemLibrary(L"oleacc.dll"); });
    return library;
}

template <class Function>
Function Find(const char* name) noexcept {
    return TheLibrary() != nullptr ? TheLibrary()->Find<Function>(name) : nullptr;
}

} // namespace

LRESULT ResultOfObject(WPARAM wParam, IAccessible* object) noexcept {
    const auto result = Find<decltype(&LresultFromObject)>("LresultFromObject");
    const LRESULT answer = result != nullptr ? result(__uuidof(IAccessible), wParam, object) : 0;
    return SUCCEEDED(static_cast<HRESULT>(answer)) ? answer : 0;
}

ComPtr<IAccessible> StandardObject(HWND window) noexcept {
    ComPtr<IAccessible> object;
    const auto create = Find<decltype(&CreateStdAccessibleObject)>("CreateStdAccessibleObject");
    if (create != nullptr) create(window, OBJID_CLIENT, __uuidof(IAccessible), object.OutVoid());
    return object;
}

} // namespace kestrel::dialogs
