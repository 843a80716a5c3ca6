#include "automation/DispatchArguments.h"

#include <cstring>

#include "automation/Boundary.h"
#include "automation/ComPtr.h"

namespace kestrel {

namespace {

bool IsLeftOut(const VARIANT& value) noexcept {
    return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

Variant ValueOf(const VARIANT& argument) {
    HRESULT result = S_OK;
    Variant value = Variant::CopyOf(argument, result);
    Require(result);
    return value;
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

// The caller's variable, of the value's type, gets the value.
void StoreInto(const VARIANT& variable, Variant& value) {
    if (value.Type() == VT_BSTR)
        std::swap(*V_BSTRREF(&variable), V_BSTR(value.Out()));
    else
        std::memcpy(V_BYREF(&variable), &V_NONE(value.Out()), SizeOf(value.Type()));
}

// The parameter that the argument at `index` is for.
const Parameter& ParameterFor(const std::vector<Parameter>& parameters, const DISPPARAMS& params, UINT index) {
    const bool named = index < params.cNamedArgs;
    const DISPID name = named ? params.rgdispidNamedArgs[index] : static_cast<DISPID>(params.cArgs - 1 - index);
    if (named && name == DISPID_PROPERTYPUT && !parameters.empty()) return parameters.back();
    if (name < 0 || static_cast<std::size_t>(name) >= parameters.size())
        throw ComFailure{named ? DISP_E_UNKNOWNNAME : DISP_E_BADPARAMCOUNT};
    return parameters[static_cast<std::size_t>(name)];
}

} // namespace

DispatchArguments::DispatchArguments(const Member& member, const DISPPARAMS& params, UINT& failed)
    : mvarArguments(params.rgvarg, params.rgvarg + params.cArgs), mvarParams(params) {
    mvarHolders.reserve(params.cArgs); // what is held is pointed to
    for (UINT i = 0; i < params.cArgs; ++i) {
        failed = i;
        Convert(ParameterFor(member.parameters, params, i), params.rgvarg[i], mvarArguments[i]);
    }
    mvarParams.rgvarg = mvarArguments.data();
}

void DispatchArguments::Convert(const Parameter& parameter, const VARIANT& argument, VARIANT& converted) {
    if (parameter.byReference)
        ConvertReference(parameter, argument, converted);
    else if (parameter.type == VT_DISPATCH)
        ConvertObject(parameter, argument, converted);
    else if (parameter.type != VT_VARIANT && (V_VT(&argument) & VT_BYREF) != 0)
        converted = Hold(ValueOf(argument));
}

void DispatchArguments::ConvertReference(const Parameter& parameter, const VARIANT& argument, VARIANT& converted) {
    if (V_VT(&argument) == (VT_BYREF | parameter.type)) return;
    if (IsLeftOut(argument)) throw ComFailure{DISP_E_PARAMNOTOPTIONAL};
    Variant value = ValueOf(argument);
    Require(VariantChangeType(value.Out(), value.Out(), 0, parameter.type));
    VARIANT& holder = Hold(std::move(value));
    if ((V_VT(&argument) & VT_BYREF) != 0) mvarWriteBacks.push_back({mvarHolders.size() - 1, &Innermost(argument)});
    V_VT(&converted) = static_cast<VARTYPE>(VT_BYREF | parameter.type);
    V_BYREF(&converted) = &V_NONE(&holder);
}

void DispatchArguments::ConvertObject(const Parameter& parameter, const VARIANT& argument, VARIANT& converted) {
    Variant value = ValueOf(argument);
    // JScript has no other Nothing than its null.
    const bool isNothing =
        value.Type() == VT_NULL || (parameter.optional && (value.Type() == VT_EMPTY || IsLeftOut(value.Get())));
    if (!isNothing && value.Type() != VT_DISPATCH && value.Type() != VT_UNKNOWN) throw ComFailure{DISP_E_TYPEMISMATCH};
    ComPtr<IDispatch> object;
    if (!isNothing && V_UNKNOWN(&value.Get()) != nullptr &&
        FAILED(V_UNKNOWN(&value.Get())->QueryInterface(parameter.objectInterface, object.OutVoid())))
        throw ComFailure{DISP_E_TYPEMISMATCH};
    Variant holder;
    V_VT(holder.Out()) = VT_DISPATCH;
    V_DISPATCH(holder.Out()) = object.Detach();
    converted = Hold(std::move(holder));
}

VARIANT& DispatchArguments::Hold(Variant value) {
    mvarHolders.push_back(std::move(value));
    return *mvarHolders.back().Out();
}

void DispatchArguments::CopyBack() {
    for (const auto& [holder, variable] : mvarWriteBacks) {
        const VARIANT& written = mvarHolders[holder].Get();
        if (V_VT(variable) == (VT_BYREF | VT_VARIANT)) {
            Require(VariantCopy(V_VARIANTREF(variable), const_cast<VARIANT*>(&written))); // only read
            continue;
        }
        // A variable of another type than the parameter's gets the value in its own type.
        Variant value;
        const auto type = static_cast<VARTYPE>(V_VT(variable) & ~VT_BYREF);
        Require(VariantChangeType(value.Out(), const_cast<VARIANT*>(&written), 0, type)); // only read
        StoreInto(*variable, value);
    }
}

} // namespace kestrel
