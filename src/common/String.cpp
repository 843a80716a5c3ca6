#include "common/String.h"

#include <cstddef>
#include <iterator>

namespace kestrel {

String Trim(StringView text) {
    const auto first = text.find_first_not_of(L' ');
    if (first == StringView::npos) return {};
    return String(text.substr(first, text.find_last_not_of(L' ') - first + 1));
}

std::vector<StringView> Split(StringView text, wchar_t separator) {
    std::vector<StringView> pieces;
    Splitter splitter(text, separator);
    while (const auto piece = splitter.Next())
        pieces.push_back(*piece);
    return pieces;
}

std::optional<StringView> Splitter::Next() noexcept {
    if (mvarEnded) return std::nullopt;
    const auto end = mvarRest.find(mvarSeparator);
    const auto piece = mvarRest.substr(0, end);
    mvarEnded = end == StringView::npos;
    if (!mvarEnded) mvarRest.remove_prefix(end + 1);
    return piece;
}

String Join(const std::vector<String>& items, StringView separator) {
    String text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += separator;
        text += items[i];
    }
    return text;
}

String ReplaceStar(StringView text, StringView replacement) {
    String result;
    for (const wchar_t character : text) {
        if (character == L'*')
            result += replacement;
        else
            result += character;
    }
    return result;
}

String ToText(std::int64_t number) {
    wchar_t digits[20]; // as many as the smallest number has, with its sign
    wchar_t* first = std::end(digits);
    // Unsigned, because the smallest number has no positive twin.
    auto rest = number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
    do {
        *--first = static_cast<wchar_t>(L'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) *--first = L'-';
    return String(first, std::end(digits));
}

} // namespace kestrel
