#include "hosts/common/Utf8.h"

#include <windows.h>

namespace hosts {

namespace {

std::optional<std::wstring> Widen(std::string_view bytes, unsigned codePage, DWORD flags) {
    if (bytes.empty()) return std::wstring();
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (length == 0) return std::nullopt;
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), length);
    return text;
}

} // namespace

std::string ToUtf8(std::wstring_view text) {
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), length, nullptr, nullptr);
    return bytes;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes) { return Widen(bytes, CP_UTF8, MB_ERR_INVALID_CHARS); }

std::wstring FromOwnUtf8(std::string_view bytes) { return Widen(bytes, CP_UTF8, 0).value_or(std::wstring()); }

std::optional<std::wstring> FromCodePage(std::string_view bytes, unsigned codePage) {
    return Widen(bytes, codePage, MB_ERR_INVALID_CHARS);
}

} // namespace hosts
