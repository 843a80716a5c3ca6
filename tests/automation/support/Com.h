// What the tests of the automation layer share: objects made as hosts make them, results and failures in comparable
// form.
//
// The component must be registered for the bitness of the test program (tools/register.sh).
#pragma once

#include <gtest/gtest.h>

#include "KestrelTypeLib.h"
#include "platform/ComPtr.h"
#include "platform/Variant.h"
#include "support/Failures.h"

namespace kestrel::test {

// An apartment for each suite.
class ComTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    static void TearDownTestSuite() { CoUninitialize(); }
};

class HostError : public std::runtime_error {
  public:
    explicit HostError(HRESULT result);
};

// Throws HostError on a failure: for what a test takes for granted.
void Must(HRESULT result);

// A new object of the class; Interface is its default interface.
template <class Class, class Interface>
[[nodiscard]] ComPtr<Interface> New() {
    ComPtr<Interface> object;
    Must(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.OutVoid()));
    return object;
}

[[nodiscard]] inline ComPtr<_List> NewList() { return New<::List, _List>(); }
[[nodiscard]] inline ComPtr<_Names> NewNames() { return New<::Names, _Names>(); }
[[nodiscard]] inline ComPtr<_cNode> NewNode() { return New<::cNode, _cNode>(); }
[[nodiscard]] inline ComPtr<_cNodes> NewNodes() { return New<::cNodes, _cNodes>(); }
[[nodiscard]] inline ComPtr<_Band> NewBand() { return New<::Band, _Band>(); }
[[nodiscard]] inline ComPtr<_CodeClass> NewRule() { return New<::CodeClass, _CodeClass>(); }

// What a call that returned `result` failed with, the description from the thread's error object.
[[nodiscard]] Failure FailureOf(HRESULT result);
// The source that the thread's error object names, which is taken; empty without one.
[[nodiscard]] String TakenSource();
// Gives the thread an error object whose source is "a test".
void LeaveErrorObject();

// A failure without a text of its own.
[[nodiscard]] inline Failure Bare(HRESULT result) { return {static_cast<std::uint32_t>(result), {}}; }

// NOLINTBEGIN(cppcoreguidelines-macro-usage): only a macro reports the line of the test
#define EXPECT_FAILS(call, failure) EXPECT_EQ(::kestrel::test::FailureOf(call), (failure))
#define EXPECT_DONE(call) EXPECT_EQ(::kestrel::test::FailureOf(call), ::kestrel::test::Failure{})
// NOLINTEND(cppcoreguidelines-macro-usage)

// --- Results ---

template <class Interface>
[[nodiscard]] String Text(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
    Bstr text;
    Must((object.Get()->*getter)(text.Out()));
    return text.Text();
}

template <class Interface, class Value>
[[nodiscard]] Value Plain(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(Value*)) {
    Value value{};
    Must((object.Get()->*getter)(&value));
    return value;
}

template <class Interface, class Result>
[[nodiscard]] ComPtr<Result> Object(const ComPtr<Interface>& object,
                                    HRESULT (STDMETHODCALLTYPE Interface::*getter)(Result**)) {
    ComPtr<Result> result;
    Must((object.Get()->*getter)(result.Out()));
    return result;
}

// The same object, by the rule that IUnknown identifies it.
[[nodiscard]] bool Same(IUnknown* left, IUnknown* right);

// --- Arguments ---

[[nodiscard]] VARIANT Missing() noexcept;
[[nodiscard]] VARIANT Number(LONG number) noexcept;
[[nodiscard]] VARIANT Real(double number) noexcept;
[[nodiscard]] VARIANT Truth(bool truth) noexcept;
[[nodiscard]] VARIANT Null() noexcept;
// Not owned: valid as long as the object.
[[nodiscard]] VARIANT Reference(IDispatch* object) noexcept;
[[nodiscard]] VARIANT ReferenceTo(VARIANT& variable) noexcept;

// A text as an argument for the time of a call.
class Argument {
  public:
    explicit Argument(StringView text) : mvarVariant(text) {}
    operator VARIANT() const noexcept {
        return mvarVariant.Get();
    } // NOLINT(google-explicit-constructor): passed to calls
    operator BSTR() const noexcept {
        return V_BSTR(&mvarVariant.Get());
    } // NOLINT(google-explicit-constructor): as above

  private:
    Variant mvarVariant;
};
[[nodiscard]] inline Argument Arg(StringView text) { return Argument(text); }

} // namespace kestrel::test
