#include "automation/DispatchTable.h"

#include <algorithm>

#include "automation/Boundary.h"
#include "platform/Bstr.h"

namespace kestrel {

namespace {

// The structures that type information hands out and wants back.
template <class Structure, void (STDMETHODCALLTYPE ITypeInfo::*Free)(Structure*)>
class Lent {
  public:
    explicit Lent(ITypeInfo& info) noexcept : mvarInfo(info) {}
    // Given back once.
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    ~Lent() {
        if (mvarStructure != nullptr) (mvarInfo.*Free)(mvarStructure);
    }
    [[nodiscard]] Structure** Out() noexcept { return &mvarStructure; }
    Structure* operator->() const noexcept { return mvarStructure; }

  private:
    ITypeInfo& mvarInfo;
    Structure* mvarStructure = nullptr;
};
using TypeAttributes = Lent<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using FunctionDescription = Lent<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;

// The names of a type library are ASCII.
String Folded(StringView name) {
    String folded(name);
    for (auto& character : folded)
        if (character >= L'A' && character <= L'Z') character = static_cast<wchar_t>(character - L'A' + L'a');
    return folded;
}

void DescribeType(ITypeInfo& info, const TYPEDESC& type, Parameter& parameter);

// An enumeration, an object, or an alias of any type: one compiler makes an alias where another makes none.
void DescribeUserType(ITypeInfo& info, HREFTYPE reference, Parameter& parameter) {
    ComPtr<ITypeInfo> type;
    Require(info.GetRefTypeInfo(reference, type.Out()));
    TypeAttributes attributes(*type.Get());
    Require(type->GetTypeAttr(attributes.Out()));
    if (attributes->typekind == TKIND_ALIAS) {
        DescribeType(*type.Get(), attributes->tdescAlias, parameter);
        return;
    }
    parameter.type = attributes->typekind == TKIND_ENUM ? VT_I4 : VT_DISPATCH;
    parameter.objectInterface = attributes->guid;
}

void DescribeType(ITypeInfo& info, const TYPEDESC& type, Parameter& parameter) {
    if (type.vt == VT_PTR) {
        parameter.byReference = true;
        DescribeType(info, *type.lptdesc, parameter);
    } else if (type.vt == VT_USERDEFINED) {
        DescribeUserType(info, type.hreftype, parameter);
    } else {
        parameter.type = type.vt;
    }
}

Parameter Describe(ITypeInfo& info, const ELEMDESC& element, StringView name) {
    Parameter parameter{Folded(name), VT_EMPTY, false, (element.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0, {}};
    DescribeType(info, element.tdesc, parameter);
    // An object is a pointer already.
    if (parameter.type == VT_DISPATCH) parameter.byReference = false;
    return parameter;
}

// The names of a member and its parameters. For a put they are those of the get with the same id.
std::vector<Bstr> NamesOf(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<BSTR> raw(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    UINT count = 0;
    Require(info.GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &count));
    std::vector<Bstr> names(raw.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        *names[i].Out() = raw[i];
    return names;
}

} // namespace

DispatchTable::DispatchTable(ComPtr<ITypeInfo> info) : mvarInfo(std::move(info)) {
    TypeAttributes attributes(*mvarInfo.Get());
    Require(mvarInfo->GetTypeAttr(attributes.Out()));
    for (UINT i = 0; i < attributes->cFuncs; ++i)
        ReadMember(i);
}

void DispatchTable::ReadMember(UINT index) {
    FunctionDescription function(*mvarInfo.Get());
    Require(mvarInfo->GetFuncDesc(index, function.Out()));
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0) return;
    const auto names = NamesOf(*mvarInfo.Get(), **function.Out());
    Member member{function->memid, function->invkind, {}};
    const bool isPut = (member.kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& element = function->lprgelemdescParam[i];
        if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) continue;
        const StringView name = isPut ? StringView() : ViewOf(names[static_cast<std::size_t>(i) + 1].Get());
        member.parameters.push_back(Describe(*mvarInfo.Get(), element, name));
    }
    mvarIds.emplace(Folded(ViewOf(names.front().Get())), member.id);
    mvarMembers.push_back(std::move(member));
}

std::optional<DISPID> DispatchTable::IdOf(const wchar_t* name) const {
    const auto found = mvarIds.find(Folded(name));
    return found != mvarIds.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<DISPID> DispatchTable::ParameterIdOf(DISPID member, const wchar_t* name) const {
    const String folded = Folded(name);
    for (const auto& candidate : mvarMembers) {
        if (candidate.id != member) continue;
        const auto& all = candidate.parameters;
        const auto found = std::find_if(all.begin(), all.end(), [&](const Parameter& p) { return p.name == folded; });
        if (found != all.end()) return static_cast<DISPID>(found - all.begin());
    }
    return std::nullopt;
}

const Member* DispatchTable::Find(DISPID id, WORD flags) const noexcept {
    const Member* anyPut = nullptr;
    const Member* readable = nullptr;
    for (const auto& member : mvarMembers) {
        if (member.id != id) continue;
        if ((member.kind & flags) != 0) return &member;
        if (member.kind == INVOKE_PROPERTYGET) readable = &member;
        if (member.kind == INVOKE_PROPERTYPUT && member.parameters.back().type == VT_VARIANT) anyPut = &member;
    }
    if ((flags & DISPATCH_METHOD) != 0) return readable;
    return (flags & DISPATCH_PROPERTYPUTREF) != 0 ? anyPut : nullptr;
}

} // namespace kestrel
