#include "automation/ClassFactory.h"

namespace kestrel {

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : mvarFacts.create(riid, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept {
    if (lock)
        ModuleLock::Lock();
    else
        ModuleLock::Unlock();
    return S_OK;
}

} // namespace kestrel
