#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

VARIANT& Typed(VARIANT& argument, VARTYPE type) {
    if (V_VT(&argument) != type) throw HostError(DISP_E_TYPEMISMATCH);
    return argument;
}

} // namespace

BSTR* EventCall::TextReference(UINT position) const { return V_BSTRREF(&Typed(Raw(position), VT_BYREF | VT_BSTR)); }

void EventCall::SetText(UINT position, StringView text) const {
    Bstr replacement(text);
    std::swap(*TextReference(position), *replacement.Out());
}

VARIANT_BOOL& EventCall::Flag(UINT position) const { return *V_BOOLREF(&Typed(Raw(position), VT_BYREF | VT_BOOL)); }

LONG& EventCall::Number(UINT position) const { return *V_I4REF(&Typed(Raw(position), VT_BYREF | VT_I4)); }

STDMETHODIMP Sink::QueryInterface(REFIID riid, void** object) noexcept {
    const bool known = riid == IID_IUnknown || riid == IID_IDispatch || riid == mvarEvents;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) Sink::Release() noexcept {
    const ULONG left = --mvarReferences;
    if (left == 0) delete this;
    return left;
}

STDMETHODIMP Sink::GetTypeInfoCount(UINT* count) noexcept {
    *count = 0;
    return S_OK;
}

STDMETHODIMP Sink::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                          UINT*) noexcept {
    if (riid != IID_NULL || flags != DISPATCH_METHOD || params->cNamedArgs != 0) {
        ADD_FAILURE() << "an event is called in a way of its own";
        return E_UNEXPECTED;
    }
    const ComPtr<Sink> self(this);
    const Handler handler = mvarHandler;
    try {
        return handler(EventCall(id, *params));
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the handler of event " << id << ": " << error.what();
        return E_UNEXPECTED;
    }
}

ComPtr<IConnectionPoint> PointOf(IUnknown* object, const IID& events) {
    const auto container = ComPtr<IUnknown>(object).As<IConnectionPointContainer>();
    if (!container) throw HostError(E_NOINTERFACE);
    ComPtr<IConnectionPoint> point;
    Must(container->FindConnectionPoint(events, point.Out()));
    return point;
}

Advised::Advised(IUnknown* object, const IID& events, Sink::Handler handler, const IID* answersFor)
    : mvarPoint(PointOf(object, events)) {
    const ComPtr<Sink> sink(new Sink(answersFor != nullptr ? *answersFor : events, std::move(handler)));
    Must(mvarPoint->Advise(sink.Get(), &mvarCookie));
}

void Advised::End() noexcept {
    if (mvarPoint && mvarCookie != 0) mvarPoint->Unadvise(mvarCookie);
    Forget();
}

void Advised::Forget() noexcept {
    mvarPoint = {};
    mvarCookie = 0;
}

} // namespace kestrel::test
