// An owned automation variant.
#pragma once

#include "platform/Bstr.h"

namespace kestrel {

// The innermost reference of a chain of them; what is no chain is itself. Scripts pass a variable that holds a
// reference as a reference to a reference, which the runtime's own functions refuse.
[[nodiscard]] inline const VARIANT& Innermost(const VARIANT& value) noexcept {
    const VARIANT* innermost = &value;
    while (V_VT(innermost) == (VT_BYREF | VT_VARIANT) && (V_VT(V_VARIANTREF(innermost)) & VT_BYREF) != 0)
        innermost = V_VARIANTREF(innermost);
    return *innermost;
}

class Variant {
  public:
    Variant() noexcept { VariantInit(&mvarValue); }
    explicit Variant(StringView text) : Variant() { SetText(Bstr(text)); }
    Variant(Variant&& other) noexcept : mvarValue(other.Detach()) {}
    Variant& operator=(Variant&& other) noexcept {
        std::swap(mvarValue, other.mvarValue);
        return *this;
    }
    // Copying a variant can fail and is spelled out where it is meant: CopyOf.
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&mvarValue); }

    // With references resolved; empty when it cannot be copied, and then `result` tells why.
    [[nodiscard]] static Variant CopyOf(const VARIANT& value, HRESULT& result) noexcept {
        Variant copy;
        result = VariantCopyInd(&copy.mvarValue, const_cast<VARIANT*>(&Innermost(value))); // only read
        return copy;
    }

    [[nodiscard]] const VARIANT& Get() const noexcept { return mvarValue; }
    [[nodiscard]] VARTYPE Type() const noexcept { return V_VT(&mvarValue); }
    // To be filled or changed by a call.
    [[nodiscard]] VARIANT* Out() noexcept { return &mvarValue; }
    // The caller owns the result.
    [[nodiscard]] VARIANT Detach() noexcept {
        const VARIANT value = mvarValue;
        VariantInit(&mvarValue);
        return value;
    }

  private:
    void SetText(Bstr text) noexcept {
        V_VT(&mvarValue) = VT_BSTR;
        V_BSTR(&mvarValue) = text.Detach();
    }

    VARIANT mvarValue{};
};

} // namespace kestrel
