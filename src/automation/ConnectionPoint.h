// The connection point of a face: advises sinks in the table of the face's model object.
#pragma once

#include <ocidl.h>

#include "automation/ConnectionTable.h"
#include "platform/ComObject.h"

namespace kestrel {

class ConnectionPoint final : public ComObject<IConnectionPoint> {
  public:
    ConnectionPoint(IConnectionPointContainer& container, const IID& events, Ref<ConnectionTable> table) noexcept
        : mvarContainer(&container), mvarEvents(events), mvarTable(std::move(table)) {}

    STDMETHODIMP GetConnectionInterface(IID* events) noexcept override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
    STDMETHODIMP EnumConnections(IEnumConnections** connections) noexcept override;

  private:
    ComPtr<IConnectionPointContainer> mvarContainer; // keeps the face, and with it the model object
    const IID& mvarEvents;
    Ref<ConnectionTable> mvarTable;
};

// The enumerator over the one connection point of a face.
[[nodiscard]] ComPtr<IEnumConnectionPoints> EnumerateConnectionPoint(ComPtr<IConnectionPoint> point);

} // namespace kestrel
