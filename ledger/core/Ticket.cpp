#include "ledger/core/Ticket.h"

#include <windows.h>

#include <objbase.h>

#include <array>
#include <cwchar>

namespace ledger {

namespace {

std::wstring ProgramMark() {
    GUID guid{};
    if (FAILED(CoCreateGuid(&guid))) return std::to_wstring(GetCurrentProcessId());
    std::array<wchar_t, 40> text{};
    // There is room for all of it.
    static_cast<void>(std::swprintf(text.data(), text.size(), L"%08lx%04x%04x", static_cast<unsigned long>(guid.Data1),
                                    guid.Data2, guid.Data3));
    std::wstring mark = text.data();
    for (const unsigned char byte : guid.Data4) {
        static_cast<void>(std::swprintf(text.data(), text.size(), L"%02x", static_cast<unsigned>(byte)));
        mark += text.data();
    }
    return mark.substr(0, 24);
}

} // namespace

std::wstring NewTicket() {
    static const std::wstring mark = ProgramMark();
    static unsigned count = 0;
    return mark + L"-" + std::to_wstring(++count);
}

} // namespace ledger
