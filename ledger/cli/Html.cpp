#include "ledger/cli/Html.h"

#include "hosts/common/Text.h"

namespace ledger {

std::wstring Escaped(std::wstring_view text) {
    std::wstring escaped;
    for (const wchar_t letter : hosts::Shown(text)) {
        switch (letter) {
        case L'&': escaped += L"&amp;"; break;
        case L'<': escaped += L"&lt;"; break;
        case L'>': escaped += L"&gt;"; break;
        case L'"': escaped += L"&quot;"; break;
        case L'\'': escaped += L"&#39;"; break;
        default: escaped += letter;
        }
    }
    return escaped;
}

std::wstring Grouped(std::int64_t number) {
    std::wstring text = std::to_wstring(number);
    const std::size_t first = text.starts_with(L'-') ? 1 : 0;
    for (std::size_t at = text.size(); at > first + 3;)
        text.insert(at -= 3, 1, L',');
    return text;
}

std::wstring Counted(std::int64_t number, const std::wstring& one, const std::wstring& many) {
    return Grouped(number) + L' ' + (number == 1 ? one : many);
}

} // namespace ledger
