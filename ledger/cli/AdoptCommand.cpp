// adopt: codes that were issued elsewhere
#include <algorithm>
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

std::size_t CodeColumn(const hosts::CsvTable& table, const std::wstring& name) {
    if (name.empty()) return 0;
    const auto found = std::ranges::find(table.columns, name);
    if (found == table.columns.end())
        throw hosts::HostError(L"the file has no column \"" + name + L"\"; check --column");
    return static_cast<std::size_t>(found - table.columns.begin());
}

// A record with other fields than the first line names would put them into wrong places; nothing is stored then.
void CheckRecords(const hosts::CsvTable& table) {
    for (const hosts::CsvRecord& record : table.records)
        if (record.fields.size() != table.columns.size())
            throw hosts::HostError(L"line " + std::to_wstring(record.line) + L": " +
                                   std::to_wstring(record.fields.size()) + L" fields where the first line names " +
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
    CodeMaker maker(rule.definition.text);
    const hosts::CsvTable table =
        hosts::ParseCsv(hosts::ReadTextFile(options.file, options.codePage), options.separator);
    const std::size_t column = CodeColumn(table, options.column);
    CheckRecords(table);
    const std::vector<ForeignCode> codes = CodesOf(table, column);
    Progress progress(codes.size());
    const auto findings =
        Adopt(session.database, session.patience, rule, maker, codes, [&progress] { progress.Advance(1); });
    for (const AdoptionFinding& finding : findings)
        Print(session, finding);
    const std::int64_t adopted = CountOf(findings, L"adopted");
    const std::int64_t foreign = CountOf(findings, L"foreign");
    const std::int64_t duplicate = CountOf(findings, L"duplicate");
    session.output.Line(std::to_wstring(adopted) + L" codes adopted, " + std::to_wstring(foreign) + L" foreign, " +
                            std::to_wstring(duplicate) + L" duplicate",
                        {{"adopted", adopted}, {"foreign", foreign}, {"duplicate", duplicate}});
    return foreign + duplicate == 0 ? ExitDone : ExitSomeRefused;
}

} // namespace ledger
