// Kestrel for C++ programs, early bound and without #import: owners for what its members hand out, and failures as
// exceptions. KestrelTypeLib.h, which the type library's compiler made, declares the interfaces themselves.
//
//     kestrel::Apartment apartment;
//     const auto rule = kestrel::Create<_CodeClass>(L"Kestrel.CodeClass");
//     kestrel::Text code;
//     kestrel::Check(rule->GetCode(gsNewCode, code.Out()));
//
// Objects belong to the thread that made them, and events come on it while a member of the component is called.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <functional>
#include <map>
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
    BSTR* Held() noexcept { return &mvarText; }
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
    // Takes over a reference that the caller has.
    explicit Object(Interface* object) noexcept : mvarObject(object) {}
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

// What an event brings, by position from 0 in the order of its declaration. Only for as long as the event lasts.
class Arguments {
  public:
    explicit Arguments(const DISPPARAMS& arguments) noexcept : mvarArguments(arguments) {}
    // Empty for what is no text.
    std::wstring TextAt(UINT position) const {
        const VARIANT* argument = At(position);
        if (argument == nullptr) return {};
        const BSTR text = V_VT(argument) == (VT_BYREF | VT_BSTR) ? *V_BSTRREF(argument)
                          : V_VT(argument) == VT_BSTR            ? V_BSTR(argument)
                                                                 : nullptr;
        return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text));
    }
    // Answers an argument that the event declares as [in, out]; any other stays as it is.
    void SetTextAt(UINT position, const std::wstring& text) const {
        const VARIANT* argument = At(position);
        if (argument == nullptr || V_VT(argument) != (VT_BYREF | VT_BSTR)) return;
        Text answer(text);
        std::swap(*V_BSTRREF(argument), *answer.Held());
    }
    void SetFlagAt(UINT position, bool flag) const {
        const VARIANT* argument = At(position);
        if (argument != nullptr && V_VT(argument) == (VT_BYREF | VT_BOOL))
            *V_BOOLREF(argument) = flag ? VARIANT_TRUE : VARIANT_FALSE;
    }

  private:
    // They come last one first.
    const VARIANT* At(UINT position) const noexcept {
        return position < mvarArguments.cArgs ? &mvarArguments.rgvarg[mvarArguments.cArgs - 1 - position] : nullptr;
    }
    const DISPPARAMS& mvarArguments;
};

// Answers the events of one object for as long as this lives. The source is the identifier of the object's event
// interface, such as __uuidof(__CodeClass); an event without a handler passes unanswered.
class Events {
  public:
    // What a handler throws ends with the event: the component sees that it failed, and its caller does not.
    using Handler = std::function<void(const Arguments&)>;

    Events(IUnknown* object, REFIID source) : mvarSink(new Sink(source)) {
        Object<IConnectionPointContainer> points;
        Check(object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(points.Out())));
        Check(points->FindConnectionPoint(source, mvarPoint.Out()));
        Check(mvarPoint->Advise(mvarSink.Get(), &mvarCookie));
    }
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;
    ~Events() { mvarPoint->Unadvise(mvarCookie); }

    // The event by its dispatch id, as the reference lists it.
    void On(DISPID event, Handler handler) { mvarSink->handlers[event] = std::move(handler); }

  private:
    class Sink final : public IDispatch {
      public:
        explicit Sink(REFIID source) noexcept : mvarSource(source) {}
        std::map<DISPID, Handler> handlers;

        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
            const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == mvarSource;
            *object = known ? this : nullptr;
            if (known) AddRef();
            return known ? S_OK : E_NOINTERFACE;
        }
        ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++mvarReferences; }
        ULONG STDMETHODCALLTYPE Release() noexcept override {
            const ULONG left = --mvarReferences;
            if (left == 0) delete this;
            return left;
        }
        HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
            *count = 0;
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
            return DISP_E_UNKNOWNNAME;
        }
        HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                         UINT*) noexcept override {
            try {
                const auto found = handlers.find(event);
                if (found != handlers.end()) found->second(Arguments(*arguments));
                return S_OK;
            } catch (...) {
                return E_FAIL;
            }
        }

      private:
        ~Sink() = default;
        IID mvarSource;
        ULONG mvarReferences = 1; // the maker's
    };

    Object<Sink> mvarSink;
    Object<IConnectionPoint> mvarPoint;
    DWORD mvarCookie = 0;
};

} // namespace kestrel
