// The component's own files: the library that is registered, found as the system finds it, and its entry points.
#pragma once

#include "automation/support/Com.h"

namespace kestrel::test {

// The path of the library that serves the classes of this bitness.
[[nodiscard]] String LibraryPath();
// The path of the folder that the library lies in, without a backslash at its end.
[[nodiscard]] String LibraryFolder();

// The library, loaded for as long as this lives, with its entry points.
class LoadedLibrary {
  public:
    explicit LoadedLibrary(const String& path);
    // Loaded once, freed once.
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary() { FreeLibrary(mvarModule); }

    [[nodiscard]] HMODULE Module() const noexcept { return mvarModule; }
    [[nodiscard]] HRESULT CanUnloadNow() const { return Entry<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")(); }
    [[nodiscard]] HRESULT Register() const { return Entry<HRESULT(STDAPICALLTYPE*)()>("DllRegisterServer")(); }
    [[nodiscard]] HRESULT Unregister() const { return Entry<HRESULT(STDAPICALLTYPE*)()>("DllUnregisterServer")(); }
    [[nodiscard]] HRESULT Install(BOOL install, const wchar_t* commandLine) const {
        return Entry<HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR)>("DllInstall")(install, commandLine);
    }
    [[nodiscard]] HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** object) const {
        return Entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, riid, object);
    }

  private:
    template <class Function>
    [[nodiscard]] Function Entry(const char* name) const {
        const auto entry = reinterpret_cast<void (*)()>(GetProcAddress(mvarModule, name));
        if (entry == nullptr) throw HostError(HRESULT_FROM_WIN32(GetLastError()));
        return reinterpret_cast<Function>(entry);
    }

    HMODULE mvarModule;
};

} // namespace kestrel::test
