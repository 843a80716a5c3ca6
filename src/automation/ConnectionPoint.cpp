#include "automation/ConnectionPoint.h"

#include "automation/Enumerator.h"

namespace kestrel {

namespace {

struct ConnectionPolicy {
    using Interface = IEnumConnections;
    using Element = CONNECTDATA;
    using Item = ConnectionTable::Connection;
    static void Give(const Item& item, Element& element) noexcept {
        element = {ComPtr<IUnknown>(item.sink.Get()).Detach(), item.cookie};
    }
    static void Clear(const Element& element) noexcept { const auto owned = ComPtr<IUnknown>::Attach(element.pUnk); }
};

struct ConnectionPointPolicy {
    using Interface = IEnumConnectionPoints;
    using Element = LPCONNECTIONPOINT;
    using Item = ComPtr<IConnectionPoint>;
    static void Give(const Item& item, Element& element) noexcept { element = Item(item).Detach(); }
    static void Clear(const Element& element) noexcept { const auto owned = Item::Attach(element); }
};

} // namespace

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* events) noexcept {
    if (events == nullptr) return E_POINTER;
    *events = mvarEvents;
    return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) noexcept {
    if (container == nullptr) return E_POINTER;
    *container = ComPtr<IConnectionPointContainer>(mvarContainer).Detach();
    return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept {
    if (cookie != nullptr) *cookie = 0;
    const ComPtr<IUnknown> self(this);
    return Guarded(nullptr, [&] {
        RequirePointer(cookie);
        RequirePointer(sink);
        *cookie = mvarTable->Advise(*sink);
    });
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) noexcept {
    const ComPtr<IUnknown> self(this);
    return Guarded(nullptr, [&] { mvarTable->Unadvise(cookie); });
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) noexcept {
    if (connections == nullptr) return E_POINTER;
    *connections = nullptr;
    return Guarded(nullptr, [&] { *connections = Enumerate<ConnectionPolicy>(mvarTable->Connections()).Detach(); });
}

ComPtr<IEnumConnectionPoints> EnumerateConnectionPoint(ComPtr<IConnectionPoint> point) {
    return Enumerate<ConnectionPointPolicy>({std::move(point)});
}

} // namespace kestrel
