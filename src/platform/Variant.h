// An owned automation variant.
#pragma once

#include "platform/Bstr.h"

namespace kestrel {

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
        result = VariantCopyInd(&copy.mvarValue, const_cast<VARIANT*>(&value)); // only read
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

    VARIANT mvarValue;
};

} // namespace kestrel
