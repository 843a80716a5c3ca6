// A counted reference to an automation object.
#pragma once

#include <unknwn.h>

#include <utility>

namespace kestrel {

template <class Interface>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    explicit ComPtr(Interface* object) noexcept : mvarObject(object) {
        if (mvarObject != nullptr) mvarObject->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.mvarObject) {}
    ComPtr(ComPtr&& other) noexcept : mvarObject(other.Detach()) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(mvarObject, other.mvarObject);
        return *this;
    }
    ~ComPtr() {
        if (mvarObject != nullptr) mvarObject->Release();
    }

    // Takes over a reference that the caller holds.
    [[nodiscard]] static ComPtr Attach(Interface* object) noexcept {
        ComPtr result;
        result.mvarObject = object;
        return result;
    }

    [[nodiscard]] Interface* Get() const noexcept { return mvarObject; }
    Interface* operator->() const noexcept { return mvarObject; }
    explicit operator bool() const noexcept { return mvarObject != nullptr; }
    // Where a call stores a reference that this object then owns; the object is empty before.
    [[nodiscard]] Interface** Out() noexcept { return &mvarObject; }
    [[nodiscard]] void** OutVoid() noexcept { return reinterpret_cast<void**>(&mvarObject); }
    // The caller owns the result.
    [[nodiscard]] Interface* Detach() noexcept { return std::exchange(mvarObject, nullptr); }

    // The same object by another interface; nothing when it has none.
    template <class Other>
    [[nodiscard]] ComPtr<Other> As() const noexcept {
        ComPtr<Other> other;
        if (mvarObject != nullptr) mvarObject->QueryInterface(__uuidof(Other), other.OutVoid());
        return other;
    }

  private:
    Interface* mvarObject = nullptr;
};

} // namespace kestrel
