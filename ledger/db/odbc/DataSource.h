// Data sources: connections that the system's ODBC settings keep under a name.
#pragma once

#include <string>

namespace ledger {

// The value of a setting in a connection string, without its braces; empty when there is none.
[[nodiscard]] std::wstring SettingOf(const std::wstring& connectionString, const std::wstring& name);

// The driver of the data source, as the settings name it; empty when they know no such source. Fails with DbError.
[[nodiscard]] std::wstring DriverOfSource(const std::wstring& source);

} // namespace ledger
