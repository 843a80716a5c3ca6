// An open registry key, as registration needs it: made with its path, written, and removed as a tree.
#pragma once

#include <windows.h>

#include "common/String.h"

namespace kestrel {

class RegistryKey {
  public:
    // Opened for writing, made when it is not there; fails with ComFailure.
    RegistryKey(HKEY parent, const String& path);
    // One handle has one owner.
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() { RegCloseKey(mvarKey); }

    [[nodiscard]] HKEY Get() const noexcept { return mvarKey; }
    // Writes the key's default value, or the value of that name; fails with ComFailure.
    void Write(const String& text, const wchar_t* name = nullptr) const;
    // Makes a key below this one with that default value.
    void WriteBelow(const String& path, const String& text) const;
    // Removes the key below this one with all that it holds; what is not there is no failure.
    void RemoveBelow(const String& path) const;
    // Removes the key below this one when no key is below it.
    void RemoveBelowIfChildless(const String& path) const;

  private:
    HKEY mvarKey = nullptr;
};

// Whether the key is there, in the view of the registry that `view` names (0: this program's own).
[[nodiscard]] bool KeyExists(HKEY parent, const String& path, REGSAM view) noexcept;

} // namespace kestrel
