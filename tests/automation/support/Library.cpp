#include "automation/support/Library.h"

namespace kestrel::test {

String LibraryPath() {
    static const String path = [] {
        wchar_t clsid[40];
        StringFromGUID2(__uuidof(::CodeClass), clsid, 40);
        const String key = String(L"CLSID\\") + clsid + L"\\InprocServer32";
        wchar_t value[MAX_PATH];
        DWORD size = sizeof(value);
        Must(HRESULT_FROM_WIN32(static_cast<DWORD>(
            RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value, &size))));
        return String(value);
    }();
    return path;
}

String LibraryFolder() { return LibraryPath().substr(0, LibraryPath().find_last_of(L'\\')); }

LoadedLibrary::LoadedLibrary(const String& path) : mvarModule(LoadLibraryW(path.c_str())) {
    if (mvarModule == nullptr) throw HostError(HRESULT_FROM_WIN32(GetLastError()));
}

} // namespace kestrel::test
