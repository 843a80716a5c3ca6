// What a script engine asks of its host: the named objects that scripts see, and a place to report errors to.
// Counts its references from 0; hold it by ComPtr. The log outlives it.
#pragma once

#include <activscp.h>

#include <atomic>
#include <map>
#include <string>

#include "hosts/common/ComPtr.h"
#include "hosts/script/ErrorLog.h"

namespace hosts::script {

class ScriptSite final : public IActiveScriptSite, public IActiveScriptSiteWindow {
  public:
    explicit ScriptSite(ErrorLog& log) noexcept : mvarLog(&log) {}
    ScriptSite(const ScriptSite&) = delete; // counted, so it lives where it was made
    ScriptSite& operator=(const ScriptSite&) = delete;

    void SetItem(const std::wstring& name, ComPtr<IDispatch> item) { mvarItems[name] = std::move(item); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++mvarReferences; }
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) noexcept override;
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD wanted, IUnknown** item,
                                          ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR* version) noexcept override;
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT* result, const EXCEPINFO* exception) noexcept override;
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE state) noexcept override;
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) noexcept override;
    HRESULT STDMETHODCALLTYPE OnEnterScript() noexcept override;
    HRESULT STDMETHODCALLTYPE OnLeaveScript() noexcept override;

    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) noexcept override;
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) noexcept override;

  private:
    ~ScriptSite() = default;

    ErrorLog* mvarLog;
    std::map<std::wstring, ComPtr<IDispatch>> mvarItems;
    std::atomic<ULONG> mvarReferences{0};
};

} // namespace hosts::script
