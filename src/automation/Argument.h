// One argument of a late-bound call as the member's parameter of type T takes it: at once where the host passed that
// type or a reference to it, through the platform's conversions otherwise. An argument that cannot be converted fails
// with ComFailure.
//
// Pass() is what the member is called with, valid as long as the argument; WriteBack(), after a successful call, gives
// the host's variable what the member wrote. One that the member left as it was keeps its own type.
#pragma once

#include <optional>
#include <type_traits>

#include "automation/BoundArguments.h"
#include "platform/ComPtr.h"

namespace kestrel {

// How values of a type stand in a variant.
template <class T>
struct InVariant;
template <>
struct InVariant<LONG> {
    static constexpr VARTYPE Type = VT_I4;
    static LONG Value(const VARIANT& value) noexcept { return V_I4(&value); }
    static LONG Referred(const VARIANT& value) noexcept { return *V_I4REF(&value); }
    static void Store(LONG content, VARIANT& value) noexcept { V_I4(&value) = content; }
};
template <>
struct InVariant<VARIANT_BOOL> {
    static constexpr VARTYPE Type = VT_BOOL;
    static VARIANT_BOOL Value(const VARIANT& value) noexcept { return V_BOOL(&value); }
    static VARIANT_BOOL Referred(const VARIANT& value) noexcept { return *V_BOOLREF(&value); }
    static void Store(VARIANT_BOOL content, VARIANT& value) noexcept { V_BOOL(&value) = content; }
};
template <>
struct InVariant<DATE> {
    static constexpr VARTYPE Type = VT_DATE;
    static DATE Value(const VARIANT& value) noexcept { return V_DATE(&value); }
    static DATE Referred(const VARIANT& value) noexcept { return *V_DATEREF(&value); }
    static void Store(DATE content, VARIANT& value) noexcept { V_DATE(&value) = content; }
};
template <>
struct InVariant<BSTR> {
    static constexpr VARTYPE Type = VT_BSTR;
    static BSTR Value(const VARIANT& value) noexcept { return V_BSTR(&value); }
    static BSTR Referred(const VARIANT& value) noexcept { return *V_BSTRREF(&value); }
    static void Store(BSTR content, VARIANT& value) noexcept { V_BSTR(&value) = content; }
};
template <class Enumeration>
requires std::is_enum_v<Enumeration>
struct InVariant<Enumeration> {
    static constexpr VARTYPE Type = VT_I4;
    static Enumeration Value(const VARIANT& value) noexcept { return static_cast<Enumeration>(V_I4(&value)); }
    static Enumeration Referred(const VARIANT& value) noexcept { return static_cast<Enumeration>(*V_I4REF(&value)); }
    static void Store(Enumeration content, VARIANT& value) noexcept { V_I4(&value) = content; }
};

// A copy in another type, references resolved.
[[nodiscard]] Variant ConvertedCopy(const VARIANT& value, VARTYPE type);

// A value.
template <class T>
class Argument {
  public:
    explicit Argument(const Given& given) {
        const VARIANT& value = given.Value();
        if (V_VT(&value) == InVariant<T>::Type) {
            mvarValue = InVariant<T>::Value(value);
        } else if (V_VT(&value) == (VT_BYREF | InVariant<T>::Type)) {
            mvarValue = InVariant<T>::Referred(value);
        } else {
            mvarConverted = ConvertedCopy(value, InVariant<T>::Type);
            mvarValue = InVariant<T>::Value(mvarConverted->Get());
        }
    }
    [[nodiscard]] T Pass() const noexcept { return mvarValue; }
    void WriteBack() const noexcept {}

  private:
    std::optional<Variant> mvarConverted;
    T mvarValue;
};

// Any value, as it is.
template <>
class Argument<VARIANT> {
  public:
    explicit Argument(const Given& given) noexcept : mvarValue(given.Value()) {}
    [[nodiscard]] VARIANT Pass() const noexcept { return mvarValue; }
    void WriteBack() const noexcept {}

  private:
    const VARIANT& mvarValue;
};

// The object by that interface; nothing for Nothing, for JScript's null and for an optional one left out or empty.
[[nodiscard]] ComPtr<IUnknown> ObjectFor(const Given& given, REFIID iid);

template <class Interface>
requires std::is_base_of_v<IDispatch, Interface>
class Argument<Interface*> {
  public:
    explicit Argument(const Given& given) : mvarObject(ObjectFor(given, __uuidof(Interface))) {}
    [[nodiscard]] Interface* Pass() const noexcept { return static_cast<Interface*>(mvarObject.Get()); }
    void WriteBack() const noexcept {}

  private:
    ComPtr<IUnknown> mvarObject;
};

// A variable of the host that a member reads and writes, as a value of the parameter's own type beside it.
class HostVariable {
  public:
    HostVariable(const Given& given, VARTYPE type);
    [[nodiscard]] VARIANT& Value() noexcept { return *mvarValue.Out(); }
    // The variable, if the host passed one, gets the value in its own type.
    void Store();

  private:
    Variant mvarValue;
    const VARIANT* mvarVariable = nullptr; // the host's reference; null when it passed a value
};

template <class Enumeration>
requires std::is_enum_v<Enumeration>
class Argument<Enumeration*> {
  public:
    explicit Argument(const Given& given)
        : mvarVariable(given, VT_I4), mvarValue(InVariant<Enumeration>::Value(mvarVariable.Value())) {}
    [[nodiscard]] Enumeration* Pass() noexcept { return &mvarValue; }
    void WriteBack() {
        if (mvarValue == InVariant<Enumeration>::Value(mvarVariable.Value())) return;
        InVariant<Enumeration>::Store(mvarValue, mvarVariable.Value());
        mvarVariable.Store();
    }

  private:
    HostVariable mvarVariable;
    Enumeration mvarValue;
};

template <>
class Argument<BSTR*> {
  public:
    explicit Argument(const Given& given) {
        if (given.passed != nullptr && V_VT(given.passed) == (VT_BYREF | VT_BSTR)) {
            mvarText = V_BSTRREF(given.passed);
            return;
        }
        mvarVariable.emplace(given, VT_BSTR);
        mvarText = &V_BSTR(&mvarVariable->Value());
        mvarBefore = ViewOf(*mvarText);
    }
    [[nodiscard]] BSTR* Pass() const noexcept { return mvarText; }
    void WriteBack() {
        if (mvarVariable && ViewOf(*mvarText) != mvarBefore) mvarVariable->Store();
    }

  private:
    std::optional<HostVariable> mvarVariable;
    BSTR* mvarText;
    String mvarBefore;
};

} // namespace kestrel
