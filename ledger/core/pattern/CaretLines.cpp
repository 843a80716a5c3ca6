#include "ledger/core/pattern/CaretLines.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

std::vector<std::wstring> CaretLines(std::wstring_view text, std::size_t position) {
    constexpr std::size_t before = 50;
    constexpr std::size_t width = 76;
    const std::size_t begin = position > before ? position - before : 0;
    std::wstring line(text.substr(begin, width));
    // One character each, so that the mark stands where it belongs.
    std::ranges::replace_if(
        line,
        [](wchar_t character) {
            return hosts::HasControl({&character, 1});
        },
        L'?');
    return {line, std::wstring(position - begin, L' ') + L"^"};
}

} // namespace ledger
