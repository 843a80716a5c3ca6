#include "automation/support/FailingAllocations.h"

#include <cstdlib>

#include "automation/support/Com.h"

namespace kestrel::test {

namespace {

// The functions imported have no place for an object's data.
struct Countdown {
    bool armed = false;
    int spared = 0;
    bool failed = false;

    bool TakesThisOne() noexcept {
        if (!armed || failed || spared-- > 0) return false;
        return failed = true;
    }
};

Countdown& TheCountdown() noexcept {
    static Countdown countdown;
    return countdown;
}

void* __cdecl Malloc(std::size_t size) {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): stands in for the function itself
    return TheCountdown().TakesThisOne() ? nullptr : std::malloc(size);
}

BSTR STDAPICALLTYPE AllocString(const OLECHAR* text, UINT length) {
    return TheCountdown().TakesThisOne() ? nullptr : SysAllocStringLen(text, length);
}

bool Write(void** place, void* function) noexcept {
    DWORD before = 0;
    if (VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &before) == FALSE) return false;
    *place = function;
    return VirtualProtect(place, sizeof(*place), before, &before) != FALSE;
}

// Where the library keeps the address of what it imports; null when it does not import it.
void** PlaceHolding(HMODULE library, const void* function) noexcept {
    auto* const base = reinterpret_cast<BYTE*>(library);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* module = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; module->Name != 0; ++module)
        for (auto** place = reinterpret_cast<void**>(base + module->FirstThunk); *place != nullptr; ++place)
            if (*place == function) return place;
    return nullptr;
}

} // namespace

FailingAllocations::FailingAllocations(HMODULE library) {
    Replace(library, "msvcrt.dll", "malloc", reinterpret_cast<void*>(&Malloc));
    Replace(library, "oleaut32.dll", "SysAllocStringLen", reinterpret_cast<void*>(&AllocString));
}

FailingAllocations::~FailingAllocations() {
    for (const auto& [place, before] : mvarImports)
        Write(place, before);
}

void FailingAllocations::Replace(HMODULE library, const char* module, const char* name, void* replacement) {
    auto* const function = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(module), name));
    void** const place = PlaceHolding(library, function);
    if (function == nullptr || place == nullptr) throw HostError(E_NOTIMPL);
    if (!Write(place, replacement)) throw HostError(HRESULT_FROM_WIN32(GetLastError()));
    mvarImports.push_back({place, function});
}

void FailingAllocations::Arm(int spared) noexcept { TheCountdown() = {true, spared, false}; }

bool FailingAllocations::Disarm() noexcept {
    TheCountdown().armed = false;
    return TheCountdown().failed;
}

} // namespace kestrel::test
