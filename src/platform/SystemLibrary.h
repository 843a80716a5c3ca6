// A library of Windows, found when the program runs.
//
// The host's folder is never searched: a file of that name, put there by anybody who may write to it, would run with
// the host's rights.
#pragma once

#include <windows.h>

namespace kestrel {

class SystemLibrary {
  public:
    // Loads the file of that name in the system's folder. When it cannot be loaded, every function is missing.
    explicit SystemLibrary(const wchar_t* name);
    // Loaded once, let go once.
    SystemLibrary(const SystemLibrary&) = delete;
    SystemLibrary& operator=(const SystemLibrary&) = delete;
    ~SystemLibrary();

    // A function that the library exports; null when it has none of that name. Valid as long as this object.
    template <class Function>
    [[nodiscard]] Function Find(const char* name) const noexcept {
        return reinterpret_cast<Function>(Address(name));
    }

  private:
    using Untyped = void (*)();
    [[nodiscard]] Untyped Address(const char* name) const noexcept;

    HMODULE mvarModule;
};

} // namespace kestrel
