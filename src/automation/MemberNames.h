// Names of a type library: ASCII, compared without regard to case.
#pragma once

#include <cstddef>
#include <unordered_map>

#include "common/String.h"

namespace kestrel {

[[nodiscard]] constexpr wchar_t FoldedLetter(wchar_t character) noexcept {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

struct SameName {
    [[nodiscard]] bool operator()(StringView left, StringView right) const noexcept {
        if (left.size() != right.size()) return false;
        for (std::size_t i = 0; i < left.size(); ++i)
            if (FoldedLetter(left[i]) != FoldedLetter(right[i])) return false;
        return true;
    }
};

struct NameHash {
    [[nodiscard]] std::size_t operator()(StringView name) const noexcept {
        std::size_t hash = 0;
        for (const wchar_t character : name)
            hash = hash * 31 + static_cast<std::size_t>(FoldedLetter(character));
        return hash;
    }
};

// Keys are views: whoever fills the map keeps the names.
template <class Value>
using NameMap = std::unordered_map<StringView, Value, NameHash, SameName>;

} // namespace kestrel
