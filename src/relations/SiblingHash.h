// The hash of a text among siblings: they have the same parent, so that the parent counts as a part of the text. Hashes
// of texts that are next to each other stay so.
#pragma once

#include <cstdint>

#include "relations/cNode.h"

namespace kestrel {

// Of a text that has this hash, in the layer below the parent (null: in the first layer).
[[nodiscard]] inline std::uint64_t SiblingHash(const cNode* parent, std::uint64_t textHash) noexcept {
    return textHash + (std::uint64_t{reinterpret_cast<std::uintptr_t>(parent)} * 0x9E3779B97F4A7C15U >> 24U);
}

} // namespace kestrel
