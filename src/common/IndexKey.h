// How a caller names a member of a collection: by 1-based position, by key, or not at all.
#pragma once

#include <cstdint>
#include <utility>
#include <variant>

#include "common/String.h"

namespace kestrel {

class IndexKey {
  public:
    IndexKey() noexcept = default; // left out
    // Positions and keys are written where an IndexKey is expected, as hosts write them.
    // NOLINTBEGIN(google-explicit-constructor)
    IndexKey(int position) noexcept : mvarValue(static_cast<std::int64_t>(position)) {}
    IndexKey(std::int64_t position) noexcept : mvarValue(position) {}
    IndexKey(String key) noexcept : mvarValue(std::move(key)) {}
    IndexKey(const wchar_t* key) : mvarValue(String(key)) {}
    // NOLINTEND(google-explicit-constructor)

    [[nodiscard]] bool IsMissing() const noexcept { return std::holds_alternative<std::monostate>(mvarValue); }
    // Null when it is no key.
    [[nodiscard]] const String* Key() const noexcept { return std::get_if<String>(&mvarValue); }
    // Null when it is no position.
    [[nodiscard]] const std::int64_t* Position() const noexcept { return std::get_if<std::int64_t>(&mvarValue); }

    // As an error's description shows it.
    [[nodiscard]] String Text() const {
        if (Key() != nullptr) return *Key();
        return Position() != nullptr ? ToText(*Position()) : String();
    }

  private:
    std::variant<std::monostate, std::int64_t, String> mvarValue;
};

} // namespace kestrel
