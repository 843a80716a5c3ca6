// The base of the small automation objects that stand beside the faces: a reference count and a fixed set of
// interfaces. Apartment-bound like everything of the library, so counting is not atomic.
#pragma once

#include <unknwn.h>

#include "platform/ModuleLock.h"

namespace kestrel {

template <class First, class... Others>
class ComObject : public First, public Others... {
  public:
    // A host refers to an object by its address.
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID riid, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = riid == __uuidof(IUnknown) ? static_cast<First*>(this) : nullptr;
        (Offer<First>(riid, object), ..., Offer<Others>(riid, object));
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++mvarReferences; }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        const ULONG left = --mvarReferences;
        if (left == 0) delete this;
        return left;
    }

  protected:
    ComObject() noexcept = default;
    virtual ~ComObject() = default;

  private:
    template <class Interface>
    void Offer(REFIID riid, void** object) noexcept {
        if (riid == __uuidof(Interface)) *object = static_cast<Interface*>(this);
    }

    ULONG mvarReferences = 0;
    ModuleLock mvarModuleLock;
};

} // namespace kestrel
