// An automation object used late-bound: by the names of its members.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "hosts/common/ComPtr.h"
#include "hosts/common/HostError.h"
#include "hosts/common/Variant.h"

namespace hosts {

// What an automation object refused: Message is the object's own description.
class DispatchError final : public RecordError {
  public:
    DispatchError(HRESULT code, std::wstring message) : RecordError(std::move(message)), mvarCode(code) {}
    [[nodiscard]] HRESULT Code() const noexcept { return mvarCode; }

  private:
    HRESULT mvarCode;
};

// The apartment that a program's automation objects live in.
class Apartment {
  public:
    Apartment();
    ~Apartment();
    Apartment(const Apartment&) = delete; // one per thread
    Apartment& operator=(const Apartment&) = delete;
};

class Dispatch {
  public:
    Dispatch() = default;
    explicit Dispatch(IDispatch* object) : mvarObject(object) {}
    // A new object of the class registered under the name, or the platform's reason why there is none.
    [[nodiscard]] static HRESULT TryCreate(const std::wstring& progId, ComPtr<IDispatch>& object);
    // The same; HostError with the way out when there is none.
    [[nodiscard]] static Dispatch Create(const std::wstring& progId);

    // Each fails with DispatchError as the object does. Arguments in the order of the declaration.
    Variant Get(const std::wstring& name, std::initializer_list<const Variant*> arguments = {}) const;
    Variant Call(const std::wstring& name, std::initializer_list<const Variant*> arguments = {}) const;
    void Put(const std::wstring& name, const Variant& value) const;
    // The object that a property holds.
    [[nodiscard]] Dispatch Object(const std::wstring& name) const;
    // The member of a collection by its name or position.
    [[nodiscard]] Dispatch Item(const Variant& indexKey, const std::wstring& name = L"Item") const;

    [[nodiscard]] IDispatch* Raw() const noexcept { return mvarObject.Get(); }

  private:
    [[nodiscard]] DISPID Id(const std::wstring& name) const;
    Variant Invoke(const std::wstring& name, WORD kind, std::initializer_list<const Variant*> arguments) const;

    ComPtr<IDispatch> mvarObject;
    mutable std::unordered_map<std::wstring, DISPID> mvarIds; // asking for an id costs more than most calls
};

} // namespace hosts
