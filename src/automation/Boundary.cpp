#include "automation/Boundary.h"

#include <oleauto.h>

#include <new>
#include <stdexcept>

#include "common/Error.h"
#include "platform/ComPtr.h"

namespace kestrel {

namespace {

// Best effort: without an error object the host still has the result code.
HRESULT Report(const ClassFacts* facts, HRESULT result, const String& description) noexcept {
    ComPtr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(creator.Out()))) return result;
    wchar_t source[64] = L"Kestrel";
    if (facts != nullptr) {
        creator->SetGUID(facts->iid);
        lstrcatW(lstrcatW(source, L"."), facts->name);
    }
    creator->SetSource(source);
    creator->SetDescription(const_cast<LPOLESTR>(description.c_str())); // the parameter is not const and only read
    if (const auto error = creator.As<IErrorInfo>()) SetErrorInfo(0, error.Get());
    return result;
}

HRESULT WithoutErrorObject(HRESULT result) noexcept {
    SetErrorInfo(0, nullptr);
    return result;
}

HRESULT ResultOf(const ClassFacts* facts, HRESULT (*body)(void*), void* context) {
    try {
        return body(context);
    } catch (const ComFailure& failure) {
        return WithoutErrorObject(failure.result);
    } catch (const Error& error) {
        return Report(facts, static_cast<HRESULT>(error.Code()), error.Description());
    }
}

HRESULT Translated(const ClassFacts* facts, HRESULT (*body)(void*), void* context) noexcept {
    try {
        return ResultOf(facts, body, context);
    } catch (const std::bad_alloc&) {
        return WithoutErrorObject(E_OUTOFMEMORY);
    } catch (const std::length_error&) {
        return WithoutErrorObject(E_OUTOFMEMORY); // a text or list longer than any memory could hold
    } catch (...) {
        return WithoutErrorObject(E_UNEXPECTED); // what the language's library says of it is not meant for hosts
    }
}

} // namespace

HRESULT RunGuarded(const ClassFacts* facts, HRESULT (*body)(void*), void* context) noexcept {
    SetErrorInfo(0, nullptr);
    return Translated(facts, body, context);
}

HRESULT RunLateBound(const ClassFacts* facts, HRESULT (*body)(void*), void* context) noexcept {
    const HRESULT result = Translated(facts, body, context);
    const bool isOfTheCall = HRESULT_FACILITY(result) == FACILITY_DISPATCH && result != DISP_E_EXCEPTION;
    return isOfTheCall ? WithoutErrorObject(result) : result;
}

} // namespace kestrel
