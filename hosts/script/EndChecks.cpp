#include "hosts/script/EndChecks.h"

#include <windows.h>

namespace hosts::script {

namespace {

constexpr int HeapDamaged = 3;
constexpr int ObjectsLeft = 4;

bool IsReleased(const std::wstring& dll) noexcept {
    using CanUnload = HRESULT(STDMETHODCALLTYPE*)();
    const HMODULE module = GetModuleHandleW(dll.c_str());
    if (module == nullptr) return true;
    const auto canUnload =
        reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    return canUnload != nullptr && canUnload() == S_OK;
}

} // namespace

int EndChecks::AfterQuit(int exitCode) const noexcept {
    return heap && HeapValidate(GetProcessHeap(), 0, nullptr) == 0 ? HeapDamaged : exitCode;
}

int EndChecks::AfterEnd(int exitCode) const noexcept {
    const int result = AfterQuit(exitCode);
    if (result == HeapDamaged || !released || IsReleased(*released)) return result;
    return ObjectsLeft;
}

} // namespace hosts::script
