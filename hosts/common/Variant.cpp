#include "hosts/common/Variant.h"

#include <oleauto.h>

#include <new>
#include <utility>

#include "hosts/common/HostError.h"

namespace hosts {

BSTR MakeBstr(std::wstring_view text) {
    BSTR made = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (made == nullptr) throw std::bad_alloc();
    return made;
}

std::wstring FromBstr(BSTR text) { return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text)); }

Variant::Variant(std::wstring_view text) : Variant() {
    mvarValue.bstrVal = MakeBstr(text);
    mvarValue.vt = VT_BSTR;
}

Variant::Variant(long number) noexcept : Variant() {
    mvarValue.vt = VT_I4;
    mvarValue.lVal = number;
}

Variant::Variant(bool flag) noexcept : Variant() {
    mvarValue.vt = VT_BOOL;
    mvarValue.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(IDispatch* object) noexcept : Variant() {
    mvarValue.vt = VT_DISPATCH;
    mvarValue.pdispVal = object;
    if (object != nullptr) object->AddRef();
}

Variant::Variant(Variant&& other) noexcept : Variant() { std::swap(mvarValue, other.mvarValue); }

Variant& Variant::operator=(Variant&& other) noexcept {
    std::swap(mvarValue, other.mvarValue);
    return *this;
}

Variant Variant::ChangedTo(VARTYPE type) const {
    Variant changed;
    if (FAILED(VariantChangeType(changed.Out(), const_cast<VARIANT*>(&mvarValue), 0, type)))
        throw HostError(L"the component returned a value of an unexpected type");
    return changed;
}

std::wstring Variant::Text() const {
    return mvarValue.vt == VT_BSTR ? FromBstr(mvarValue.bstrVal) : FromBstr(ChangedTo(VT_BSTR).mvarValue.bstrVal);
}

long Variant::Number() const { return mvarValue.vt == VT_I4 ? mvarValue.lVal : ChangedTo(VT_I4).mvarValue.lVal; }

IDispatch* Variant::Object() const noexcept { return mvarValue.vt == VT_DISPATCH ? mvarValue.pdispVal : nullptr; }

VARIANT* Variant::Out() noexcept {
    VariantClear(&mvarValue);
    return &mvarValue;
}

VARIANT Variant::Detach() noexcept {
    const VARIANT held = mvarValue;
    VariantInit(&mvarValue);
    return held;
}

} // namespace hosts
