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
#include "ledger/core/Ticket.h"

namespace ledger {

namespace {

struct Finding {
    std::size_t line = 0;
    std::wstring code;
    std::wstring kind; // adopted, foreign or duplicate
    std::wstring detail;
};

// Looks at one code after the other; what is stored is decided at the end, all at once.
class Adoption {
  public:
    Adoption(Session& session, const StoredRule& rule, CodeMaker& maker)
        : mvarCodes(session.database, rule.id), mvarMaker(maker) {}

    void Look(std::size_t line, const std::wstring& code, const FieldValues& others) {
        Finding finding{line, code, L"adopted", {}};
        try {
            MadeCode made = mvarMaker.Recognise(code);
            finding.detail = DuplicateOf(made);
            if (finding.detail.empty())
                Take(std::move(made), others);
            else
                finding.kind = L"duplicate";
        } catch (const hosts::RecordError& error) {
            finding.kind = L"foreign";
            finding.detail = hosts::OneLine(error.Message());
        }
        mvarFindings.push_back(std::move(finding));
    }

    [[nodiscard]] std::vector<Finding> Store() {
        mvarCodes.Add(mvarNew, L"adopted");
        return std::move(mvarFindings);
    }

  private:
    std::wstring DuplicateOf(const MadeCode& made) {
        if (mvarSeen.contains(made.code)) return L"stands in the file before";
        if (const auto stored = mvarCodes.Find(made.code)) return L"in the ledger as " + stored->state;
        for (const NumberHeld& number : made.numbers) {
            if (mvarTaken.contains(number)) return L"the file has its number in band " + number.band + L" before";
            if (const auto holder = mvarCodes.Holder(number))
                return *holder + L" has its number in band " + number.band;
        }
        return {};
    }

    void Take(MadeCode made, const FieldValues& others) {
        FieldValues fields = mvarMaker.Values();
        fields.insert(fields.end(), others.begin(), others.end());
        mvarSeen.insert(made.code);
        mvarTaken.insert(made.numbers.begin(), made.numbers.end());
        mvarNew.push_back({std::move(made.code), NewTicket(), JsonText(ToJson(fields)), std::move(made.numbers)});
    }

    Codes mvarCodes;
    CodeMaker& mvarMaker;
    std::set<std::wstring> mvarSeen;
    std::set<NumberHeld> mvarTaken;
    std::vector<NewCode> mvarNew;
    std::vector<Finding> mvarFindings;
};

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

std::vector<Finding> AdoptAll(Session& session, const StoredRule& rule, CodeMaker& maker, const hosts::CsvTable& table,
                              std::size_t column) {
    Rules(session.database).Enter(rule);
    Adoption adoption(session, rule, maker);
    Progress progress(table.records.size());
    for (const hosts::CsvRecord& record : table.records) {
        FieldValues values = PairFields(table.columns, record);
        const std::wstring code = values[column].second;
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(column));
        adoption.Look(record.line, code, values);
        progress.Advance(1);
    }
    return adoption.Store();
}

std::int64_t CountOf(const std::vector<Finding>& findings, const wchar_t* kind) {
    return std::ranges::count(findings, kind, &Finding::kind);
}

void Print(const Session& session, const Finding& finding) {
    if (session.output.IsJson())
        hosts::PrintLine(JsonText({{"line", finding.line},
                                   {"code", ToJson(finding.code)},
                                   {"result", ToJson(finding.kind)},
                                   {"detail", ToJson(finding.detail)}}));
    else if (finding.kind != L"adopted")
        hosts::PrintLine(L"line " + std::to_wstring(finding.line) + L": " + finding.kind + L": " + finding.code +
                         L" (" + finding.detail + L")");
}

} // namespace

int AdoptCodes(Session& session, const AdoptOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition);
    const hosts::CsvTable table =
        hosts::ParseCsv(hosts::ReadTextFile(options.file, options.codePage), options.separator);
    const std::size_t column = CodeColumn(table, options.column);
    CheckRecords(table);
    const auto findings = InTransaction(session.database, session.patience, OnUniqueKey::Retry,
                                        [&] { return AdoptAll(session, rule, maker, table, column); });
    for (const Finding& finding : findings)
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
