// The arguments of one late-bound call, each brought to the parameter that it is for.
#pragma once

#include <oaidl.h>

#include <array>
#include <vector>

#include "common/String.h"
#include "platform/Variant.h"

namespace kestrel {

struct Parameter {
    String name;
    bool optional;
    Variant whenLeftOut; // what the member gets for an optional argument that is left out
};

// The mark of an optional argument that is left out.
[[nodiscard]] Variant MissingValue() noexcept;
[[nodiscard]] bool IsMissingValue(const VARIANT& value) noexcept;

// What a call holds for one parameter.
struct Given {
    const Parameter& parameter;
    const VARIANT* passed; // as the host passed it; null when it left it out
    // What the member is to get, not converted yet.
    [[nodiscard]] const VARIANT& Value() const noexcept;
};

class BoundArguments {
  public:
    static constexpr std::size_t Most = 9; // the parameters of the member that has most

    // Arguments as hosts pass them: last first, the named ones before the others. Fails with ComFailure on too many, on
    // two for one parameter, on a name that is no parameter's and on a required one left out. `failed` gets the index
    // of the argument that the call fails on; both must outlive this object.
    BoundArguments(const std::vector<Parameter>& parameters, const DISPPARAMS& params, UINT& failed);

    // The argument for the parameter at that place, from 0 on; a failure from now on is this argument's.
    [[nodiscard]] Given operator[](std::size_t parameter) const noexcept;

  private:
    [[nodiscard]] std::size_t ParameterOf(const DISPPARAMS& params, UINT index) const;

    const std::vector<Parameter>& mvarParameters;
    const VARIANT* mvarFirst;
    UINT& mvarFailed;
    std::array<const VARIANT*, Most> mvarPassed{};
};

} // namespace kestrel
