// Enumerators over a snapshot: what happens to the collection afterwards does not show.
//
// A Policy names the enumerator's interface, its element, and the item that the snapshot holds; it makes an element
// that the caller owns from an item (Give) and destroys one that the caller did not get (Clear).
#pragma once

#include <ocidl.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "automation/Boundary.h"
#include "platform/ComObject.h"
#include "platform/ComPtr.h"

namespace kestrel {

template <class Policy>
class Enumerator final : public ComObject<typename Policy::Interface> {
  public:
    using Interface = typename Policy::Interface;
    using Element = typename Policy::Element;
    using Items = std::vector<typename Policy::Item>;

    explicit Enumerator(std::shared_ptr<const Items> items, std::size_t next = 0) noexcept
        : mvarItems(std::move(items)), mvarNext(next) {}

    // Only a caller who asks for one element may do without the count. A failure leaves the position and no elements.
    STDMETHODIMP Next(ULONG count, Element* elements, ULONG* fetched) noexcept override {
        if (fetched != nullptr) *fetched = 0;
        if (elements == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
        const std::size_t given = std::min<std::size_t>(count, mvarItems->size() - mvarNext);
        std::size_t done = 0;
        const HRESULT result = Guarded(nullptr, [&] {
            for (; done < given; ++done)
                Policy::Give((*mvarItems)[mvarNext + done], elements[done]);
        });
        if (FAILED(result)) {
            std::for_each(elements, elements + done, Policy::Clear);
            return result;
        }
        mvarNext += given;
        if (fetched != nullptr) *fetched = static_cast<ULONG>(given);
        return given == count ? S_OK : S_FALSE;
    }

    STDMETHODIMP Skip(ULONG count) noexcept override {
        const std::size_t skipped = std::min<std::size_t>(count, mvarItems->size() - mvarNext);
        mvarNext += skipped;
        return skipped == count ? S_OK : S_FALSE;
    }

    STDMETHODIMP Reset() noexcept override {
        mvarNext = 0;
        return S_OK;
    }

    STDMETHODIMP Clone(Interface** clone) noexcept override {
        if (clone == nullptr) return E_POINTER;
        *clone = nullptr;
        return Guarded(nullptr, [&] { *clone = ComPtr<Interface>(new Enumerator(mvarItems, mvarNext)).Detach(); });
    }

  private:
    std::shared_ptr<const Items> mvarItems;
    std::size_t mvarNext;
};

template <class Policy>
[[nodiscard]] ComPtr<typename Policy::Interface> Enumerate(std::vector<typename Policy::Item> items) {
    auto shared = std::make_shared<const std::vector<typename Policy::Item>>(std::move(items));
    return ComPtr<typename Policy::Interface>(new Enumerator<Policy>(std::move(shared)));
}

} // namespace kestrel
