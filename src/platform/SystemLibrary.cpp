#include "platform/SystemLibrary.h"

#include "common/String.h"

namespace kestrel {

namespace {

String SystemFolder() {
    String folder(MAX_PATH, L'\0');
    const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    folder.resize(length < folder.size() ? length : 0);
    return folder;
}

// The flag is for what the library itself needs: that too is looked for beside it first.
HMODULE Load(const wchar_t* name) {
    const String folder = SystemFolder();
    if (folder.empty()) return nullptr;
    return LoadLibraryExW((folder + L'\\' + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

} // namespace

SystemLibrary::SystemLibrary(const wchar_t* name) : mvarModule(Load(name)) {}

SystemLibrary::~SystemLibrary() {
    if (mvarModule != nullptr) FreeLibrary(mvarModule);
}

SystemLibrary::Untyped SystemLibrary::Address(const char* name) const noexcept {
    return mvarModule != nullptr ? reinterpret_cast<Untyped>(GetProcAddress(mvarModule, name)) : nullptr;
}

} // namespace kestrel
