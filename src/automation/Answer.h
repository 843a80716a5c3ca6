// The result of a late-bound call: the place that a member of type R* fills, and then the variant that the host gets.
#pragma once

#include <type_traits>

#include "automation/Argument.h"

namespace kestrel {

template <class R>
class Answer {
  public:
    [[nodiscard]] R* Out() noexcept { return &mvarValue; }
    void Give(VARIANT& result) noexcept {
        V_VT(&result) = InVariant<R>::Type;
        InVariant<R>::Store(mvarValue, result);
    }

  private:
    R mvarValue{};
};

template <>
class Answer<BSTR> {
  public:
    [[nodiscard]] BSTR* Out() noexcept { return mvarText.Out(); }
    void Give(VARIANT& result) noexcept {
        V_VT(&result) = VT_BSTR;
        V_BSTR(&result) = mvarText.Detach();
    }

  private:
    Bstr mvarText;
};

template <>
class Answer<VARIANT> {
  public:
    [[nodiscard]] VARIANT* Out() noexcept { return mvarValue.Out(); }
    void Give(VARIANT& result) noexcept { result = mvarValue.Detach(); }

  private:
    Variant mvarValue;
};

template <class Interface>
requires std::is_base_of_v<IUnknown, Interface>
class Answer<Interface*> {
  public:
    [[nodiscard]] Interface** Out() noexcept { return mvarObject.Out(); }
    void Give(VARIANT& result) noexcept {
        V_VT(&result) = std::is_base_of_v<IDispatch, Interface> ? VT_DISPATCH : VT_UNKNOWN;
        V_UNKNOWN(&result) = mvarObject.Detach();
    }

  private:
    ComPtr<Interface> mvarObject;
};

} // namespace kestrel
