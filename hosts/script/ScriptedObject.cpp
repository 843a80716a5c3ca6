#include "hosts/script/ScriptedObject.h"

#include <oleauto.h>

#include <algorithm>
#include <new>

#include "hosts/common/Dispatch.h"

namespace hosts::script {

namespace {

// The texts go to the caller; without memory they are missing.
HRESULT Fail(EXCEPINFO* exception, HRESULT code, const std::wstring& description) noexcept {
    if (exception == nullptr) return code;
    *exception = EXCEPINFO{};
    exception->scode = code;
    exception->bstrSource = SysAllocString(L"WScript");
    exception->bstrDescription = SysAllocString(description.c_str());
    return DISP_E_EXCEPTION;
}

} // namespace

void ScriptedObject::Define(const std::wstring& name, Body body) {
    DefineAs(static_cast<DISPID>(mvarMembers.size()) + 1, name, std::move(body));
}

void ScriptedObject::DefineAs(DISPID id, const std::wstring& name, Body body) {
    mvarMembers.push_back({id, name, std::move(body)});
}

const ScriptedObject::Member* ScriptedObject::Find(DISPID id) const noexcept {
    const auto found = std::ranges::find(mvarMembers, id, &Member::id);
    return found == mvarMembers.end() ? nullptr : &*found;
}

HRESULT ScriptedObject::QueryInterface(REFIID iid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
}

ULONG ScriptedObject::Release() noexcept {
    const ULONG left = --mvarReferences;
    if (left == 0) delete this;
    return left;
}

HRESULT ScriptedObject::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT ScriptedObject::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) noexcept {
    return E_NOTIMPL;
}

HRESULT ScriptedObject::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                      DISPID* ids) noexcept {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (count != 1) return DISP_E_UNKNOWNNAME; // no member has named arguments
    const auto found = std::ranges::find_if(
        mvarMembers, [&](const Member& member) { return lstrcmpiW(member.name.c_str(), names[0]) == 0; });
    if (found == mvarMembers.end()) return DISP_E_UNKNOWNNAME;
    ids[0] = found->id;
    return S_OK;
}

HRESULT ScriptedObject::Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD kind, DISPPARAMS* parameters,
                               VARIANT* result, EXCEPINFO* exception, UINT* /*badArgument*/) noexcept {
    const Member* member = Find(id);
    if (member == nullptr || (kind & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
    if (parameters == nullptr) return E_POINTER;
    if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    try {
        Variant value = member->body(CallArguments(*parameters));
        if (result != nullptr) *result = value.Detach();
        return S_OK;
    } catch (const BadCall& call) {
        return call.Code();
    } catch (const DispatchError& error) {
        return Fail(exception, error.Code(), error.Message());
    } catch (const HostError& error) {
        return Fail(exception, E_FAIL, error.Message());
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace hosts::script
