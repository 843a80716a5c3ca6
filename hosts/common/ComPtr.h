// A counted reference to a COM object; the one place where hosts call AddRef and Release.
#pragma once

#include <unknwn.h>

#include <utility>

namespace hosts {

template <class Interface>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    // Takes a further reference on what somebody else owns.
    explicit ComPtr(Interface* object) noexcept : mvarObject(object) {
        if (mvarObject != nullptr) mvarObject->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.mvarObject) {}
    ComPtr(ComPtr&& other) noexcept : mvarObject(std::exchange(other.mvarObject, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(mvarObject, other.mvarObject);
        return *this;
    }
    ~ComPtr() {
        if (mvarObject != nullptr) mvarObject->Release();
    }

    // Takes over the reference that the caller holds.
    [[nodiscard]] static ComPtr Attach(Interface* object) noexcept {
        ComPtr pointer;
        pointer.mvarObject = object;
        return pointer;
    }

    // Gives up the reference, which the caller then holds.
    [[nodiscard]] Interface* Detach() noexcept { return std::exchange(mvarObject, nullptr); }

    [[nodiscard]] Interface* Get() const noexcept { return mvarObject; }
    Interface* operator->() const noexcept { return mvarObject; }
    explicit operator bool() const noexcept { return mvarObject != nullptr; }
    // For a callee that hands out a reference; what was held goes first.
    [[nodiscard]] Interface** Out() noexcept {
        *this = ComPtr();
        return &mvarObject;
    }
    [[nodiscard]] void** OutVoid() noexcept { return reinterpret_cast<void**>(Out()); }

    // The object's other interface, or nothing.
    template <class Other>
    [[nodiscard]] ComPtr<Other> As(REFIID iid) const noexcept {
        ComPtr<Other> other;
        if (mvarObject == nullptr || FAILED(mvarObject->QueryInterface(iid, other.OutVoid()))) return {};
        return other;
    }

  private:
    Interface* mvarObject = nullptr;
};

} // namespace hosts
