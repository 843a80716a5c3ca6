// adopt: codes that were issued elsewhere
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "hosts/common/Console.h"
#include "hosts/common/Csv.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/cli/Progress.h"
#include "ledger/core/Adoption.h"

namespace ledger {

namespace {

// One word names a file where there is such a file, or where a column is named.
bool NamesFile(const AdoptOptions& options) {
    if (options.what.size() != 1) return false;
    const std::wstring& word = options.what.front();
    std::error_code error;
    return word == L"-" || !options.column.empty() || std::filesystem::exists(word, error);
}

const wchar_t* const CodeName = L"Code"; // of the column, in any letter case

bool IsCodeName(const std::wstring& name) {
    return CompareStringOrdinal(name.c_str(), -1, CodeName, -1, TRUE) == CSTR_EQUAL;
}

// One column that is not named as that of the codes has no name at all: its first line is a code as well.
hosts::CsvTable FileTable(const AdoptOptions& options) {
    hosts::CsvTable table =
        hosts::ParseCsv(hosts::ReadTextFile(options.what.front(), options.codePage), options.separator);
    if (!options.column.empty() || table.columns.size() > 1 || IsCodeName(table.columns.front())) return table;
    table.records.insert(table.records.begin(), {1, table.columns});
    table.columns = {CodeName};
    return table;
}

hosts::CsvTable TableOf(const AdoptOptions& options) {
    if (NamesFile(options)) return FileTable(options);
    if (!options.column.empty()) throw hosts::HostError(L"--column is for a file; name one file, or codes without it");
    hosts::CsvTable table{{CodeName}, {}};
    for (const std::wstring& code : options.what)
        table.records.push_back({table.records.size() + 1, {code}});
    return table;
}

bool IsCode(CodeMaker& maker, const std::wstring& text) {
    try {
        maker.TakeApart(text);
        return true;
    } catch (const hosts::RecordError&) {
        return false;
    }
}

// Without a name the column named Code, or the first one where that is no code itself.
std::size_t CodeColumn(const hosts::CsvTable& table, const std::wstring& name, CodeMaker& maker) {
    const auto isNamed = [&name](const std::wstring& column) {
        return name.empty() ? IsCodeName(column) : column == name;
    };
    const auto found = std::ranges::find_if(table.columns, isNamed);
    if (found == table.columns.end() && name.empty()) {
        if (!IsCode(maker, table.columns.front())) return 0;
        throw hosts::HostError(L"line 1: \"" + table.columns.front() +
                               L"\" is a code of the rule where a line with the columns' names is expected, such as "
                               L"Code,Note; write one above it");
    }
    if (found == table.columns.end())
        throw hosts::HostError(L"the file has no column \"" + name + L"\"; check --column");
    return static_cast<std::size_t>(found - table.columns.begin());
}

// A record with other fields than the first line names would put them into wrong places; nothing is stored then.
void CheckRecords(const hosts::CsvTable& table) {
    for (const hosts::CsvRecord& record : table.records)
        if (record.fields.size() != table.columns.size())
            throw hosts::HostError(L"line " + std::to_wstring(record.line) + L": " +
                                   hosts::Counted(record.fields.size(), L"field") + L" where the first line names " +
                                   std::to_wstring(table.columns.size()));
}

std::vector<ForeignCode> CodesOf(const hosts::CsvTable& table, std::size_t column) {
    std::vector<ForeignCode> codes;
    for (const hosts::CsvRecord& record : table.records) {
        ForeignCode code{record.line, {}, PairFields(table.columns, record)};
        RefuseUnfit(code.others);
        code.code = code.others[column].second;
        code.others.erase(code.others.begin() + static_cast<std::ptrdiff_t>(column));
        codes.push_back(std::move(code));
    }
    return codes;
}

std::int64_t CountOf(const std::vector<AdoptionFinding>& findings, const wchar_t* kind) {
    return std::ranges::count(findings, kind, &AdoptionFinding::kind);
}

void Print(const Session& session, const AdoptionFinding& finding) {
    if (session.output.IsJson())
        hosts::PrintLine(JsonText({{"line", finding.line},
                                   {"code", ToJson(finding.code)},
                                   {"result", ToJson(finding.kind)},
                                   {"detail", ToJson(finding.detail)}}));
    else if (finding.kind != L"adopted")
        hosts::PrintLine(L"line " + std::to_wstring(finding.line) + L": " + finding.kind + L": " +
                         hosts::Shown(finding.code) + L" (" + finding.detail + L")");
}

} // namespace

int AdoptCodes(Session& session, const AdoptOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    RefuseRetired(rule.settings, rule.name);
    CodeMaker maker(rule.definition.text, rule.settings);
    const hosts::CsvTable table = TableOf(options);
    const std::size_t column = CodeColumn(table, options.column, maker);
    CheckRecords(table);
    const std::vector<ForeignCode> codes = CodesOf(table, column);
    Progress progress(codes.size());
    const auto findings =
        Adopt(session.database, session.patience, rule, maker, codes, [&progress] { progress.Advance(1); });
    for (const AdoptionFinding& finding : findings)
        Print(session, finding);
    const std::int64_t adopted = CountOf(findings, L"adopted");
    const std::int64_t foreign = CountOf(findings, L"foreign");
    if (foreign > 0 && options.what.size() == 1 && !NamesFile(options))
        session.output.Note(L"there is no file \"" + options.what.front() + L"\" either");
    const std::int64_t duplicate = CountOf(findings, L"duplicate");
    session.output.Line(hosts::Counted(adopted, L"code") + L" adopted, " + std::to_wstring(foreign) + L" foreign, " +
                            std::to_wstring(duplicate) + L" duplicate",
                        {{"adopted", adopted}, {"foreign", foreign}, {"duplicate", duplicate}});
    return foreign + duplicate == 0 ? ExitDone : ExitSomeRefused;
}

} // namespace ledger
