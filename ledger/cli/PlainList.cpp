#include "ledger/cli/PlainList.h"

#include <algorithm>

#include "hosts/common/Csv.h"

namespace ledger {

namespace {

bool IsGiven(const std::wstring& name, const IssueOptions& options) {
    return std::ranges::any_of(options.fields,
                               [&name](const std::wstring& text) { return text.starts_with(name + L'='); });
}

bool NamesColumns(const FieldNames& known, const std::wstring& line, wchar_t separator) {
    try {
        const std::vector<std::wstring> columns = hosts::ParseCsv(line, separator).columns;
        return std::ranges::any_of(columns, [&known](const std::wstring& name) { return known.Knows(name); });
    } catch (const hosts::HostError&) { // no line of column names at all
        return false;
    }
}

} // namespace

bool IsPlainList(const FieldNames& known, const std::wstring& text, const IssueOptions& options) {
    if (known.Knows(EntryName)) return false;
    const auto given = [&options](const std::wstring& name) { return IsGiven(name, options); };
    if (!std::ranges::all_of(known.Needed(), given)) return false;
    const auto entries = EntriesOf(text);
    return entries.empty() || !NamesColumns(known, entries.front().second, options.separator);
}

std::vector<std::pair<std::size_t, std::wstring>> EntriesOf(const std::wstring& text) {
    std::vector<std::pair<std::size_t, std::wstring>> entries;
    std::size_t number = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', at), text.size());
        std::wstring entry = text.substr(at, end - at);
        if (entry.ends_with(L'\r')) entry.pop_back();
        ++number;
        if (!entry.empty()) entries.emplace_back(number, std::move(entry));
        at = end + 1;
    }
    return entries;
}

} // namespace ledger
