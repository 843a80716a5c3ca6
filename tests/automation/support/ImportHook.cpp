#include "automation/support/ImportHook.h"

#include <string_view>

#include "automation/support/Com.h"

namespace kestrel::test {

namespace {

template <class Type>
Type* At(BYTE* base, ULONG_PTR offset) {
    return reinterpret_cast<Type*>(base + offset);
}

// Where the library keeps the function's address; null when it imports none of that name.
void** PlaceOf(HMODULE library, std::string_view function) {
    auto* const base = reinterpret_cast<BYTE*>(library);
    const auto* headers = At<IMAGE_NT_HEADERS>(base, static_cast<ULONG_PTR>(At<IMAGE_DOS_HEADER>(base, 0)->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* module = At<IMAGE_IMPORT_DESCRIPTOR>(base, directory.VirtualAddress); module->Name != 0; ++module) {
        auto* name = At<IMAGE_THUNK_DATA>(base, module->OriginalFirstThunk);
        auto* address = At<void*>(base, module->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address)
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                At<IMAGE_IMPORT_BY_NAME>(base, name->u1.AddressOfData)->Name == function)
                return address;
    }
    return nullptr;
}

void Store(void** place, void* address) {
    DWORD before = 0;
    VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &before);
    *place = address;
    VirtualProtect(place, sizeof(*place), before, &before);
}

} // namespace

ImportHook::ImportHook(HMODULE library, const char* function, void* replacement)
    : mvarPlace(PlaceOf(library, function)) {
    if (mvarPlace == nullptr) throw HostError(E_NOINTERFACE);
    mvarOriginal = *mvarPlace;
    Store(mvarPlace, replacement);
}

ImportHook::~ImportHook() { Store(mvarPlace, mvarOriginal); }

} // namespace kestrel::test
