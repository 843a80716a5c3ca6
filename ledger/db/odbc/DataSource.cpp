#include "ledger/db/odbc/DataSource.h"

#include <algorithm>
#include <array>
#include <cwctype>

#include "hosts/common/Text.h"
#include "ledger/db/odbc/Handle.h"

namespace ledger {

namespace {

bool IsSame(const std::wstring& left, const std::wstring& right) {
    return std::ranges::equal(left, right,
                              [](wchar_t one, wchar_t other) { return std::towlower(one) == std::towlower(other); });
}

using hosts::Trimmed;

// Where the setting that begins there ends: at a semicolon that stands in no braces.
std::size_t EndOfSetting(const std::wstring& text, std::size_t begin) {
    bool inBraces = false;
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] == L'{') inBraces = true;
        if (text[at] == L'}') inBraces = false;
        if (text[at] == L';' && !inBraces) return at;
    }
    return text.size();
}

std::wstring WithoutBraces(const std::wstring& value) {
    if (value.size() < 2 || value.front() != L'{' || value.back() != L'}') return value;
    return value.substr(1, value.size() - 2);
}

} // namespace

std::wstring SettingOf(const std::wstring& connectionString, const std::wstring& name) {
    for (std::size_t begin = 0; begin < connectionString.size();) {
        const std::size_t end = EndOfSetting(connectionString, begin);
        const std::wstring setting = connectionString.substr(begin, end - begin);
        const std::size_t sign = setting.find(L'=');
        if (sign != std::wstring::npos && IsSame(Trimmed(setting.substr(0, sign)), name))
            return WithoutBraces(Trimmed(setting.substr(sign + 1)));
        begin = end + 1;
    }
    return {};
}

std::wstring DriverOfSource(const std::wstring& source) {
    const Handle environment = NewEnvironment();
    std::array<SQLWCHAR, SQL_MAX_DSN_LENGTH + 1> name{};
    std::array<SQLWCHAR, 256> driver{};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT driverLength = 0;
    for (SQLUSMALLINT which = SQL_FETCH_FIRST;; which = SQL_FETCH_NEXT) {
        const SQLRETURN code =
            SQLDataSourcesW(environment.Get(), which, name.data(), static_cast<SQLSMALLINT>(name.size()), &nameLength,
                            driver.data(), static_cast<SQLSMALLINT>(driver.size()), &driverLength);
        environment.Check(code);
        if (code == SQL_NO_DATA) return {};
        if (IsSame(name.data(), source)) return driver.data();
    }
}

} // namespace ledger
