// Kestrel for C++ programs, early bound and without #import: owners for what its members hand out, and failures as
// exceptions. KestrelTypeLib.h, which the type library's compiler made, declares the interfaces themselves.
//
//     kestrel::Apartment apartment;
//     const auto rule = kestrel::Create<_CodeClass>(L"Kestrel.CodeClass");
//     kestrel::Text code;
//     kestrel::Check(rule->GetCode(gsNewCode, code.Out()));
//
// Objects belong to the thread that made them.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <utility>

#include "KestrelTypeLib.h"

namespace kestrel {

// A call that failed: the result code, and what the component said of it.
struct Failure {
    HRESULT result;
    std::wstring description; // may be empty
};

// COM on this thread, as long as this lives; it ends after every object made on the thread.
class Apartment {
  public:
    Apartment() {
        const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (FAILED(result)) throw Failure{result, {}};
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

// A text that goes to the component or comes from it.
class Text {
  public:
    Text() = default;
    explicit Text(const std::wstring& text) : mvarText(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (mvarText == nullptr) throw Failure{E_OUTOFMEMORY, {}};
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(mvarText); }

    BSTR Get() const noexcept { return mvarText; }
    // For a member that fills it; what it held before is gone.
    BSTR* Out() noexcept {
        SysFreeString(std::exchange(mvarText, nullptr));
        return &mvarText;
    }
    std::wstring Value() const {
        return mvarText == nullptr ? std::wstring() : std::wstring(mvarText, SysStringLen(mvarText));
    }

  private:
    BSTR mvarText = nullptr;
};

// An object of the component, of which this holds one reference; empty when default-constructed or moved from.
template <class Interface>
class Object {
  public:
    Object() = default;
    Object(const Object& other) noexcept : mvarObject(other.mvarObject) {
        if (mvarObject != nullptr) mvarObject->AddRef();
    }
    Object(Object&& other) noexcept : mvarObject(std::exchange(other.mvarObject, nullptr)) {}
    Object& operator=(Object other) noexcept {
        std::swap(mvarObject, other.mvarObject);
        return *this;
    }
    ~Object() {
        if (mvarObject != nullptr) mvarObject->Release();
    }

    Interface* Get() const noexcept { return mvarObject; }
    Interface* operator->() const noexcept { return mvarObject; }
    // For a member that fills it; what it held before is released.
    Interface** Out() noexcept {
        if (auto* before = std::exchange(mvarObject, nullptr)) before->Release();
        return &mvarObject;
    }

  private:
    Interface* mvarObject = nullptr;
};

// An optional argument that is left out.
inline VARIANT Missing() noexcept {
    VARIANT argument;
    V_VT(&argument) = VT_ERROR;
    V_ERROR(&argument) = DISP_E_PARAMNOTFOUND;
    return argument;
}

inline VARIANT Number(LONG number) noexcept {
    VARIANT argument;
    V_VT(&argument) = VT_I4;
    V_I4(&argument) = number;
    return argument;
}

// Throws Failure, with the component's own words, when the result says so.
inline void Check(HRESULT result) {
    if (SUCCEEDED(result)) return;
    Text description;
    Object<IErrorInfo> error;
    if (GetErrorInfo(0, error.Out()) == S_OK) error->GetDescription(description.Out());
    throw Failure{result, description.Value()};
}

// A new object by its registered name, or by the one that the program's manifest brings along.
template <class Interface>
Object<Interface> Create(const wchar_t* name) {
    CLSID clsid;
    Object<Interface> object;
    HRESULT result = CLSIDFromProgID(name, &clsid);
    if (SUCCEEDED(result))
        result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                  reinterpret_cast<void**>(object.Out()));
    if (FAILED(result)) throw Failure{result, {}};
    return object;
}

} // namespace kestrel
