#include "hosts/script/EventNames.h"

#include <ocidl.h>
#include <oleauto.h>

#include <memory>

#include "hosts/common/ComPtr.h"
#include "hosts/common/HostError.h"
#include "hosts/common/Variant.h"

namespace hosts::script {

namespace {

// Descriptions are lent by the type information that made them.
struct GiveBack {
    ITypeInfo* info;
    void operator()(TYPEATTR* attributes) const noexcept { info->ReleaseTypeAttr(attributes); }
    void operator()(FUNCDESC* description) const noexcept { info->ReleaseFuncDesc(description); }
};
using Attributes = std::unique_ptr<TYPEATTR, GiveBack>;
using Function = std::unique_ptr<FUNCDESC, GiveBack>;

constexpr int DefaultSource = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;

Attributes AttributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    return Attributes(SUCCEEDED(info.GetTypeAttr(&attributes)) ? attributes : nullptr, GiveBack{&info});
}

Function FunctionAt(ITypeInfo& info, UINT index) {
    FUNCDESC* description = nullptr;
    return Function(SUCCEEDED(info.GetFuncDesc(index, &description)) ? description : nullptr, GiveBack{&info});
}

// Nothing when the class has no default event interface.
ComPtr<ITypeInfo> EventsOf(ITypeInfo& classInfo) {
    const Attributes attributes = AttributesOf(classInfo);
    for (UINT index = 0; attributes && index < attributes->cImplTypes; ++index) {
        int flags = 0;
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> events;
        if (SUCCEEDED(classInfo.GetImplTypeFlags(index, &flags)) && (flags & DefaultSource) == DefaultSource &&
            SUCCEEDED(classInfo.GetRefTypeOfImplType(index, &reference)) &&
            SUCCEEDED(classInfo.GetRefTypeInfo(reference, events.Out())))
            return events;
    }
    return {};
}

std::wstring NameOf(ITypeInfo& info, DISPID id) {
    BSTR name = nullptr;
    UINT count = 0;
    if (FAILED(info.GetNames(id, &name, 1, &count)) || count == 0) return {};
    const std::unique_ptr<OLECHAR, decltype(&SysFreeString)> owned(name, &SysFreeString);
    return FromBstr(name);
}

} // namespace

EventNames EventNamesOf(IUnknown& object) {
    const auto provider = ComPtr<IUnknown>(&object).As<IProvideClassInfo>(IID_IProvideClassInfo);
    ComPtr<ITypeInfo> classInfo;
    ComPtr<ITypeInfo> events;
    if (provider && SUCCEEDED(provider->GetClassInfo(classInfo.Out()))) events = EventsOf(*classInfo.Get());
    const Attributes attributes = events ? AttributesOf(*events.Get()) : Attributes(nullptr, GiveBack{nullptr});
    if (!attributes) throw HostError(L"the object describes no events");
    EventNames names;
    for (UINT index = 0; index < attributes->cFuncs; ++index) {
        const Function function = FunctionAt(*events.Get(), index);
        if (function) names.emplace(function->memid, NameOf(*events.Get(), function->memid));
    }
    return names;
}

} // namespace hosts::script
