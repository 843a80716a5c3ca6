// The base of the objects that the host gives to scripts: members found by name, in any letter case, and called late
// bound. What a member throws becomes the script's error; nothing is thrown past a call.
//
// An object counts its references from 0; hold it by ComPtr. Calling a member and reading it are the same.
#pragma once

#include <oaidl.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "hosts/common/Variant.h"
#include "hosts/script/CallArguments.h"

namespace hosts::script {

class ScriptedObject : public IDispatch {
  public:
    ScriptedObject(const ScriptedObject&) = delete; // counted, so it lives where it was made
    ScriptedObject& operator=(const ScriptedObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++mvarReferences; }
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD kind, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept override;

  protected:
    using Body = std::function<Variant(const CallArguments&)>;

    ScriptedObject() = default;
    virtual ~ScriptedObject() = default;

    // For the constructors of the classes derived.
    void Define(const std::wstring& name, Body body);
    // DISPID_VALUE for the default member, DISPID_NEWENUM for the enumerator.
    void DefineAs(DISPID id, const std::wstring& name, Body body);

  private:
    struct Member {
        DISPID id;
        std::wstring name;
        Body body;
    };

    [[nodiscard]] const Member* Find(DISPID id) const noexcept;

    std::vector<Member> mvarMembers;
    std::atomic<ULONG> mvarReferences{0};
};

} // namespace hosts::script
