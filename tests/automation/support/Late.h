// Late-bound calls as scripts make them.
#pragma once

#include <initializer_list>
#include <vector>

#include "automation/support/Com.h"

namespace kestrel::test {

struct LateResult {
    HRESULT result = S_OK; // as Invoke returned it
    Variant value;
    Failure failure; // with the description from the exception that the call filled, if it did
    String source;
    UINT failedArgument = 0;
};

struct NamedArgument {
    const wchar_t* name;
    VARIANT value;
};

constexpr WORD AsValue = DISPATCH_METHOD | DISPATCH_PROPERTYGET; // how a script reads or calls

[[nodiscard]] DISPID IdOf(IDispatch* object, const wchar_t* name);

// Arguments in the order in which they are written, named ones after them.
[[nodiscard]] LateResult Call(IDispatch* object, DISPID member, WORD flags,
                              std::initializer_list<VARIANT> arguments = {});
// Arguments last first, as a call takes them; a put names its value.
[[nodiscard]] LateResult CallReversed(IDispatch* object, DISPID member, WORD flags, std::vector<VARIANT> arguments);
[[nodiscard]] LateResult Call(IDispatch* object, const wchar_t* name, std::initializer_list<VARIANT> arguments = {},
                              std::initializer_list<NamedArgument> named = {});
[[nodiscard]] LateResult Put(IDispatch* object, const wchar_t* name, VARIANT value, WORD flags = DISPATCH_PROPERTYPUT);

// The result of a call as text or number; a failure or another type is a failure of the test.
[[nodiscard]] String TextIn(const LateResult& result);
[[nodiscard]] LONG NumberIn(const LateResult& result);

} // namespace kestrel::test
