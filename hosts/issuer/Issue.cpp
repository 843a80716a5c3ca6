#include "hosts/issuer/Issue.h"

#include <algorithm>

#include "hosts/common/Console.h"
#include "hosts/common/Csv.h"
#include "hosts/common/TextFile.h"
#include "hosts/issuer/IssuedCodes.h"

namespace hosts {

namespace {

constexpr int SomeRefused = 3;

IssuedCodes OpenCodes(const CommandLine& line) {
    return line.codesPath.empty() ? IssuedCodes() : IssuedCodes(line.codesPath);
}

void AnswerFrom(Rule& rule, const IssuedCodes& codes) {
    rule.OnLastCode([&codes](const std::wstring& pattern) { return codes.LastMatching(pattern); });
}

std::wstring Listed(const std::vector<std::wstring>& names) {
    std::wstring text;
    for (const std::wstring& name : names)
        text += (text.empty() ? L"" : L", ") + name;
    return text.empty() ? L"none" : text;
}

// A record of another value count than the header has would put values into wrong fields.
void SetValues(Rule& rule, const std::vector<std::wstring>& columns, const CsvRecord& record) {
    if (record.fields.size() != columns.size())
        throw RecordError(std::to_wstring(record.fields.size()) + L" fields where the first line names " +
                          std::to_wstring(columns.size()));
    for (std::size_t column = 0; column < columns.size(); ++column)
        if (rule.Knows(columns[column])) rule.SetValue(columns[column], record.fields[column]);
}

std::wstring IssueOne(Rule& rule, IssuedCodes& codes, const std::vector<std::wstring>& columns,
                      const CsvRecord& record) {
    SetValues(rule, columns, record);
    std::wstring code = rule.NextCode();
    if (codes.Contains(code)) throw RecordError(L"code " + code + L" was issued before and no band numbers it on");
    codes.Add(code);
    return code;
}

std::wstring CodeAndRecord(std::wstring code, const CsvRecord& record) {
    for (const std::wstring& field : record.fields)
        code += L'\t' + field;
    return code;
}

} // namespace

int IssueRecords(Rule& rule, const CommandLine& line) {
    const CsvTable table = ParseCsv(ReadTextFile(line.subject));
    if (std::ranges::none_of(table.columns, [&rule](const std::wstring& name) { return rule.Knows(name); }))
        throw HostError(L"no column is named like a field or macro of the rule (" + Listed(rule.Names()) + L")");
    IssuedCodes codes = OpenCodes(line);
    AnswerFrom(rule, codes);
    std::size_t refused = 0;
    for (const CsvRecord& record : table.records) {
        try {
            PrintLine(CodeAndRecord(IssueOne(rule, codes, table.columns, record), record));
        } catch (const RecordError& error) {
            ++refused;
            ReportLine(L"line " + std::to_wstring(record.line) + L": " + OneLine(error.Message()));
        }
    }
    ReportLine(std::to_wstring(table.records.size() - refused) + L" codes issued, " + std::to_wstring(refused) +
               L" records refused");
    return refused == 0 ? 0 : SomeRefused;
}

int PreviewCode(Rule& rule, const CommandLine& line) {
    for (const auto& [name, value] : line.values) {
        if (!rule.Knows(name))
            throw HostError(L"the rule has no field or macro \"" + name + L"\"; it has " + Listed(rule.Names()));
        rule.SetValue(name, value);
    }
    const IssuedCodes codes = OpenCodes(line);
    AnswerFrom(rule, codes);
    PrintLine(rule.NextCode());
    return 0;
}

int ExplainCode(Rule& rule, const CommandLine& line) {
    rule.TakeApart(line.subject);
    for (const std::wstring& name : rule.Names())
        PrintLine(name + L"\t" + rule.Value(name));
    for (const Band& band : rule.Bands())
        PrintLine(L"[" + band.name + L"]\t" + rule.BandValue(band.name));
    return 0;
}

} // namespace hosts
