// What late-bound calls need to know of an interface: its members by name and id, with the thunk that calls each, and
// the parameters as the type information describes them. Read once for each face class. Restricted members, those of
// IUnknown and IDispatch, are left out: a script that called Release by name would end an object that others still
// hold.
#pragma once

#include <oaidl.h>

#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "automation/MemberNames.h"
#include "automation/Thunk.h"
#include "platform/ComPtr.h"

namespace kestrel {

struct Member {
    const Thunk* thunk;
    std::vector<Parameter> parameters; // without the result
};

class DispatchTable {
  public:
    // Fails with Mistake when the thunks are not exactly those of the interface's own members.
    DispatchTable(ComPtr<ITypeInfo> info, std::span<const Thunk> thunks);

    [[nodiscard]] ITypeInfo& Info() const noexcept { return *mvarInfo.Get(); }
    // Names are compared without regard to (ASCII) case; nothing for an unknown one.
    [[nodiscard]] std::optional<DISPID> IdOf(const wchar_t* name) const;
    // The position of a member's parameter, as named arguments use it.
    [[nodiscard]] std::optional<DISPID> ParameterIdOf(DISPID member, const wchar_t* name) const;
    // The member that the flags of a call mean; null when there is none. An object put by reference goes to a plain put
    // that takes any value where there is no other. A property called as a method is read: script engines ask so for an
    // enumerator, and for whatever a script does nothing with.
    [[nodiscard]] const Member* Find(DISPID id, WORD flags) const noexcept;

  private:
    void ReadMember(UINT index, std::span<const Thunk> thunks);
    [[nodiscard]] std::span<const Member> WithId(DISPID id) const noexcept;
    void Arrange();

    ComPtr<ITypeInfo> mvarInfo;
    std::deque<String> mvarNames; // never moved: the keys of mvarIds
    NameMap<DISPID> mvarIds;
    std::vector<Member> mvarMembers;         // in the order of their ids
    std::vector<std::span<Member>> mvarById; // from DISPID_NEWENUM, the lowest, on
};

} // namespace kestrel
