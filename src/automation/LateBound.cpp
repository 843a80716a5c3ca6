#include "automation/LateBound.h"

#include "automation/Boundary.h"
#include "common/Error.h"

namespace kestrel {

namespace {

// A member's failure as late-bound hosts are told of it: with the texts of the error object that the member left.
HRESULT AsException(HRESULT failure, EXCEPINFO* exception) noexcept {
    if (exception == nullptr) return DISP_E_EXCEPTION;
    *exception = {};
    exception->scode = failure;
    ComPtr<IErrorInfo> error;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        error->GetSource(&exception->bstrSource);
        error->GetDescription(&exception->bstrDescription);
        error->GetHelpFile(&exception->bstrHelpFile);
        error->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

HRESULT CallMember(void* face, const Member& member, const LateCall& call) {
    UINT failed = 0;
    const BoundArguments arguments(member.parameters, *call.params,
                                   call.failedArgument != nullptr ? *call.failedArgument : failed);
    const HRESULT result = member.thunk->call(face, arguments, call.result);
    return SUCCEEDED(result) ? S_OK : AsException(result, call.exception);
}

HRESULT CallDefaultOfResult(void* face, const Member& member, const LateCall& call) {
    Variant object;
    DISPPARAMS none{};
    LateCall read = call;
    read.params = &none;
    read.result = object.Out();
    const HRESULT result = CallMember(face, member, read);
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

HRESULT Call(const DispatchTable& table, void* face, const LateCall& call) {
    if (call.result != nullptr) VariantInit(call.result);
    CheckParams(call.params);
    const Member* member = table.Find(call.member, call.flags);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const bool takesNothing = member->thunk->kind == INVOKE_PROPERTYGET && member->parameters.empty();
    return takesNothing && call.params->cArgs != 0 ? CallDefaultOfResult(face, *member, call)
                                                   : CallMember(face, *member, call);
}

} // namespace kestrel
