#include "dialogs/Oleacc.h"

namespace kestrel::dialogs {

namespace {

// Null when the system has no such library.
HMODULE Load() noexcept {
    static constexpr wchar_t name[] = L"\\oleacc.dll";
    wchar_t path[MAX_PATH + 16] = {};
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    lstrcpyW(path + length, name);
    return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH); // what it needs lies there, too
}

// It stays loaded: objects of its own may be in use when the last of ours has gone.
template <class Function>
Function Find(const char* name) noexcept {
    static const HMODULE library = Load();
    if (library == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
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
