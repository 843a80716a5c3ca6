// A host's event sink: calls a function for each event, and the connection that it is advised through.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <functional>

#include "automation/support/Com.h"

namespace kestrel::test {

// The arguments of one event, by their position as the event interface declares them.
class EventCall {
  public:
    EventCall(DISPID id, DISPPARAMS& params) noexcept : mvarId(id), mvarParams(params) {}

    [[nodiscard]] DISPID Id() const noexcept { return mvarId; }
    [[nodiscard]] UINT Count() const noexcept { return mvarParams.cArgs; }
    // Throws HostError when the event has no such argument.
    [[nodiscard]] VARIANT& Raw(UINT position) const {
        if (position >= mvarParams.cArgs) throw HostError(DISP_E_BADPARAMCOUNT);
        return mvarParams.rgvarg[mvarParams.cArgs - 1 - position];
    }
    // Each follows the reference that the argument is and throws HostError when it is none of that type.
    [[nodiscard]] String Text(UINT position) const { return String(ViewOf(*TextReference(position))); }
    void SetText(UINT position, StringView text) const;
    [[nodiscard]] VARIANT_BOOL& Flag(UINT position) const;
    [[nodiscard]] LONG& Number(UINT position) const;

  private:
    [[nodiscard]] BSTR* TextReference(UINT position) const;

    DISPID mvarId;
    DISPPARAMS& mvarParams;
};

class Sink final : public IDispatch {
  public:
    using Handler = std::function<HRESULT(const EventCall&)>;

    // Answers for the event interface, or (with IID_IDispatch) for IDispatch alone.
    Sink(const IID& events, Handler handler) : mvarEvents(events), mvarHandler(std::move(handler)) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++mvarReferences; }
    STDMETHODIMP_(ULONG) Release() noexcept override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                        UINT* failedArgument) noexcept override;

    [[nodiscard]] static int Living() noexcept { return LivingSinks(); }

  private:
    ~Sink() { --LivingSinks(); }
    static int& LivingSinks() noexcept {
        static int living = 0;
        return living;
    }

    ULONG mvarReferences = 0;
    const IID& mvarEvents;
    Handler mvarHandler;
    int mvarCounted = ++LivingSinks();
};

[[nodiscard]] ComPtr<IConnectionPoint> PointOf(IUnknown* object, const IID& events);

// A sink advised for as long as it lives, or until End.
class Advised {
  public:
    Advised(IUnknown* object, const IID& events, Sink::Handler handler, const IID* answersFor = nullptr);
    // Advised once, unadvised once.
    Advised(const Advised&) = delete;
    Advised& operator=(const Advised&) = delete;
    ~Advised() { End(); }

    void End() noexcept;
    [[nodiscard]] DWORD Cookie() const noexcept { return mvarCookie; }
    // Lets go of the object without unadvising, as a careless host does.
    void Forget() noexcept;

  private:
    ComPtr<IConnectionPoint> mvarPoint;
    DWORD mvarCookie = 0;
};

} // namespace kestrel::test
