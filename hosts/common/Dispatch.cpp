#include "hosts/common/Dispatch.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <array>
#include <cwchar>

namespace hosts {

namespace {

constexpr std::size_t MaximumArguments = 8;

std::wstring CodeText(HRESULT code) {
    std::array<wchar_t, 16> text{};
    std::swprintf(text.data(), text.size(), L"0x%08lX", static_cast<unsigned long>(code));
    return text.data();
}

// Takes the texts over from the runtime.
class ExceptionTexts {
  public:
    ~ExceptionTexts() {
        SysFreeString(mvarInfo.bstrSource);
        SysFreeString(mvarInfo.bstrDescription);
        SysFreeString(mvarInfo.bstrHelpFile);
    }
    ExceptionTexts() = default;
    ExceptionTexts(const ExceptionTexts&) = delete; // owns what it frees
    ExceptionTexts& operator=(const ExceptionTexts&) = delete;

    [[nodiscard]] EXCEPINFO* Out() noexcept { return &mvarInfo; }
    [[noreturn]] void Raise() {
        if (mvarInfo.pfnDeferredFillIn != nullptr) mvarInfo.pfnDeferredFillIn(&mvarInfo);
        const std::wstring description = FromBstr(mvarInfo.bstrDescription);
        throw DispatchError(mvarInfo.scode, description.empty() ? L"error " + CodeText(mvarInfo.scode) : description);
    }

  private:
    EXCEPINFO mvarInfo{};
};

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

Dispatch Dispatch::Create(const std::wstring& progId) {
    CLSID clsid{};
    ComPtr<IDispatch> object;
    HRESULT result = CLSIDFromProgID(progId.c_str(), &clsid);
    if (SUCCEEDED(result))
        result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.OutVoid());
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
    if (code == DISP_E_EXCEPTION) exception.Raise();
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
