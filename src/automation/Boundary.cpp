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

HRESULT ResultOf(const ClassFacts* facts, void (*body)(void*), void* context) {
    try {
        body(context);
        return S_OK;
    } catch (const ComFailure& failure) {
        return failure.result;
    } catch (const Error& error) {
        return Report(facts, static_cast<HRESULT>(error.Code()), error.Description());
    }
}

} // namespace

HRESULT RunGuarded(const ClassFacts* facts, void (*body)(void*), void* context) noexcept {
    SetErrorInfo(0, nullptr);
    try {
        return ResultOf(facts, body, context);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::length_error&) {
        return E_OUTOFMEMORY; // a text or list longer than any memory could hold
    } catch (...) {
        return E_UNEXPECTED; // what the language's library says of it is not meant for hosts
    }
}

} // namespace kestrel
