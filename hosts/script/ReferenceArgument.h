// One event argument as a script procedure takes it: a variable of the script's own kind stands in for what was passed
// by reference, and what the procedure left in it goes back, converted to the type that the event declares.
#pragma once

#include <oaidl.h>

#include "hosts/common/Variant.h"

namespace hosts::script {

class ReferenceArgument {
  public:
    // The event's argument outlives this. An argument passed by value, or as a variant by reference, is passed on as it
    // is.
    explicit ReferenceArgument(VARIANT& original);

    // What to pass to the procedure; points into this, so this must not move while the procedure runs.
    [[nodiscard]] VARIANT Passed() noexcept;
    // False when the value left by the procedure cannot be converted; the argument then keeps its value.
    [[nodiscard]] bool CopyBack() noexcept;

  private:
    [[nodiscard]] bool StandsIn() const noexcept;

    VARIANT* mvarOriginal;
    Variant mvarValue;
};

} // namespace hosts::script
