#include "automation/BoundArguments.h"

#include "automation/Boundary.h"

namespace kestrel {

Variant MissingValue() noexcept {
    Variant value;
    V_VT(value.Out()) = VT_ERROR;
    V_ERROR(value.Out()) = DISP_E_PARAMNOTFOUND;
    return value;
}

bool IsMissingValue(const VARIANT& value) noexcept {
    return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

const VARIANT& Given::Value() const noexcept {
    const bool leftOut = passed == nullptr || (parameter.optional && IsMissingValue(*passed));
    return leftOut ? parameter.whenLeftOut.Get() : *passed;
}

BoundArguments::BoundArguments(const std::vector<Parameter>& parameters, const DISPPARAMS& params, UINT& failed)
    : mvarParameters(parameters), mvarFirst(params.rgvarg), mvarFailed(failed) {
    for (UINT i = 0; i < params.cArgs; ++i) {
        mvarFailed = i;
        auto& place = mvarPassed[ParameterOf(params, i)];
        if (place != nullptr) throw ComFailure{DISP_E_BADPARAMCOUNT};
        place = &params.rgvarg[i];
    }
    for (std::size_t i = 0; i < parameters.size(); ++i)
        if (mvarPassed[i] == nullptr && !parameters[i].optional) throw ComFailure{DISP_E_BADPARAMCOUNT};
}

std::size_t BoundArguments::ParameterOf(const DISPPARAMS& params, UINT index) const {
    const bool named = index < params.cNamedArgs;
    const DISPID place = named ? params.rgdispidNamedArgs[index] : static_cast<DISPID>(params.cArgs - 1 - index);
    if (named && place == DISPID_PROPERTYPUT && !mvarParameters.empty()) return mvarParameters.size() - 1;
    if (place < 0 || static_cast<std::size_t>(place) >= mvarParameters.size())
        throw ComFailure{named ? DISP_E_UNKNOWNNAME : DISP_E_BADPARAMCOUNT};
    return static_cast<std::size_t>(place);
}

Given BoundArguments::operator[](std::size_t parameter) const noexcept {
    const VARIANT* const passed = mvarPassed[parameter];
    if (passed != nullptr) mvarFailed = static_cast<UINT>(passed - mvarFirst);
    return {mvarParameters[parameter], passed};
}

} // namespace kestrel
