#include "engine/Letters.h"

#include <algorithm>

#include "common/Ports.h"

namespace kestrel {

namespace {

bool IsPrintableAscii(wchar_t character) { return character >= L' ' && character <= L'~'; }

bool IsSmall(wchar_t character) { return character >= L'a' && character <= L'z'; }

wchar_t Lowered(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

std::uint64_t HashOf(const String& text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const wchar_t character : text)
        hash = (hash ^ static_cast<std::uint64_t>(Lowered(character))) * 1099511628211U;
    return hash ^ (hash >> 32U);
}

} // namespace

bool HasSmallLetters(const String& text) {
    if (std::any_of(text.begin(), text.end(), IsSmall)) return true;
    return !std::all_of(text.begin(), text.end(), IsPrintableAscii) && TheText().Upper(text) != text;
}

std::uint64_t FoldedHash(const String& text) {
    return HashOf(std::all_of(text.begin(), text.end(), IsPrintableAscii) ? text : TheText().Lower(text));
}

} // namespace kestrel
