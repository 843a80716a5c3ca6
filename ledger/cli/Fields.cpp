#include "ledger/cli/Fields.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

namespace {

using hosts::HostError;

std::wstring NamesText(const FieldNames& known) {
    std::wstring text;
    for (const std::wstring& name : known.All())
        text += (text.empty() ? L"" : L", ") + name;
    return text.empty() ? L"none" : text;
}

[[noreturn]] void RefuseTwice(const std::wstring& name, const std::wstring& before, const std::wstring& value) {
    throw HostError(L"field \"" + name + L"\" is given twice, as \"" + before + L"\" and as \"" + value +
                    L"\"; give it once");
}

} // namespace

FieldNames::FieldNames(const CodeMaker& maker) : mvarNames(maker.Rule().Names()), mvarNeeded(maker.Needed()) {
    if (maker.Settings().series.empty()) return;
    Add({maker.Settings().series});
    mvarNeeded.push_back(maker.Settings().series);
}

void FieldNames::Add(const std::vector<std::wstring>& names) {
    for (const std::wstring& name : names)
        if (!Knows(name)) mvarNames.push_back(name);
}

bool FieldNames::Knows(const std::wstring& name) const { return std::ranges::find(mvarNames, name) != mvarNames.end(); }

FieldValues ParseFields(const FieldNames& known, const std::vector<std::wstring>& texts) {
    FieldValues values;
    for (const std::wstring& text : texts) {
        const std::size_t equals = text.find(L'=');
        if (equals == std::wstring::npos) throw HostError(L"\"" + text + L"\" is no field; write Name=Value");
        const std::wstring name = text.substr(0, equals);
        if (!known.Knows(name))
            throw HostError(L"the rule has no field or macro \"" + name + L"\"; it has: " + NamesText(known));
        const std::wstring value = text.substr(equals + 1);
        if (const auto before = std::ranges::find(values, name, &FieldValues::value_type::first);
            before != values.end())
            RefuseTwice(name, before->second, value);
        values.emplace_back(name, value);
    }
    return values;
}

void CheckColumns(const FieldNames& known, const std::vector<std::wstring>& columns, bool keepOthers) {
    const auto isKnown = [&known](const std::wstring& name) { return known.Knows(name); };
    if (std::ranges::none_of(columns, isKnown))
        throw HostError(L"no column is named like a field or macro of the rule (" + NamesText(known) +
                        L"); check the first line and --separator");
    const auto other = std::ranges::find_if_not(columns, isKnown);
    if (keepOthers || other == columns.end()) return;
    throw HostError(L"the rule has no field or macro \"" + *other + L"\"; rename the column (the rule has: " +
                    NamesText(known) + L") or keep such columns beside the codes with --keep");
}

FieldValues PairFields(const std::vector<std::wstring>& columns, const hosts::CsvRecord& record) {
    if (record.fields.size() != columns.size())
        throw hosts::RecordError(hosts::Counted(record.fields.size(), L"field") + L" where the first line names " +
                                 std::to_wstring(columns.size()));
    FieldValues values;
    for (std::size_t column = 0; column < columns.size(); ++column)
        values.emplace_back(columns[column], record.fields[column]);
    return values;
}

void RefuseUnfit(const FieldValues& values) {
    for (const auto& [name, value] : values)
        if (!hosts::IsWhole(value))
            throw hosts::RecordError(L"the value of " + name +
                                     L" has a NUL or half a surrogate pair in it; give it without");
}

void UseDateFormat(CodeMaker& maker, const std::wstring& pattern) {
    if (!pattern.empty()) maker.SetDateFormat(DateFormat(pattern));
}

FieldValues KnownTo(const FieldNames& known, const FieldValues& values) {
    FieldValues taken;
    std::ranges::copy_if(values, std::back_inserter(taken),
                         [&known](const auto& pair) { return known.Knows(pair.first); });
    return taken;
}

} // namespace ledger
