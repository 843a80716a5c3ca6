#include "hosts/script/ReferenceArgument.h"

#include <oleauto.h>

#include <utility>

namespace hosts::script {

namespace {

// Moves a value into the place that a reference of the same type points to; what stood there goes out with the value.
// False when the type is none that events pass by reference.
bool Exchange(VARIANT& value, const VARIANT& reference) noexcept {
    switch (value.vt) {
    case VT_BSTR: std::swap(value.bstrVal, *reference.pbstrVal); return true;
    case VT_BOOL: std::swap(value.boolVal, *reference.pboolVal); return true;
    case VT_UI1: std::swap(value.bVal, *reference.pbVal); return true;
    case VT_I2: std::swap(value.iVal, *reference.piVal); return true;
    case VT_I4: std::swap(value.lVal, *reference.plVal); return true;
    case VT_INT: std::swap(value.intVal, *reference.pintVal); return true;
    case VT_R4: std::swap(value.fltVal, *reference.pfltVal); return true;
    case VT_R8: std::swap(value.dblVal, *reference.pdblVal); return true;
    case VT_CY: std::swap(value.cyVal, *reference.pcyVal); return true;
    case VT_DATE: std::swap(value.date, *reference.pdate); return true;
    case VT_DISPATCH: std::swap(value.pdispVal, *reference.ppdispVal); return true;
    case VT_UNKNOWN: std::swap(value.punkVal, *reference.ppunkVal); return true;
    default: return false;
    }
}

} // namespace

ReferenceArgument::ReferenceArgument(VARIANT& original) : mvarOriginal(&original) {
    if (StandsIn()) VariantCopyInd(mvarValue.Out(), &original);
}

bool ReferenceArgument::StandsIn() const noexcept {
    return (mvarOriginal->vt & VT_BYREF) != 0 && mvarOriginal->vt != (VT_BYREF | VT_VARIANT);
}

VARIANT ReferenceArgument::Passed() noexcept {
    if (!StandsIn()) return *mvarOriginal;
    VARIANT passed{};
    passed.vt = VT_BYREF | VT_VARIANT;
    passed.pvarVal = mvarValue.InOut();
    return passed;
}

bool ReferenceArgument::CopyBack() noexcept {
    if (!StandsIn()) return true;
    Variant converted;
    const auto type = static_cast<VARTYPE>(mvarOriginal->vt & ~VT_BYREF);
    if (FAILED(VariantChangeType(converted.Out(), mvarValue.InOut(), 0, type))) return false;
    return Exchange(*converted.InOut(), *mvarOriginal);
}

} // namespace hosts::script
