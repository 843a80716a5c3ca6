#include "ledger/db/odbc/Engine.h"

#include <algorithm>
#include <cwctype>

#include "ledger/db/odbc/DataSource.h"

namespace ledger {

namespace {

struct DriverName {
    const wchar_t* part;
    const OdbcEngine& (*engine)();
};

const DriverName DriverNames[] = {
    {L"postgresql", Postgres}, {L"psqlodbc", Postgres}, {L"maodbc", MariaDb},
    {L"mariadb", MariaDb},     {L"mysql", MariaDb},
};

// Drivers report an ended connection under the general state as well.
const wchar_t* const LostTexts[] = {L"connection has been lost",
                                    L"server closed the connection",
                                    L"no connection to the server",
                                    L"connection dead",
                                    L"gone away",
                                    L"Lost connection"};

// Trying again later would bring the same answer.
const wchar_t* const RefusedTexts[] = {L"authentication failed", L"does not exist", L"no pg_hba.conf entry",
                                       L"Access denied", L"Unknown database"};

template <class Texts>
bool ContainsAny(const std::wstring& text, const Texts& parts) {
    return std::ranges::any_of(parts, [&text](const wchar_t* part) { return text.find(part) != std::wstring::npos; });
}

} // namespace

bool Names(const std::wstring& text, const std::wstring& name) {
    const auto same = [](wchar_t left, wchar_t right) { return std::towlower(left) == std::towlower(right); };
    return std::search(text.begin(), text.end(), name.begin(), name.end(), same) != text.end();
}

const OdbcEngine* EngineOf(const std::wstring& connectionString) {
    std::wstring driver = SettingOf(connectionString, L"Driver");
    if (driver.empty())
        if (const std::wstring source = SettingOf(connectionString, L"DSN"); !source.empty())
            driver = DriverOfSource(source);
    const auto* found =
        std::ranges::find_if(DriverNames, [&driver](const DriverName& name) { return Names(driver, name.part); });
    return found == std::end(DriverNames) ? nullptr : &found->engine();
}

std::wstring WithSetting(const std::wstring& connectionString, const std::wstring& name, const std::wstring& value) {
    if (Names(connectionString, name + L"=")) return connectionString;
    return connectionString + (connectionString.ends_with(L';') ? L"" : L";") + name + L"=" + value;
}

std::wstring ValueOf(const std::wstring& connectionString, const std::wstring& name) {
    std::size_t begin = 0;
    while (begin < connectionString.size()) {
        const bool braced = connectionString.find(L'{', begin) < connectionString.find(L';', begin);
        const std::size_t close = braced ? connectionString.find(L'}', begin) : begin;
        const std::size_t end = std::min(connectionString.find(L';', close), connectionString.size());
        const std::wstring setting = connectionString.substr(begin, end - begin);
        if (const std::size_t equals = setting.find(L'=');
            equals == name.size() && Names(setting.substr(0, equals), name))
            return setting.substr(equals + 1);
        begin = end + 1;
    }
    return {};
}

Fault FaultOfDriver(const std::wstring& state, const std::wstring& text) {
    const bool connecting = state.starts_with(L"08") || state.starts_with(L"28") || state.starts_with(L"3D");
    if (connecting && ContainsAny(text, RefusedTexts)) return Fault::Refused;
    if (state.starts_with(L"08") || ContainsAny(text, LostTexts)) return Fault::Lost;
    return Fault::Other;
}

} // namespace ledger
