// The arguments of one event in the types that sinks take: by reference, except for ByValue. What sinks write is copied
// back into what the model passed. Making them and copying back fail with std::bad_alloc for want of memory.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>

#include "platform/Variant.h"

namespace kestrel {

// A text that the event interface passes by value.
struct ByValue {
    const String& text;
};

template <class Argument>
class EventArgument;

template <>
class EventArgument<const String&> {
  public:
    explicit EventArgument(const String& text) : mvarText(text) {}
    [[nodiscard]] VARIANT Value() noexcept {
        VARIANT value;
        V_VT(&value) = VT_BYREF | VT_BSTR;
        V_BSTRREF(&value) = mvarText.Out();
        return value;
    }
    void CopyBack() noexcept {} // the model passes it for reading only

  protected:
    Bstr mvarText;
};

template <>
class EventArgument<String&> : public EventArgument<const String&> {
  public:
    explicit EventArgument(String& text) : EventArgument<const String&>(text), mvarTarget(text) {}
    void CopyBack() { mvarTarget = ViewOf(mvarText.Get()); }

  private:
    String& mvarTarget;
};

template <>
class EventArgument<ByValue> {
  public:
    explicit EventArgument(const ByValue& argument) : mvarText(argument.text) {}
    [[nodiscard]] VARIANT Value() noexcept {
        VARIANT value;
        V_VT(&value) = VT_BSTR;
        V_BSTR(&value) = mvarText.Get();
        return value;
    }
    void CopyBack() noexcept {}

  private:
    Bstr mvarText;
};

template <>
class EventArgument<bool&> {
  public:
    explicit EventArgument(bool& flag) noexcept : mvarTarget(flag), mvarFlag(flag ? VARIANT_TRUE : VARIANT_FALSE) {}
    [[nodiscard]] VARIANT Value() noexcept {
        VARIANT value;
        V_VT(&value) = VT_BYREF | VT_BOOL;
        V_BOOLREF(&value) = &mvarFlag;
        return value;
    }
    void CopyBack() noexcept { mvarTarget = mvarFlag != VARIANT_FALSE; }

  private:
    bool& mvarTarget;
    VARIANT_BOOL mvarFlag;
};

template <>
class EventArgument<std::int32_t&> {
  public:
    explicit EventArgument(std::int32_t& number) noexcept : mvarTarget(number), mvarNumber(number) {}
    [[nodiscard]] VARIANT Value() noexcept {
        VARIANT value;
        V_VT(&value) = VT_BYREF | VT_I4;
        V_I4REF(&value) = &mvarNumber;
        return value;
    }
    void CopyBack() noexcept { mvarTarget = mvarNumber; }

  private:
    std::int32_t& mvarTarget;
    LONG mvarNumber;
};

template <class... Args>
class EventArguments {
  public:
    explicit EventArguments(Args... args) : mvarArguments(EventArgument<Args>(args)...) {}
    // As a call takes them: last first. Valid as long as this object; the texts belong to it.
    [[nodiscard]] std::array<VARIANT, sizeof...(Args)> Values() noexcept {
        auto values = std::apply(
            [](auto&... argument) { return std::array<VARIANT, sizeof...(Args)>{argument.Value()...}; }, mvarArguments);
        std::reverse(values.begin(), values.end());
        return values;
    }
    void CopyBack() {
        std::apply([](auto&... argument) { (argument.CopyBack(), ...); }, mvarArguments);
    }

  private:
    std::tuple<EventArgument<Args>...> mvarArguments;
};

} // namespace kestrel
