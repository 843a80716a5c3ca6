#include "hosts/common/EventSink.h"

#include <oleauto.h>

#include "hosts/common/HostError.h"
#include "hosts/common/Variant.h"

namespace hosts {

VARIANT* EventArguments::At(unsigned position) const noexcept {
    if (position >= mvarParameters.cArgs) return nullptr;
    return &mvarParameters.rgvarg[mvarParameters.cArgs - 1 - position];
}

std::wstring EventArguments::Text(unsigned position) const {
    const VARIANT* argument = At(position);
    if (argument == nullptr) return {};
    if (argument->vt == (VT_BYREF | VT_BSTR)) return FromBstr(*argument->pbstrVal);
    return argument->vt == VT_BSTR ? FromBstr(argument->bstrVal) : std::wstring();
}

void EventArguments::SetText(unsigned position, std::wstring_view text) const {
    const VARIANT* argument = At(position);
    if (argument == nullptr || argument->vt != (VT_BYREF | VT_BSTR)) return;
    BSTR answer = MakeBstr(text);
    SysFreeString(*argument->pbstrVal);
    *argument->pbstrVal = answer;
}

void EventArguments::SetFlag(unsigned position, bool flag) const {
    const VARIANT* argument = At(position);
    if (argument == nullptr || argument->vt != (VT_BYREF | VT_BOOL)) return;
    *argument->pboolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

void EventSink::RethrowFailure() {
    if (const std::exception_ptr failure = std::exchange(mvarFailure, nullptr)) std::rethrow_exception(failure);
}

HRESULT EventSink::QueryInterface(REFIID iid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != mvarSource) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
}

ULONG EventSink::Release() noexcept {
    const ULONG left = --mvarReferences;
    if (left == 0) delete this;
    return left;
}

HRESULT EventSink::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT EventSink::GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept { return E_NOTIMPL; }

HRESULT EventSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept { return DISP_E_UNKNOWNNAME; }

HRESULT EventSink::Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                          UINT*) noexcept {
    const auto handler = mvarHandlers.find(event);
    if (handler == mvarHandlers.end() || parameters == nullptr) return S_OK;
    try {
        handler->second(EventArguments(*parameters));
        return S_OK;
    } catch (...) { // goes on in RethrowFailure, on the host's side of the call
        mvarFailure = std::current_exception();
        return E_FAIL;
    }
}

EventConnection::EventConnection(IUnknown* object) {
    const ComPtr<IUnknown> owner(object);
    const auto classInfo = owner.As<IProvideClassInfo2>(IID_IProvideClassInfo2);
    const auto container = owner.As<IConnectionPointContainer>(IID_IConnectionPointContainer);
    IID source{};
    if (!classInfo || !container || FAILED(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source)) ||
        FAILED(container->FindConnectionPoint(source, mvarPoint.Out())))
        throw HostError(L"the component raises no events");
    mvarSink = ComPtr<EventSink>(new EventSink(source));
    if (FAILED(mvarPoint->Advise(mvarSink.Get(), &mvarCookie)))
        throw HostError(L"the component accepts no receiver of its events");
}

EventConnection::~EventConnection() {
    if (mvarPoint) mvarPoint->Unadvise(mvarCookie);
}

} // namespace hosts
