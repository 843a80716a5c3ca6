#include "hosts/script/ScriptSite.h"

#include <oleauto.h>

namespace hosts::script {

HRESULT ScriptSite::QueryInterface(REFIID iid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IActiveScriptSite) *object = static_cast<IActiveScriptSite*>(this);
    if (iid == IID_IActiveScriptSiteWindow) *object = static_cast<IActiveScriptSiteWindow*>(this);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ScriptSite::Release() noexcept {
    const ULONG left = --mvarReferences;
    if (left == 0) delete this;
    return left;
}

HRESULT ScriptSite::GetLCID(LCID* locale) noexcept {
    if (locale == nullptr) return E_POINTER;
    *locale = LOCALE_USER_DEFAULT;
    return S_OK;
}

HRESULT ScriptSite::GetItemInfo(LPCOLESTR name, DWORD wanted, IUnknown** item, ITypeInfo** info) noexcept {
    if (item != nullptr) *item = nullptr;
    if (info != nullptr) *info = nullptr;
    const auto found = mvarItems.find(name);
    if (found == mvarItems.end()) return TYPE_E_ELEMENTNOTFOUND;
    if ((wanted & SCRIPTINFO_IUNKNOWN) == 0 || item == nullptr) return S_OK;
    *item = ComPtr<IUnknown>(found->second.Get()).Detach();
    return S_OK;
}

HRESULT ScriptSite::GetDocVersionString(BSTR* /*version*/) noexcept { return E_NOTIMPL; }

HRESULT ScriptSite::OnScriptTerminate(const VARIANT* /*result*/, const EXCEPINFO* /*exception*/) noexcept {
    return S_OK;
}

HRESULT ScriptSite::OnStateChange(SCRIPTSTATE /*state*/) noexcept { return S_OK; }

HRESULT ScriptSite::OnScriptError(IActiveScriptError* error) noexcept {
    if (error == nullptr) return E_POINTER;
    try {
        mvarLog->Report(*error);
        return S_OK;
    } catch (...) { // the engine counts the error as not reported
        return E_FAIL;
    }
}

HRESULT ScriptSite::OnEnterScript() noexcept { return S_OK; }

HRESULT ScriptSite::OnLeaveScript() noexcept { return S_OK; }

HRESULT ScriptSite::GetWindow(HWND* window) noexcept {
    if (window == nullptr) return E_POINTER;
    *window = nullptr; // boxes that a script opens belong to no window
    return S_OK;
}

HRESULT ScriptSite::EnableModeless(BOOL /*enable*/) noexcept { return S_OK; }

} // namespace hosts::script
