// An automation value that owns what it holds.
#pragma once

#include <oaidl.h>

#include <string>
#include <string_view>

namespace hosts {

// A new automation string, owned by the caller; std::bad_alloc when there is no memory.
[[nodiscard]] BSTR MakeBstr(std::wstring_view text);
// The text of a string that may be null, which means empty.
[[nodiscard]] std::wstring FromBstr(BSTR text);

class Variant {
  public:
    Variant() noexcept = default; // VT_EMPTY
    explicit Variant(std::wstring_view text);
    explicit Variant(long number) noexcept;
    explicit Variant(bool flag) noexcept;
    explicit Variant(IDispatch* object) noexcept; // takes a reference of its own
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    Variant(const Variant&) = delete; // a copy can fail for lack of memory, and no host needs one
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&mvarValue); }

    // Converted as the automation runtime does; fails with HostError when it cannot be.
    [[nodiscard]] std::wstring Text() const;
    [[nodiscard]] long Number() const;
    // Null when the value is no object; the reference stays with the value.
    [[nodiscard]] IDispatch* Object() const noexcept;

    [[nodiscard]] VARIANT* Out() noexcept;
    // For a callee that reads what is held and may replace it.
    [[nodiscard]] VARIANT* InOut() noexcept { return &mvarValue; }
    // What was held, now the caller's to clear.
    [[nodiscard]] VARIANT Detach() noexcept;
    [[nodiscard]] const VARIANT& Raw() const noexcept { return mvarValue; }

  private:
    [[nodiscard]] Variant ChangedTo(VARTYPE type) const;

    VARIANT mvarValue{};
};

} // namespace hosts
