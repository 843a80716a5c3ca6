// Records from comma-separated values: a line of column names, then one record each. A field in quotes may hold the
// separator, doubled quotes and line breaks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace hosts {

struct CsvRecord {
    std::size_t line = 0; // 1-based, where the record begins
    std::vector<std::wstring> fields;
};

struct CsvTable {
    std::vector<std::wstring> columns; // trimmed, none empty, none twice
    std::vector<CsvRecord> records;    // as many fields as their line has; empty lines are no records
};

// Fails with HostError, naming the line, on a text without a line of column names, an empty or repeated column name, a
// quote that is never closed, and text beside a closed quote.
[[nodiscard]] CsvTable ParseCsv(std::wstring_view text, wchar_t separator = L',');

} // namespace hosts
