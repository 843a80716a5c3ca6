#include "platform/ResourceStrings.h"

#include "platform/Module.h"

namespace kestrel {

namespace {

constexpr WORD EnglishTexts = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr WORD GermanTexts = MAKELANGID(LANG_NEUTRAL, SUBLANG_SYS_DEFAULT);
constexpr int TextsPerBlock = 16;

WORD LanguageOfTexts() noexcept {
    return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_GERMAN ? GermanTexts : EnglishTexts;
}

// The block that holds the text with that number, or null. Blocks are numbered from 1.
const wchar_t* BlockOf(int number, WORD language) noexcept {
    const HMODULE module = ThisModule();
    const auto block = MAKEINTRESOURCEW(number / TextsPerBlock + 1);
    const HRSRC resource = FindResourceExW(module, RT_STRING, block, language);
    const HGLOBAL loaded = resource != nullptr ? LoadResource(module, resource) : nullptr;
    return loaded != nullptr ? static_cast<const wchar_t*>(LockResource(loaded)) : nullptr;
}

} // namespace

String ResourceStrings::Text(int number) const {
    const wchar_t* text = number > 0 ? BlockOf(number, LanguageOfTexts()) : nullptr;
    if (text == nullptr) return {};
    // Each text is its length, then its characters.
    for (int skipped = number % TextsPerBlock; skipped > 0; --skipped)
        text += 1 + *text;
    return String(text + 1, static_cast<std::size_t>(*text));
}

} // namespace kestrel
