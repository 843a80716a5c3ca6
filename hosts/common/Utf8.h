// Texts between UTF-8, which files, consoles and databases hold, and the UTF-16 of the component.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hosts {

// A surrogate without its partner becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::wstring_view text);

// Nothing when the bytes are no UTF-8.
[[nodiscard]] std::optional<std::wstring> FromUtf8(std::string_view bytes);

// The same for bytes that this program made itself: what is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::wstring FromOwnUtf8(std::string_view bytes);

// Bytes in a code page that Windows knows by number; nothing when it does not know it or the bytes do not belong to it.
[[nodiscard]] std::optional<std::wstring> FromCodePage(std::string_view bytes, unsigned codePage);

} // namespace hosts
