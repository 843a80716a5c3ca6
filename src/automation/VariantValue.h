// A value that a host gave, kept as it is.
#pragma once

#include "common/FreeValue.h"
#include "platform/Variant.h"

namespace kestrel {

class VariantValue final : public FreeValue {
  public:
    // A copy with references resolved; fails with ComFailure when it cannot be copied.
    explicit VariantValue(const VARIANT& value);
    [[nodiscard]] const VARIANT& Value() const noexcept { return mvarValue.Get(); }
    // Numbers are written alike in every locale: a decimal comma would be taken for a separator. An object, an array
    // and null have no text.
    [[nodiscard]] String Text() const override;

  private:
    Variant mvarValue;
};

// The value as hosts take it; empty for nothing. Fails with ComFailure when it cannot be copied.
[[nodiscard]] Variant ToVariant(const Ref<FreeValue>& value);

} // namespace kestrel
