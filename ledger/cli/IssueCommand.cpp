// issue: codes for one record or many
#include <algorithm>
#include <chrono>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/cli/Progress.h"
#include "ledger/core/Issuer.h"

namespace ledger {

namespace {

struct Line {
    std::size_t number = 0;
    FieldValues values;
    std::wstring refusal; // why it cannot even be tried
};

struct Totals {
    std::size_t issued = 0;
    std::size_t refused = 0;
};

std::vector<Line> ReadLines(const CodeMaker& maker, const IssueOptions& options) {
    if (options.file.empty()) return {{1, ParseFields(maker, options.fields), {}}};
    const hosts::CsvTable table =
        hosts::ParseCsv(hosts::ReadTextFile(options.file, options.codePage), options.separator);
    CheckColumns(maker, table.columns, options.keepOtherColumns);
    const FieldValues given = ParseFields(maker, options.fields);
    std::vector<Line> lines;
    for (const hosts::CsvRecord& record : table.records) {
        Line line{record.line, given, {}};
        try {
            std::ranges::move(PairFields(table.columns, record), std::back_inserter(line.values));
        } catch (const hosts::RecordError& error) {
            line.refusal = error.Message();
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

void PrintIssued(const Session& session, const Line& line, const std::wstring& code) {
    std::wstring plain = code;
    for (const auto& [name, value] : line.values)
        plain += L'\t' + value;
    session.output.Line(plain, {{"code", ToJson(code)}, {"line", line.number}, {"fields", ToJson(line.values)}});
}

void PrintRefused(const Session& session, const Line& line, const std::wstring& refusal) {
    const std::wstring text = hosts::OneLine(refusal);
    if (session.output.IsJson())
        hosts::PrintLine(JsonText({{"line", line.number}, {"refused", ToJson(text)}}));
    else
        hosts::ReportLine(L"line " + std::to_wstring(line.number) + L": " + text);
}

void Print(const Session& session, const Line& line, const Outcome& outcome, Totals& totals) {
    if (outcome.code.empty()) {
        ++totals.refused;
        PrintRefused(session, line, outcome.refusal);
    } else {
        ++totals.issued;
        PrintIssued(session, line, outcome.code);
    }
}

// Returns what is left of the issuer's leases, also when the command fails; then nothing more can be done about them.
class Finisher {
  public:
    explicit Finisher(Issuer& issuer) : mvarIssuer(issuer) {}
    Finisher(const Finisher&) = delete; // finishes once
    Finisher& operator=(const Finisher&) = delete;
    ~Finisher() {
        try {
            mvarIssuer.Finish();
        } catch (const std::exception&) { // the leases stay open and the audit shows them
        }
    }

  private:
    Issuer& mvarIssuer;
};

Totals IssueLines(const Session& session, const CodeMaker& maker, Issuer& issuer, std::vector<Line>& lines) {
    const Finisher finisher(issuer);
    Progress progress(lines.size());
    Totals totals;
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = std::min(begin + issuer.BatchSize(), lines.size());
        std::vector<Request> requests;
        for (std::size_t at = begin; at < end; ++at)
            if (lines[at].refusal.empty())
                requests.push_back({KnownTo(maker, lines[at].values), JsonText(ToJson(lines[at].values))});
        const std::vector<Outcome> outcomes = issuer.Issue(requests, lines.size() - end);
        auto outcome = outcomes.begin();
        for (std::size_t at = begin; at < end; ++at)
            Print(session, lines[at], lines[at].refusal.empty() ? *outcome++ : Outcome{{}, lines[at].refusal}, totals);
        hosts::FlushOut();
        progress.Advance(end - begin);
        begin = end;
    }
    return totals;
}

void PrintSummary(const Session& session, const Totals& totals, double seconds) {
    const auto perSecond = static_cast<std::size_t>(static_cast<double>(totals.issued) / std::max(seconds, 0.001));
    session.output.Note(std::to_wstring(totals.issued) + L" codes issued, " + std::to_wstring(totals.refused) +
                        L" records refused, " + std::to_wstring(perSecond) + L" codes per second");
    if (session.output.IsJson())
        hosts::PrintLine(JsonText({{"issued", totals.issued}, {"refused", totals.refused}, {"seconds", seconds}}));
}

} // namespace

int IssueCodes(Session& session, const IssueOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition);
    std::vector<Line> lines = ReadLines(maker, options);
    const auto issuer = MakeIssuer({session.database, rule, maker, session.patience});
    const auto begin = std::chrono::steady_clock::now();
    const Totals totals = IssueLines(session, maker, *issuer, lines);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    if (!options.file.empty()) PrintSummary(session, totals, seconds.count());
    if (totals.refused == 0) return ExitDone;
    return totals.issued == 0 && options.file.empty() ? ExitFailed : ExitSomeRefused;
}

} // namespace ledger
