// What late-bound calls need to know of an interface, read once from its type information: members by name, and the
// parameters that arguments are converted to. Restricted members, those of IUnknown and IDispatch, are left out: a
// script that called Release by name would end an object that others still hold.
#pragma once

#include <oaidl.h>

#include <optional>
#include <unordered_map>
#include <vector>

#include "automation/ComPtr.h"
#include "common/String.h"

namespace kestrel {

struct Parameter {
    String name;      // folded
    VARTYPE type;     // VT_DISPATCH for an object, VT_I4 for an enumeration
    bool byReference; // the call reads and writes the caller's variable
    bool optional;
    IID objectInterface; // of an object parameter
};

struct Member {
    DISPID id;
    INVOKEKIND kind;
    std::vector<Parameter> parameters; // without the result
};

class DispatchTable {
  public:
    explicit DispatchTable(ComPtr<ITypeInfo> info);

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
    void ReadMember(UINT index);

    ComPtr<ITypeInfo> mvarInfo;
    std::unordered_map<String, DISPID> mvarIds;
    std::vector<Member> mvarMembers;
};

} // namespace kestrel
