#include "ledger/cli/IssueLines.h"

#include <algorithm>
#include <memory>

#include "hosts/common/Text.h"
#include "ledger/cli/PlainList.h"

namespace ledger {

namespace {

constexpr std::size_t LongestKey = 120;

void CheckKey(const std::wstring& key) {
    if (key.empty()) throw hosts::RecordError(L"the key is empty; every record needs one of its own");
    if (key.size() > LongestKey)
        throw hosts::RecordError(L"the key is " + std::to_wstring(key.size()) +
                                 L" characters long; the ledger keeps up to " + std::to_wstring(LongestKey));
    if (hosts::HasControl(key)) throw hosts::RecordError(L"the key has a control character in it");
    RefuseUnfit({{L"key", key}});
}

IssueLine OneLine(const FieldNames& known, const IssueOptions& options) {
    IssueLine line{1, ParseFields(known, options.fields), options.key, !options.key.empty(), {}};
    if (line.isGiven) CheckKey(line.key);
    RefuseUnfit(line.values);
    return line;
}

IssueLine LineOf(const std::vector<std::wstring>& columns, const hosts::CsvRecord& record, const FieldValues& given,
                 const std::wstring& keyColumn, bool keepsKey) {
    IssueLine line{record.line, given, {}, !keyColumn.empty(), {}};
    try {
        std::ranges::move(PairFields(columns, record), std::back_inserter(line.values));
        RefuseUnfit(line.values);
        if (!line.isGiven) return line;
        line.key = std::ranges::find(line.values, keyColumn, &FieldValues::value_type::first)->second;
        CheckKey(line.key);
        // The same request can be made without the file.
        if (!keepsKey) std::erase_if(line.values, [&](const auto& field) { return field.first == keyColumn; });
    } catch (const hosts::RecordError& error) {
        line.refusal = error.Message();
    }
    return line;
}

// What stands in the lines of a list is kept with their codes.
IssueLine LineOf(const PlainEntry& entry, const FieldValues& given) {
    IssueLine line{entry.line, given, {}, false, {}};
    line.values.emplace_back(EntryName, entry.text);
    if (!hosts::IsWhole(entry.text)) line.refusal = L"the line has a NUL or half a surrogate pair in it";
    return line;
}

void CheckRecordColumns(const FieldNames& known, const IssueOptions& options, std::vector<std::wstring> columns) {
    if (!options.keyColumn.empty() && std::erase(columns, options.keyColumn) == 0)
        throw hosts::HostError(L"the file has no column \"" + options.keyColumn + L"\"; check --key-column");
    CheckColumns(known, columns, options.keepOtherColumns);
    for (const auto& [name, value] : ParseFields(known, options.fields))
        if (std::ranges::find(columns, name) != columns.end())
            throw hosts::HostError(L"field " + name + L" stands in the file and in --field; leave one of them out");
}

} // namespace

IssueLines::IssueLines(const FieldNames& known, const IssueOptions& options) {
    if (options.file.empty()) {
        mvarCount = options.count;
        mvarReader = Repetition(known, options);
        return;
    }
    mvarSource.emplace(options.file, options.codePage);
    mvarIsList = options.keyColumn.empty() && !options.keepOtherColumns &&
                 IsPlainList(known, PlainReader(Pieces()).Next(), options);
    mvarSource->Rewind();
    for (const Reader read = ReaderOf(known, options); read();)
        ++mvarCount;
    mvarSource->Rewind();
    mvarReader = ReaderOf(known, options);
}

hosts::CsvReader::Pieces IssueLines::Pieces() {
    return [this] { return mvarSource->Next(); };
}

IssueLines::Reader IssueLines::Repetition(const FieldNames& known, const IssueOptions& options) {
    return [line = OneLine(known, options), number = std::size_t{0}]() mutable -> std::optional<IssueLine> {
        line.number = ++number;
        return line;
    };
}

IssueLines::Reader IssueLines::ReaderOf(const FieldNames& known, const IssueOptions& options) {
    const FieldValues given = ParseFields(known, options.fields);
    return mvarIsList ? ListReader(given) : RecordReader(known, options, given);
}

IssueLines::Reader IssueLines::ListReader(const FieldValues& given) {
    return [given, entries = PlainReader(Pieces())]() mutable -> std::optional<IssueLine> {
        const std::optional<PlainEntry> entry = entries.Next();
        return entry ? std::optional(LineOf(*entry, given)) : std::nullopt;
    };
}

IssueLines::Reader IssueLines::RecordReader(const FieldNames& known, const IssueOptions& options,
                                            const FieldValues& given) {
    hosts::CsvReader records(Pieces(), options.separator);
    CheckRecordColumns(known, options, records.Columns());
    const bool keepsKey = options.keepOtherColumns || known.Knows(options.keyColumn);
    return [given, keepsKey, key = options.keyColumn, records = std::move(records)]() mutable {
        const std::optional<hosts::CsvRecord> record = records.Next();
        return record ? std::optional(LineOf(records.Columns(), *record, given, key, keepsKey)) : std::nullopt;
    };
}

std::vector<IssueLine> IssueLines::Next(std::size_t most) {
    std::vector<IssueLine> lines;
    for (most = std::min(most, mvarCount - mvarGiven); lines.size() < most; ++mvarGiven) {
        std::optional<IssueLine> line = mvarReader();
        if (!line) throw hosts::HostError(L"the file became shorter while it was read");
        lines.push_back(*std::move(line));
    }
    return lines;
}

} // namespace ledger
