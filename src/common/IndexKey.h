// How a caller names a member of a collection: by 1-based position, by key, not at all, or by what cannot name one.
#pragma once

#include <cstdint>
#include <utility>
#include <variant>

#include "common/Messages.h"
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

    // What can name nothing. It is refused with that error where it is looked up: what comes before is done before.
    // NOLINTNEXTLINE(bugprone-exception-escape): a number put into the variant throws nothing
    [[nodiscard]] static IndexKey Unusable(Message refusal) noexcept {
        IndexKey indexKey;
        indexKey.mvarValue = refusal;
        return indexKey;
    }

    [[nodiscard]] bool IsMissing() const noexcept { return std::holds_alternative<std::monostate>(mvarValue); }
    // Null when it is no key.
    [[nodiscard]] const String* Key() const noexcept { return std::get_if<String>(&mvarValue); }
    // Null when it is no position.
    [[nodiscard]] const std::int64_t* Position() const noexcept { return std::get_if<std::int64_t>(&mvarValue); }

    [[nodiscard]] bool IsUnusable() const noexcept { return std::holds_alternative<Message>(mvarValue); }
    // What a lookup fails with that finds nothing under it.
    [[nodiscard]] Message Refusal() const noexcept {
        const auto* refusal = std::get_if<Message>(&mvarValue);
        return refusal != nullptr ? *refusal : Message::InvalidCall;
    }

    // As an error's description shows it.
    [[nodiscard]] String Text() const {
        if (Key() != nullptr) return *Key();
        return Position() != nullptr ? ToText(*Position()) : String();
    }

  private:
    std::variant<std::monostate, std::int64_t, String, Message> mvarValue;
};

} // namespace kestrel
