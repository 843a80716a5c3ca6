#include "automation/DispatchTable.h"

#include <algorithm>

#include "automation/Boundary.h"
#include "common/Mistake.h"
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

// What the member gets for an optional argument that is left out: the default that the type information names, or the
// mark of a missing value.
Variant ValueWhenLeftOut(const PARAMDESC& description) {
    if ((description.wParamFlags & PARAMFLAG_FHASDEFAULT) == 0) return MissingValue();
    HRESULT result = S_OK;
    Variant value = Variant::CopyOf(description.pparamdescex->varDefaultValue, result);
    Require(result);
    return value;
}

Parameter Describe(const PARAMDESC& description, StringView name) {
    return {String(name), (description.wParamFlags & PARAMFLAG_FOPT) != 0, ValueWhenLeftOut(description)};
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

DispatchTable::DispatchTable(ComPtr<ITypeInfo> info, std::span<const Thunk> thunks) : mvarInfo(std::move(info)) {
    TypeAttributes attributes(*mvarInfo.Get());
    Require(mvarInfo->GetTypeAttr(attributes.Out()));
    for (UINT i = 0; i < attributes->cFuncs; ++i)
        ReadMember(i, thunks);
    if (mvarMembers.size() != thunks.size()) throw Mistake("a thunk of no member");
    Arrange();
}

// The members of IUnknown and IDispatch, which the type information repeats, are restricted: no host calls them by
// name.
void DispatchTable::ReadMember(UINT index, std::span<const Thunk> thunks) {
    FunctionDescription function(*mvarInfo.Get());
    Require(mvarInfo->GetFuncDesc(index, function.Out()));
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0) return;
    const auto thunk = std::find_if(thunks.begin(), thunks.end(), [&](const Thunk& candidate) {
        return candidate.id == function->memid && candidate.kind == function->invkind;
    });
    if (thunk == thunks.end()) throw Mistake("a member without a thunk");
    const auto names = NamesOf(*mvarInfo.Get(), **function.Out());
    Member member{&*thunk, {}};
    for (SHORT i = 0; i < function->cParams; ++i) {
        const PARAMDESC& description = function->lprgelemdescParam[i].paramdesc;
        if ((description.wParamFlags & PARAMFLAG_FRETVAL) != 0) continue;
        const bool isPut = (thunk->kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
        const StringView name = isPut ? StringView() : ViewOf(names[static_cast<std::size_t>(i) + 1].Get());
        member.parameters.push_back(Describe(description, name));
    }
    if (member.parameters.size() != thunk->parameters) throw Mistake("a thunk with other parameters");
    mvarNames.emplace_back(ViewOf(names.front().Get()));
    mvarIds.emplace(mvarNames.back(), thunk->id);
    mvarMembers.push_back(std::move(member));
}

void DispatchTable::Arrange() {
    std::stable_sort(mvarMembers.begin(), mvarMembers.end(),
                     [](const Member& left, const Member& right) { return left.thunk->id < right.thunk->id; });
    for (auto member = mvarMembers.begin(); member != mvarMembers.end();) {
        const DISPID id = member->thunk->id;
        const auto end =
            std::find_if(member, mvarMembers.end(), [id](const Member& other) { return other.thunk->id != id; });
        mvarById.resize(static_cast<std::size_t>(id - DISPID_NEWENUM) + 1);
        mvarById.back() = {member, end};
        member = end;
    }
}

std::span<const Member> DispatchTable::WithId(DISPID id) const noexcept {
    const auto place = static_cast<std::size_t>(static_cast<std::int64_t>(id) - DISPID_NEWENUM);
    return place < mvarById.size() ? mvarById[place] : std::span<const Member>();
}

std::optional<DISPID> DispatchTable::IdOf(const wchar_t* name) const {
    const auto found = mvarIds.find(name);
    return found != mvarIds.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<DISPID> DispatchTable::ParameterIdOf(DISPID member, const wchar_t* name) const {
    for (const auto& candidate : WithId(member)) {
        const auto& all = candidate.parameters;
        const auto found =
            std::find_if(all.begin(), all.end(), [&](const Parameter& p) { return SameName()(p.name, name); });
        if (found != all.end()) return static_cast<DISPID>(found - all.begin());
    }
    return std::nullopt;
}

const Member* DispatchTable::Find(DISPID id, WORD flags) const noexcept {
    const Member* anyPut = nullptr;
    const Member* readable = nullptr;
    for (const auto& member : WithId(id)) {
        if ((member.thunk->kind & flags) != 0) return &member;
        if (member.thunk->kind == INVOKE_PROPERTYGET) readable = &member;
        if (member.thunk->kind == INVOKE_PROPERTYPUT && member.thunk->takesAnyValue) anyPut = &member;
    }
    if ((flags & DISPATCH_METHOD) != 0) return readable;
    return (flags & DISPATCH_PROPERTYPUTREF) != 0 ? anyPut : nullptr;
}

} // namespace kestrel
