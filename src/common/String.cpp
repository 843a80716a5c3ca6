#include "common/String.h"

#include <cstddef>

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

String ToText(std::int64_t number) { return std::to_wstring(number); }

} // namespace kestrel
