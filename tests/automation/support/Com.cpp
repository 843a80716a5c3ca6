#include "automation/support/Com.h"

#include <array>
#include <cstdio>

namespace kestrel::test {

namespace {

std::string HexText(HRESULT result) {
    std::array<char, 16> text{};
    static_cast<void>(
        std::snprintf(text.data(), text.size(), "0x%08lX", static_cast<unsigned long>(result))); // there is room
    return text.data();
}

ComPtr<IErrorInfo> TakenError() {
    ComPtr<IErrorInfo> error;
    GetErrorInfo(0, error.Out());
    return error;
}

} // namespace

HostError::HostError(HRESULT result) : std::runtime_error("a call failed with " + HexText(result)) {}

void Must(HRESULT result) {
    if (FAILED(result)) throw HostError(result);
}

Failure FailureOf(HRESULT result) {
    const auto error = TakenError();
    if (SUCCEEDED(result)) return {};
    Bstr description;
    if (error) error->GetDescription(description.Out());
    return {static_cast<std::uint32_t>(result), description.Text()};
}

String TakenSource() {
    const auto error = TakenError();
    Bstr source;
    if (error) error->GetSource(source.Out());
    return source.Text();
}

void LeaveErrorObject() {
    ComPtr<ICreateErrorInfo> error;
    Must(CreateErrorInfo(error.Out()));
    error->SetSource(const_cast<LPOLESTR>(L"a test")); // only read
    SetErrorInfo(0, error.As<IErrorInfo>().Get());
}

bool Same(IUnknown* left, IUnknown* right) {
    return ComPtr<IUnknown>(left).As<IUnknown>().Get() == ComPtr<IUnknown>(right).As<IUnknown>().Get();
}

VARIANT Missing() noexcept {
    VARIANT value;
    V_VT(&value) = VT_ERROR;
    V_ERROR(&value) = DISP_E_PARAMNOTFOUND;
    return value;
}

VARIANT Number(LONG number) noexcept {
    VARIANT value;
    V_VT(&value) = VT_I4;
    V_I4(&value) = number;
    return value;
}

VARIANT Real(double number) noexcept {
    VARIANT value;
    V_VT(&value) = VT_R8;
    V_R8(&value) = number;
    return value;
}

VARIANT Truth(bool truth) noexcept {
    VARIANT value;
    V_VT(&value) = VT_BOOL;
    V_BOOL(&value) = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return value;
}

VARIANT Null() noexcept {
    VARIANT value;
    V_VT(&value) = VT_NULL;
    return value;
}

VARIANT Reference(IDispatch* object) noexcept {
    VARIANT value;
    V_VT(&value) = VT_DISPATCH;
    V_DISPATCH(&value) = object;
    return value;
}

VARIANT ReferenceTo(VARIANT& variable) noexcept {
    VARIANT value;
    V_VT(&value) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&value) = &variable;
    return value;
}

} // namespace kestrel::test
