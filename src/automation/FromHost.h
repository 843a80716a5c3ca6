// What hosts pass, as the model takes it.
#pragma once

#include <cstdint>
#include <optional>

#include "common/IndexKey.h"
#include "platform/Variant.h"

namespace kestrel {

[[nodiscard]] inline String TextOf(BSTR text) { return String(ViewOf(text)); }
[[nodiscard]] inline bool TruthOf(VARIANT_BOOL value) noexcept { return value != VARIANT_FALSE; }

// The host's string becomes the text; its old characters go.
void Replace(BSTR& target, StringView text);

// Missing, empty, or an object that is Nothing.
[[nodiscard]] bool IsLeftOut(const VARIANT& value) noexcept;

// The object that the value holds or refers to; null when it is none or Nothing. Valid as long as the value.
[[nodiscard]] IUnknown* ObjectOf(const VARIANT& value) noexcept;

// A number of any type is a position (rounded; beyond 64 bits no position that exists), a string a key; references are
// followed. What is left out is no index, which every lookup that needs one refuses with 5. Anything else is unusable
// and refused with 5 where it is looked up.
[[nodiscard]] IndexKey IndexOf(const VARIANT& value);

// The number that an optional argument holds; nothing when it is left out. Fails with ComFailure on what is no number.
[[nodiscard]] std::optional<std::int32_t> OptionalNumber(const VARIANT& value);
[[nodiscard]] std::optional<bool> OptionalTruth(const VARIANT& value);

// The text of an optional argument; empty when it is left out or has no text.
[[nodiscard]] String OptionalText(const VARIANT& value);

} // namespace kestrel
