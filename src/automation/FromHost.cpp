#include "automation/FromHost.h"

#include <limits>

#include "automation/Boundary.h"
#include "common/Error.h"

namespace kestrel {

namespace {

Variant Resolved(const VARIANT& value) {
    HRESULT result = S_OK;
    Variant copy = Variant::CopyOf(value, result);
    Require(result);
    return copy;
}

bool IsNumber(VARTYPE type) noexcept {
    switch (type) {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_BOOL: return true;
    default: return false;
    }
}

IndexKey IndexOfResolved(Variant value) {
    if (IsLeftOut(value.Get())) return {};
    if (value.Type() == VT_BSTR) return TextOf(V_BSTR(&value.Get()));
    if (!IsNumber(value.Type())) return IndexKey::Unusable(Message::InvalidCall);
    const HRESULT result = VariantChangeType(value.Out(), value.Out(), 0, VT_I8);
    return SUCCEEDED(result) ? V_I8(&value.Get()) : std::numeric_limits<std::int64_t>::max();
}

Variant Converted(const VARIANT& value, VARTYPE type) {
    Variant converted = Resolved(value);
    Require(VariantChangeType(converted.Out(), converted.Out(), 0, type));
    return converted;
}

} // namespace

void Replace(BSTR& target, StringView text) {
    Bstr replacement(text);
    std::swap(target, *replacement.Out());
}

bool IsLeftOut(const VARIANT& value) noexcept {
    switch (V_VT(&value)) {
    case VT_BYREF | VT_VARIANT: return IsLeftOut(*V_VARIANTREF(&value));
    case VT_EMPTY: return true;
    case VT_ERROR: return V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
    case VT_DISPATCH:
    case VT_UNKNOWN:
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN: return ObjectOf(value) == nullptr;
    default: return false;
    }
}

IUnknown* ObjectOf(const VARIANT& value) noexcept {
    switch (V_VT(&value)) {
    case VT_BYREF | VT_VARIANT: return ObjectOf(*V_VARIANTREF(&value));
    case VT_DISPATCH:
    case VT_UNKNOWN: return V_UNKNOWN(&value);
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN: return *V_UNKNOWNREF(&value);
    default: return nullptr;
    }
}

IndexKey IndexOf(const VARIANT& value) {
    // The two usual kinds without a copy.
    if (V_VT(&value) == VT_I4) return static_cast<std::int64_t>(V_I4(&value));
    if (V_VT(&value) == VT_BSTR) return TextOf(V_BSTR(&value));
    HRESULT result = S_OK;
    Variant copy = Variant::CopyOf(value, result);
    if (result == E_OUTOFMEMORY) throw ComFailure{result};
    return SUCCEEDED(result) ? IndexOfResolved(std::move(copy)) : IndexKey::Unusable(Message::InvalidCall);
}

std::optional<std::int32_t> OptionalNumber(const VARIANT& value) {
    if (IsLeftOut(value)) return std::nullopt;
    return V_I4(&Converted(value, VT_I4).Get());
}

std::optional<bool> OptionalTruth(const VARIANT& value) {
    if (IsLeftOut(value)) return std::nullopt;
    return TruthOf(V_BOOL(&Converted(value, VT_BOOL).Get()));
}

String OptionalText(const VARIANT& value) {
    HRESULT result = S_OK;
    Variant text = Variant::CopyOf(value, result);
    if (FAILED(result) || IsLeftOut(text.Get()) || V_VT(&text.Get()) == VT_NULL ||
        FAILED(VariantChangeType(text.Out(), text.Out(), 0, VT_BSTR)))
        return {};
    return TextOf(V_BSTR(&text.Get()));
}

} // namespace kestrel
