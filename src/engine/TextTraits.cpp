#include "engine/TextTraits.h"

#include "common/Ports.h"

namespace kestrel {

namespace {

bool IsPrintableAscii(wchar_t character) { return character >= L' ' && character <= L'~'; }

bool IsCapital(wchar_t character) { return character >= L'A' && character <= L'Z'; }

bool IsSmall(wchar_t character) { return character >= L'a' && character <= L'z'; }

bool IsSeparator(wchar_t character) { return character == L',' || character == L';' || character == CarriageReturn; }

std::uint64_t Hashed(std::uint64_t hash, wchar_t character) {
    const wchar_t lowered = IsCapital(character) ? static_cast<wchar_t>(character - L'A' + L'a') : character;
    return (hash ^ static_cast<std::uint64_t>(lowered)) * 1099511628211U;
}

struct Look {
    TextTraits traits{14695981039346656037U, false, false};
    bool isAscii = true;
};

Look LookAt(const String& text) {
    Look look;
    for (const wchar_t character : text) {
        look.traits.foldedHash = Hashed(look.traits.foldedHash, character);
        look.traits.hasSmallLetters |= IsSmall(character);
        look.traits.hasSeparators |= IsSeparator(character);
        look.isAscii &= IsPrintableAscii(character);
    }
    return look;
}

} // namespace

TextTraits TraitsOf(const String& text) {
    Look look = LookAt(text);
    if (look.isAscii) return look.traits;
    look.traits.foldedHash = LookAt(TheText().Lower(text)).traits.foldedHash;
    look.traits.hasSmallLetters = look.traits.hasSmallLetters || TheText().Upper(text) != text;
    return look.traits;
}

} // namespace kestrel
