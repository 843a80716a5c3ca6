#include "automation/RegistryKey.h"

#include "automation/Boundary.h"

namespace kestrel {

namespace {

void RequireDone(LSTATUS status) { Require(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

bool IsChildless(HKEY root, const String& path) noexcept {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return false;
    DWORD children = 0;
    const LSTATUS status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &children, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return status == ERROR_SUCCESS && children == 0;
}

} // namespace

RegistryKey::RegistryKey(HKEY parent, const String& path) {
    RequireDone(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE | KEY_CREATE_SUB_KEY, nullptr,
                                &mvarKey, nullptr));
}

void RegistryKey::Write(const String& text, const wchar_t* name) const {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    RequireDone(RegSetValueExW(mvarKey, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size));
}

void RegistryKey::WriteBelow(const String& path, const String& text) const { RegistryKey(mvarKey, path).Write(text); }

void RemoveKey(HKEY root, const String& path) {
    const LSTATUS status = RegDeleteTreeW(root, path.c_str());
    if (status != ERROR_FILE_NOT_FOUND) RequireDone(status);
}

void RemoveKeyIfChildless(HKEY root, const String& path) {
    if (IsChildless(root, path)) RemoveKey(root, path);
}

bool KeyExists(HKEY root, const String& path, REGSAM view) noexcept {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | view, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

} // namespace kestrel
