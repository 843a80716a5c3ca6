#include "automation/LateBound.h"

#include "automation/Boundary.h"
#include "automation/DispatchArguments.h"
#include "common/Error.h"

namespace kestrel {

namespace {

HRESULT CallMember(const DispatchTable& table, void* instance, const Member& member, const LateCall& call) {
    UINT failed = 0;
    UINT* const failedArgument = call.failedArgument != nullptr ? call.failedArgument : &failed;
    DispatchArguments arguments(member, *call.params, *failedArgument);
    const HRESULT result = table.Info().Invoke(instance, member.id, static_cast<WORD>(member.kind), arguments.Params(),
                                               call.result, call.exception, failedArgument);
    if (SUCCEEDED(result)) arguments.CopyBack();
    return result;
}

HRESULT CallDefaultOfResult(const DispatchTable& table, void* instance, const Member& member, const LateCall& call) {
    Variant object;
    DISPPARAMS none{};
    LateCall read = call;
    read.params = &none;
    read.result = object.Out();
    const HRESULT result = CallMember(table, instance, member, read);
    if (FAILED(result)) return result;
    if (object.Type() != VT_DISPATCH) return DISP_E_BADPARAMCOUNT;
    IDispatch* const target = V_DISPATCH(&object.Get());
    if (target == nullptr) throw Error(Message::ObjectNotSet);
    return target->Invoke(DISPID_VALUE, IID_NULL, call.locale, call.flags, call.params, call.result, call.exception,
                          call.failedArgument);
}

void CheckParams(const DISPPARAMS* params) {
    RequirePointer(params);
    if (params->cArgs != 0) RequirePointer(params->rgvarg);
    if (params->cNamedArgs != 0) RequirePointer(params->rgdispidNamedArgs);
    if (params->cNamedArgs > params->cArgs) throw ComFailure{E_INVALIDARG};
}

} // namespace

HRESULT IdsOfNames(const DispatchTable& table, LPOLESTR* names, UINT count, DISPID* ids) {
    RequirePointer(names);
    RequirePointer(ids);
    HRESULT result = S_OK;
    for (UINT i = 0; i < count; ++i) {
        const auto id = i == 0 ? table.IdOf(names[0]) : table.ParameterIdOf(ids[0], names[i]);
        ids[i] = id.value_or(DISPID_UNKNOWN);
        if (!id) result = DISP_E_UNKNOWNNAME;
    }
    return result;
}

HRESULT Call(const DispatchTable& table, void* instance, const LateCall& call) {
    if (call.result != nullptr) VariantInit(call.result);
    CheckParams(call.params);
    const Member* member = table.Find(call.member, call.flags);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const bool takesNothing = member->kind == INVOKE_PROPERTYGET && member->parameters.empty();
    return takesNothing && call.params->cArgs != 0 ? CallDefaultOfResult(table, instance, *member, call)
                                                   : CallMember(table, instance, *member, call);
}

} // namespace kestrel
