// Registry keys as registration needs them: made with their paths, written, and removed as trees. Each asks for no more
// rights than what it does takes, so that whoever may do that may register.
#pragma once

#include <windows.h>

#include "common/String.h"

namespace kestrel {

// A key that is open for writing its values and for making keys below it.
class RegistryKey {
  public:
    // Made when it is not there; fails with ComFailure.
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

  private:
    HKEY mvarKey = nullptr;
};

// Removes the key below a predefined root with all that it holds; what is not there is no failure.
void RemoveKey(HKEY root, const String& path);
// Removes the key when no key is below it.
void RemoveKeyIfChildless(HKEY root, const String& path);

// Whether the key is there, in the view of the registry that `view` names (0: this program's own). The other view can
// only be looked at from a predefined root: in a key that is open already, the system has chosen the view.
[[nodiscard]] bool KeyExists(HKEY root, const String& path, REGSAM view) noexcept;

} // namespace kestrel
