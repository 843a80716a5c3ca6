#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

// What an exception tells belongs to the caller.
void TakeException(EXCEPINFO& exception, LateResult& outcome) {
    if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
    Bstr source;
    Bstr description;
    Bstr helpFile;
    *source.Out() = exception.bstrSource;
    *description.Out() = exception.bstrDescription;
    *helpFile.Out() = exception.bstrHelpFile;
    const HRESULT result = outcome.result == DISP_E_EXCEPTION ? exception.scode : outcome.result;
    outcome.failure = {static_cast<std::uint32_t>(result), description.Text()};
    outcome.source = source.Text();
}

LateResult Invoke(IDispatch* object, DISPID member, WORD flags, DISPPARAMS& params) {
    LateResult outcome;
    EXCEPINFO exception{};
    outcome.result = object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, outcome.value.Out(),
                                    &exception, &outcome.failedArgument);
    if (FAILED(outcome.result)) TakeException(exception, outcome);
    return outcome;
}

} // namespace

DISPID IdOf(IDispatch* object, const wchar_t* name) {
    auto* spelled = const_cast<LPOLESTR>(name); // only read
    DISPID id = DISPID_UNKNOWN;
    Must(object->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id));
    return id;
}

LateResult Call(IDispatch* object, DISPID member, WORD flags, std::initializer_list<VARIANT> arguments) {
    return CallReversed(object, member, flags, {std::rbegin(arguments), std::rend(arguments)});
}

LateResult CallReversed(IDispatch* object, DISPID member, WORD flags, std::vector<VARIANT> arguments) {
    DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    DISPID target = DISPID_PROPERTYPUT;
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
        params.cNamedArgs = 1;
        params.rgdispidNamedArgs = &target;
    }
    return Invoke(object, member, flags, params);
}

LateResult Call(IDispatch* object, const wchar_t* name, std::initializer_list<VARIANT> arguments,
                std::initializer_list<NamedArgument> named) {
    std::vector<LPOLESTR> names{const_cast<LPOLESTR>(name)};
    std::vector<VARIANT> all;
    for (const auto& argument : named) {
        names.push_back(const_cast<LPOLESTR>(argument.name));
        all.push_back(argument.value);
    }
    std::vector<DISPID> ids(names.size(), DISPID_UNKNOWN);
    Must(object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT,
                               ids.data()));
    all.insert(all.end(), std::rbegin(arguments), std::rend(arguments));
    DISPPARAMS params{all.data(), ids.data() + 1, static_cast<UINT>(all.size()), static_cast<UINT>(named.size())};
    return Invoke(object, ids[0], AsValue, params);
}

LateResult Put(IDispatch* object, const wchar_t* name, VARIANT value, WORD flags) {
    DISPID target = DISPID_PROPERTYPUT;
    DISPPARAMS params{&value, &target, 1, 1};
    return Invoke(object, IdOf(object, name), flags, params);
}

String TextIn(const LateResult& result) {
    EXPECT_EQ(result.failure, Failure{});
    EXPECT_EQ(result.value.Type(), VT_BSTR);
    return result.value.Type() == VT_BSTR ? String(ViewOf(V_BSTR(&result.value.Get()))) : String();
}

LONG NumberIn(const LateResult& result) {
    EXPECT_EQ(result.failure, Failure{});
    EXPECT_EQ(result.value.Type(), VT_I4);
    return result.value.Type() == VT_I4 ? V_I4(&result.value.Get()) : 0;
}

} // namespace kestrel::test
