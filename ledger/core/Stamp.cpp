#include "ledger/core/Stamp.h"

#include <windows.h>

#include <lmcons.h>
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

std::wstring MachineName() {
    std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> machine{};
    auto size = static_cast<DWORD>(machine.size());
    return GetComputerNameW(machine.data(), &size) != 0 ? machine.data() : L"?";
}

std::wstring UserName() {
    std::array<wchar_t, UNLEN + 1> user{};
    auto size = static_cast<DWORD>(user.size());
    return GetUserNameW(user.data(), &size) != 0 ? user.data() : L"?";
}

} // namespace

std::wstring NowText() {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    std::array<wchar_t, 32> text{};
    static_cast<void>(std::swprintf(text.data(), text.size(), L"%04u-%02u-%02uT%02u:%02u:%02uZ", now.wYear, now.wMonth,
                                    now.wDay, now.wHour, now.wMinute, now.wSecond)); // there is room for all of it
    return text.data();
}

std::wstring ThisUser() {
    constexpr std::size_t longest = 80; // what the tables hold
    return (UserName() + L"@" + MachineName()).substr(0, longest);
}

std::wstring ThisProgram() { return MachineName() + L":" + std::to_wstring(GetCurrentProcessId()); }

std::wstring NewTicket() {
    static const std::wstring mark = ProgramMark();
    static unsigned count = 0;
    return mark + L"-" + std::to_wstring(++count);
}

} // namespace ledger
