// Receives an automation object's events by their dispatch ids and hands them to functions.
#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <exception>
#include <functional>
#include <map>

#include "hosts/common/ComPtr.h"

namespace hosts {

// The arguments of one event, in the order of its declaration.
class EventArguments {
  public:
    explicit EventArguments(const DISPPARAMS& parameters) noexcept : mvarParameters(parameters) {}

    // The argument at a position from 0, passed by value or by reference; empty when there is none.
    [[nodiscard]] std::wstring Text(unsigned position) const;
    // Answers an argument passed by reference; anything else stays as it is.
    void SetText(unsigned position, std::wstring_view text) const;
    void SetFlag(unsigned position, bool flag) const;
    [[nodiscard]] const DISPPARAMS& Raw() const noexcept { return mvarParameters; }

  private:
    [[nodiscard]] VARIANT* At(unsigned position) const noexcept;

    const DISPPARAMS& mvarParameters;
};

class EventSink final : public IDispatch {
  public:
    using Handler = std::function<void(const EventArguments&)>;

    explicit EventSink(REFIID source) noexcept : mvarSource(source) {}
    EventSink(const EventSink&) = delete; // counted, so it lives where it was made
    EventSink& operator=(const EventSink&) = delete;

    void On(DISPID event, Handler handler) { mvarHandlers[event] = std::move(handler); }
    // Throws what a handler threw since the last call; the component only ever sees a failed event.
    void RethrowFailure();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++mvarReferences; }
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID reserved, LCID locale, WORD kind, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept override;

  private:
    ~EventSink() = default;

    IID mvarSource;
    std::map<DISPID, Handler> mvarHandlers;
    std::exception_ptr mvarFailure;
    std::atomic<ULONG> mvarReferences{0};
};

// A sink's connection to an object's default events; ends with this.
class EventConnection {
  public:
    EventConnection() = default;
    // Fails with HostError when the object has no events.
    explicit EventConnection(IUnknown* object);
    EventConnection(EventConnection&& other) noexcept = default;
    EventConnection& operator=(EventConnection&& other) = delete; // would have to end the old connection first
    ~EventConnection();

    [[nodiscard]] EventSink& Sink() const noexcept { return *mvarSink.Get(); }

  private:
    ComPtr<EventSink> mvarSink;
    ComPtr<IConnectionPoint> mvarPoint;
    DWORD mvarCookie = 0;
};

} // namespace hosts
