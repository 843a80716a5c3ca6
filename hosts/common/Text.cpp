#include "hosts/common/Text.h"

namespace hosts {

std::wstring OneLine(std::wstring_view message) {
    std::wstring line;
    bool pending = false;
    for (const wchar_t character : message) {
        const bool isBreak = character == L'\r' || character == L'\n';
        if (!isBreak && pending && !line.empty()) line += L"; ";
        if (!isBreak) line.push_back(character);
        pending = isBreak;
    }
    return line;
}

} // namespace hosts
