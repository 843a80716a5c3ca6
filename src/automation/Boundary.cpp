#include "automation/Boundary.h"

#include <oleauto.h>

#include <new>

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

String Widened(const char* text) { return String(text, text + std::char_traits<char>::length(text)); }

} // namespace

HRESULT RunGuarded(const ClassFacts* facts, void (*body)(void*), void* context) noexcept {
    SetErrorInfo(0, nullptr);
    try {
        try {
            body(context);
            return S_OK;
        } catch (const ComFailure& failure) {
            return failure.result;
        } catch (const Error& error) {
            return Report(facts, static_cast<HRESULT>(error.Code()), error.Description());
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (const std::exception& error) {
            return Report(facts, E_UNEXPECTED, Widened(error.what()));
        }
    } catch (...) {
        return E_UNEXPECTED; // composing the report failed, or something that is no exception of ours came through
    }
}

} // namespace kestrel
