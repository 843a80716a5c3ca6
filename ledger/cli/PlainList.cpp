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

std::optional<std::wstring> PlainReader::Line() {
    std::wstring line;
    bool isAny = false;
    for (;;) {
        if (mvarAt == mvarPiece.size()) {
            mvarPiece = mvarPieces();
            mvarAt = 0;
            if (mvarPiece.empty()) return isAny ? std::optional(line) : std::nullopt;
        }
        isAny = true;
        const std::size_t end = mvarPiece.find(L'\n', mvarAt);
        line.append(mvarPiece, mvarAt, std::min(end, mvarPiece.size()) - mvarAt);
        mvarAt = end == std::wstring::npos ? mvarPiece.size() : end + 1;
        if (end != std::wstring::npos) return line;
    }
}

std::optional<PlainEntry> PlainReader::Next() {
    while (std::optional<std::wstring> line = Line()) {
        ++mvarLine;
        if (line->ends_with(L'\r')) line->pop_back();
        if (!line->empty()) return PlainEntry{mvarLine, *std::move(line)};
    }
    return std::nullopt;
}

bool IsPlainList(const FieldNames& known, const std::optional<PlainEntry>& first, const IssueOptions& options) {
    if (known.Knows(EntryName)) return false;
    const auto given = [&options](const std::wstring& name) { return IsGiven(name, options); };
    if (!std::ranges::all_of(known.Needed(), given)) return false;
    return !first || !NamesColumns(known, first->text, options.separator);
}

} // namespace ledger
