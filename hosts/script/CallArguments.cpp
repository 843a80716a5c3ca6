#include "hosts/script/CallArguments.h"

#include <oleauto.h>

#include "hosts/common/Variant.h"

namespace hosts::script {

namespace {

Variant Changed(const VARIANT& value, VARTYPE type) {
    Variant changed;
    const HRESULT result = VariantChangeType(changed.Out(), const_cast<VARIANT*>(&value), 0, type);
    if (FAILED(result)) throw BadCall(result);
    return changed;
}

} // namespace

const VARIANT& CallArguments::At(std::size_t position) const {
    if (position >= Count()) throw BadCall(DISP_E_BADPARAMCOUNT);
    const VARIANT& argument = mvarParameters.rgvarg[Count() - 1 - position];
    return argument.vt == (VT_BYREF | VT_VARIANT) ? *argument.pvarVal : argument;
}

std::wstring CallArguments::Text(std::size_t position) const {
    return FromBstr(Changed(At(position), VT_BSTR).Raw().bstrVal);
}

long CallArguments::Number(std::size_t position) const { return Changed(At(position), VT_I4).Raw().lVal; }

IDispatch& CallArguments::Object(std::size_t position) const {
    const VARIANT& argument = At(position);
    IDispatch* object = nullptr;
    if (argument.vt == VT_DISPATCH) object = argument.pdispVal;
    if (argument.vt == (VT_BYREF | VT_DISPATCH)) object = *argument.ppdispVal;
    if (object == nullptr) throw BadCall(DISP_E_TYPEMISMATCH);
    return *object;
}

} // namespace hosts::script
