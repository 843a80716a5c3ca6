#include "automation/Argument.h"

#include <cstring>

#include "automation/Boundary.h"
#include "automation/FromHost.h"

namespace kestrel {

namespace {

Variant CopyOf(const VARIANT& value) {
    HRESULT result = S_OK;
    Variant copy = Variant::CopyOf(value, result);
    Require(result);
    return copy;
}

std::size_t SizeOf(VARTYPE type) {
    switch (type) {
    case VT_I1:
    case VT_UI1: return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4: return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE: return 8;
    default: throw ComFailure{DISP_E_TYPEMISMATCH};
    }
}

// The variable, of the value's type, gets the value.
void StoreInto(const VARIANT& variable, Variant& value) {
    if (value.Type() == VT_BSTR)
        std::swap(*V_BSTRREF(&variable), V_BSTR(value.Out()));
    else
        std::memcpy(V_BYREF(&variable), &V_NONE(value.Out()), SizeOf(value.Type()));
}

bool IsObject(VARTYPE type) noexcept { return type == VT_DISPATCH || type == VT_UNKNOWN; }

} // namespace

Variant ConvertedCopy(const VARIANT& value, VARTYPE type) {
    Variant copy = CopyOf(value);
    Require(VariantChangeType(copy.Out(), copy.Out(), 0, type));
    return copy;
}

ComPtr<IUnknown> ObjectFor(const Given& given, REFIID iid) {
    ComPtr<IUnknown> object;
    if (given.passed == nullptr) return object;
    const Variant value = CopyOf(*given.passed);
    const bool leftOut = given.parameter.optional && (value.Type() == VT_EMPTY || IsMissingValue(value.Get()));
    if (value.Type() == VT_NULL || leftOut) return object;
    if (!IsObject(value.Type())) throw ComFailure{DISP_E_TYPEMISMATCH};
    IUnknown* const passed = V_UNKNOWN(&value.Get());
    if (passed != nullptr && FAILED(passed->QueryInterface(iid, object.OutVoid())))
        throw ComFailure{DISP_E_TYPEMISMATCH};
    return object;
}

HostVariable::HostVariable(const Given& given, VARTYPE type) {
    if (given.passed == nullptr || IsMissingValue(*given.passed)) throw ComFailure{DISP_E_PARAMNOTOPTIONAL};
    mvarValue = ConvertedCopy(*given.passed, type);
    if ((V_VT(given.passed) & VT_BYREF) != 0) mvarVariable = &Innermost(*given.passed);
}

void HostVariable::Store() {
    if (mvarVariable == nullptr) return;
    if (V_VT(mvarVariable) == (VT_BYREF | VT_VARIANT)) {
        Require(VariantCopy(V_VARIANTREF(mvarVariable), mvarValue.Out()));
        return;
    }
    Variant value = ConvertedCopy(mvarValue.Get(), static_cast<VARTYPE>(V_VT(mvarVariable) & ~VT_BYREF));
    StoreInto(*mvarVariable, value);
}

} // namespace kestrel
