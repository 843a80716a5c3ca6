#include "hosts/common/Dispatch.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <array>

#include "hosts/common/ExceptionTexts.h"

namespace hosts {

namespace {

constexpr std::size_t MaximumArguments = 8;

[[noreturn]] void Raise(ExceptionTexts& exception) {
    exception.FillIn();
    const std::wstring description = exception.Description();
    throw DispatchError(exception.Code(), description.empty() ? L"error " + CodeText(exception.Code()) : description);
}

std::wstring NotRegistered(const std::wstring& progId, HRESULT code) {
    const std::wstring bits = sizeof(void*) == 4 ? L"32" : L"64";
    return L"cannot create " + progId + L" (" + CodeText(code) + L"); register the component for " + bits +
           L"-bit programs: regsvr32 Kestrel.dll";
}

} // namespace

Apartment::Apartment() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) throw HostError(L"COM cannot be started");
}

Apartment::~Apartment() { CoUninitialize(); }

HRESULT Dispatch::TryCreate(const std::wstring& progId, ComPtr<IDispatch>& object) {
    CLSID clsid{};
    const HRESULT result = CLSIDFromProgID(progId.c_str(), &clsid);
    if (FAILED(result)) return result;
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.OutVoid());
}

Dispatch Dispatch::Create(const std::wstring& progId) {
    ComPtr<IDispatch> object;
    const HRESULT result = TryCreate(progId, object);
    if (FAILED(result)) throw HostError(NotRegistered(progId, result));
    return Dispatch(object.Get());
}

DISPID Dispatch::Id(const std::wstring& name) const {
    const auto known = mvarIds.find(name);
    if (known != mvarIds.end()) return known->second;
    DISPID id = DISPID_UNKNOWN;
    std::wstring asked = name; // the declaration takes no constant text
    LPOLESTR names = asked.data();
    const HRESULT result = mvarObject->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result)) throw DispatchError(result, L"the component has no member " + name);
    mvarIds.emplace(name, id);
    return id;
}

Variant Dispatch::Invoke(const std::wstring& name, WORD kind, std::initializer_list<const Variant*> arguments) const {
    // The runtime takes arguments last first and only reads these.
    std::array<VARIANT, MaximumArguments> reversed{};
    std::ranges::transform(arguments, std::make_reverse_iterator(reversed.begin() + arguments.size()),
                           [](const Variant* argument) { return argument->Raw(); });
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = kind == DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1U : 0U};
    Variant result;
    ExceptionTexts exception;
    const HRESULT code = mvarObject->Invoke(Id(name), IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                            isPut ? nullptr : result.Out(), exception.Out(), nullptr);
    if (code == DISP_E_EXCEPTION) Raise(exception);
    if (FAILED(code)) throw DispatchError(code, name + L" failed with error " + CodeText(code));
    return result;
}

Variant Dispatch::Get(const std::wstring& name, std::initializer_list<const Variant*> arguments) const {
    return Invoke(name, DISPATCH_PROPERTYGET, arguments);
}

Variant Dispatch::Call(const std::wstring& name, std::initializer_list<const Variant*> arguments) const {
    return Invoke(name, DISPATCH_METHOD, arguments);
}

void Dispatch::Put(const std::wstring& name, const Variant& value) const {
    Invoke(name, DISPATCH_PROPERTYPUT, {&value});
}

Dispatch Dispatch::Object(const std::wstring& name) const { return Dispatch(Get(name).Object()); }

Dispatch Dispatch::Item(const Variant& indexKey, const std::wstring& name) const {
    return Dispatch(Get(name, {&indexKey}).Object());
}

} // namespace hosts
