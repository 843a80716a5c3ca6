// The arguments of one late-bound call, brought into the types that the member's parameters have.
//
// What the platform's own dispatcher converts itself is left to it. Converted here are variables passed by reference as
// variants, values passed where the member writes back, objects, and objects left out. After a successful call CopyBack
// gives the caller's variables what the member wrote.
#pragma once

#include <vector>

#include "automation/DispatchTable.h"
#include "platform/Variant.h"

namespace kestrel {

class DispatchArguments {
  public:
    // Fails with ComFailure; `failed` then holds the index of the argument.
    DispatchArguments(const Member& member, const DISPPARAMS& params, UINT& failed);

    [[nodiscard]] DISPPARAMS* Params() noexcept { return &mvarParams; }
    void CopyBack();

  private:
    struct WriteBack {
        std::size_t holder;      // what the member wrote
        const VARIANT* variable; // the caller's reference
    };

    void Convert(const Parameter& parameter, const VARIANT& argument, VARIANT& converted);
    void ConvertReference(const Parameter& parameter, const VARIANT& argument, VARIANT& converted);
    void ConvertObject(const Parameter& parameter, const VARIANT& argument, VARIANT& converted);
    VARIANT& Hold(Variant value);

    std::vector<VARIANT> mvarArguments; // not owned: copies of the caller's, or of what mvarHolders owns
    std::vector<Variant> mvarHolders;
    std::vector<WriteBack> mvarWriteBacks;
    DISPPARAMS mvarParams;
};

} // namespace kestrel
