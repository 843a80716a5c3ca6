// Automation strings: an owned one, and the conversions between them and the model's strings.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <utility>

#include "common/String.h"

namespace kestrel {

// The characters of an automation string, embedded NULs included; a null string is empty. Valid as long as the string.
[[nodiscard]] inline StringView ViewOf(BSTR text) noexcept {
    return {text != nullptr ? text : L"", SysStringLen(text)};
}

class Bstr {
  public:
    Bstr() noexcept = default;
    // Fails with std::bad_alloc, on a text beyond LongestText as well.
    explicit Bstr(StringView text)
        : mvarText(text.size() <= LongestText ? SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))
                                              : nullptr) {
        if (mvarText == nullptr) throw std::bad_alloc();
    }
    Bstr(Bstr&& other) noexcept : mvarText(other.Detach()) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(mvarText, other.mvarText);
        return *this;
    }
    // A copy costs an allocation that no caller here needs.
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(mvarText); }

    [[nodiscard]] BSTR Get() const noexcept { return mvarText; }
    [[nodiscard]] String Text() const { return String(ViewOf(mvarText)); }
    // Where a call stores a string that this object then owns; the object is empty before.
    [[nodiscard]] BSTR* Out() noexcept { return &mvarText; }
    // The caller owns the result.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(mvarText, nullptr); }

  private:
    BSTR mvarText = nullptr;
};

} // namespace kestrel
