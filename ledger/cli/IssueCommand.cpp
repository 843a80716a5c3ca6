// issue: codes for one record or many
#include <algorithm>
#include <chrono>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/TextFile.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/cli/PlainList.h"
#include "ledger/cli/Progress.h"
#include "ledger/cli/RoomWatch.h"
#include "ledger/cli/StopSignal.h"
#include "ledger/core/DryIssuer.h"
#include "ledger/core/Json.h"
#include "ledger/core/NumberingIssuer.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

constexpr std::size_t LongestKey = 120;

struct Line {
    std::size_t number = 0;
    FieldValues values;
    std::wstring key;
    bool isGiven = false; // the key; otherwise it is the ledger's own
    std::wstring refusal; // why it cannot even be tried
};

struct Totals {
    std::size_t issued = 0;
    std::size_t before = 0; // of them, those that had their code already
    std::size_t refused = 0;
};

void CheckKey(const std::wstring& key) {
    if (key.empty()) throw hosts::RecordError(L"the key is empty; every record needs one of its own");
    if (key.size() > LongestKey)
        throw hosts::RecordError(L"the key is " + std::to_wstring(key.size()) +
                                 L" characters long; the ledger keeps up to " + std::to_wstring(LongestKey));
    if (hosts::HasControl(key)) throw hosts::RecordError(L"the key has a control character in it");
    RefuseUnfit({{L"key", key}});
}

std::vector<std::wstring> WithoutKey(std::vector<std::wstring> columns, const std::wstring& keyColumn) {
    std::erase(columns, keyColumn);
    return columns;
}

Line OneLine(const FieldNames& known, const IssueOptions& options) {
    Line line{1, ParseFields(known, options.fields), options.key, !options.key.empty(), {}};
    if (line.isGiven) CheckKey(line.key);
    RefuseUnfit(line.values);
    return line;
}

Line LineOf(const hosts::CsvTable& table, const hosts::CsvRecord& record, const FieldValues& given,
            const std::wstring& keyColumn) {
    Line line{record.line, given, {}, !keyColumn.empty(), {}};
    try {
        std::ranges::move(PairFields(table.columns, record), std::back_inserter(line.values));
        RefuseUnfit(line.values);
        if (!line.isGiven) return line;
        const auto at = std::ranges::find(table.columns, keyColumn) - table.columns.begin();
        line.key = record.fields[static_cast<std::size_t>(at)];
        CheckKey(line.key);
    } catch (const hosts::RecordError& error) {
        line.refusal = error.Message();
    }
    return line;
}

std::vector<Line> Repeated(const Line& line, std::size_t count) {
    std::vector<Line> lines(count, line);
    for (std::size_t at = 0; at < count; ++at)
        lines[at].number = at + 1;
    return lines;
}

// What stands in the lines of a list is kept with their codes.
std::vector<Line> PlainLines(const std::wstring& text, const FieldValues& given) {
    std::vector<Line> lines;
    for (const auto& [number, entry] : EntriesOf(text)) {
        Line line{number, given, {}, false, {}};
        line.values.emplace_back(EntryName, entry);
        if (!hosts::IsWhole(entry)) line.refusal = L"the line has a NUL or half a surrogate pair in it";
        lines.push_back(std::move(line));
    }
    return lines;
}

std::vector<Line> ReadLines(const FieldNames& known, const IssueOptions& options) {
    if (options.file.empty()) return Repeated(OneLine(known, options), options.count);
    const std::wstring text = hosts::ReadTextInput(options.file, options.codePage);
    if (options.keyColumn.empty() && !options.keepOtherColumns && IsPlainList(known, text, options))
        return PlainLines(text, ParseFields(known, options.fields));
    const hosts::CsvTable table = hosts::ParseCsv(text, options.separator);
    if (!options.keyColumn.empty() && std::ranges::find(table.columns, options.keyColumn) == table.columns.end())
        throw hosts::HostError(L"the file has no column \"" + options.keyColumn + L"\"; check --key-column");
    CheckColumns(known, WithoutKey(table.columns, options.keyColumn), options.keepOtherColumns);
    const FieldValues given = ParseFields(known, options.fields);
    std::vector<Line> lines;
    for (const hosts::CsvRecord& record : table.records)
        lines.push_back(LineOf(table, record, given, options.keyColumn));
    return lines;
}

// Issues the lines and shows what became of each; what is stored and could not be shown is named at the end.
class Run {
  public:
    Run(Session& session, const FieldNames& known, Issuer& issuer, std::vector<Line>& lines,
        const IssueOptions& options)
        : mvarSession(session), mvarKnown(known), mvarIssuer(issuer), mvarLines(lines), mvarOptions(options),
          mvarWatch(session.output, options.quiet ? 0 : options.warnPercent) {}

    void Issue() {
        Progress progress(mvarOptions.quiet ? 0 : mvarLines.size());
        for (std::size_t begin = 0; begin < mvarLines.size() && !WasStopped() && !IsFutile();) {
            const std::size_t end = std::min(begin + mvarIssuer.BatchSize(), mvarLines.size());
            const std::vector<Outcome> outcomes = IssueBatch(begin, end);
            Show(begin, outcomes);
            progress.Advance(end - begin);
            begin = end;
            mvarDone = end;
        }
    }

    [[nodiscard]] const Totals& Counted() const noexcept { return mvarTotals; }
    [[nodiscard]] bool IsWhole() const noexcept { return mvarDone == mvarLines.size(); }
    // The one record that wants so many codes was refused, and would be again.
    [[nodiscard]] bool IsFutile() const noexcept { return mvarOptions.count > 1 && mvarTotals.refused > 0; }
    [[nodiscard]] std::size_t Left() const noexcept { return mvarLines.size() - mvarDone; }

  private:
    std::vector<Outcome> IssueBatch(std::size_t begin, std::size_t end) {
        std::vector<Request> requests;
        for (std::size_t at = begin; at < end; ++at) {
            Line& line = mvarLines[at];
            if (!line.refusal.empty()) continue;
            if (!line.isGiven) line.key = NewTicket();
            requests.push_back(
                {KnownTo(mvarKnown, line.values), JsonText(ToJson(line.values)), line.key, line.isGiven});
        }
        std::vector<Outcome> issued;
        try {
            issued = mvarIssuer.Issue(requests, mvarLines.size() - end);
        } catch (...) {
            if (mvarSession.database.IsInDoubt()) NameOpen(begin, end);
            throw;
        }
        std::vector<Outcome> outcomes;
        auto outcome = issued.begin();
        for (std::size_t at = begin; at < end; ++at)
            outcomes.push_back(mvarLines[at].refusal.empty() ? *outcome++ : Outcome{{}, mvarLines[at].refusal, false});
        return outcomes;
    }

    // The server never answered a COMMIT: whether these have codes shows when it is back.
    void NameOpen(std::size_t begin, std::size_t end) const {
        for (std::size_t at = begin; at < end; ++at)
            if (mvarLines[at].refusal.empty())
                hosts::ReportLine(L"line " + std::to_wstring(mvarLines[at].number) +
                                  L": may have a code; find out with: kledger find --ticket \"" + mvarLines[at].key +
                                  L"\"");
    }

    void Show(std::size_t begin, const std::vector<Outcome>& outcomes) {
        try {
            for (std::size_t at = 0; at < outcomes.size(); ++at)
                ShowOne(mvarLines[begin + at], outcomes[at]);
            hosts::FlushOut();
        } catch (const hosts::OutputError&) {
            for (std::size_t at = 0; at < outcomes.size(); ++at)
                if (!outcomes[at].code.empty())
                    hosts::ReportLine(L"line " + std::to_wstring(mvarLines[begin + at].number) + L": code " +
                                      hosts::Shown(outcomes[at].code) +
                                      L" is stored and perhaps not shown; see: kledger find "
                                      L"--ticket \"" +
                                      mvarLines[begin + at].key + L"\"");
            throw;
        }
    }

    void ShowOne(const Line& line, const Outcome& outcome) {
        if (outcome.code.empty()) {
            ++mvarTotals.refused;
            return ShowRefused(line, outcome.refusal);
        }
        ++mvarTotals.issued;
        if (outcome.before) ++mvarTotals.before;
        std::wstring plain = hosts::Shown(outcome.code);
        for (const auto& [name, value] : mvarOptions.quiet ? FieldValues() : line.values)
            plain += L'\t' + hosts::Shown(value);
        Json json = {{"code", ToJson(outcome.code)}, {"line", line.number}, {"fields", ToJson(line.values)}};
        if (line.isGiven) json["key"] = ToJson(line.key);
        if (outcome.before) json["before"] = true;
        if (mvarOptions.dryRun) json["dryRun"] = true;
        mvarSession.output.Line(plain, json);
        mvarWatch.Look(outcome.rooms);
        if (outcome.before && !mvarSession.output.IsJson() && !mvarOptions.quiet)
            hosts::ReportLine(L"line " + std::to_wstring(line.number) + L": code " + hosts::Shown(outcome.code) +
                              L" was issued before for key \"" + line.key + L"\"");
    }

    void ShowRefused(const Line& line, const std::wstring& refusal) const {
        const std::wstring text = hosts::Shown(hosts::OneLine(refusal));
        if (mvarSession.output.IsJson())
            hosts::PrintLine(JsonText({{"line", line.number}, {"refused", ToJson(text)}}));
        else
            hosts::ReportLine(L"line " + std::to_wstring(line.number) + L": " + text);
    }

    Session& mvarSession;
    const FieldNames& mvarKnown;
    Issuer& mvarIssuer;
    std::vector<Line>& mvarLines;
    const IssueOptions& mvarOptions;
    RoomWatch mvarWatch;
    Totals mvarTotals;
    std::size_t mvarDone = 0; // lines, those refused included
};

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

void PrintSummary(const Session& session, const IssueOptions& options, const Totals& totals, double seconds) {
    if (options.quiet) return;
    if (options.dryRun) session.output.Note(L"a dry run: nothing was stored");
    if (options.file.empty() && options.count == 1) return;
    const auto perSecond = static_cast<std::size_t>(static_cast<double>(totals.issued) / std::max(seconds, 0.001));
    session.output.Note(
        std::to_wstring(totals.issued) + L" codes issued" +
        (totals.before > 0 ? L" (" + std::to_wstring(totals.before) + L" of them before)" : std::wstring()) + L", " +
        std::to_wstring(totals.refused) + L" records refused, " + std::to_wstring(perSecond) + L" codes per second");
    if (session.output.IsJson())
        hosts::PrintLine(JsonText(
            {{"issued", totals.issued}, {"before", totals.before}, {"refused", totals.refused}, {"seconds", seconds}}));
}

// Whoever wants no gaps should know when the database can lose what it has promised.
void WarnOfLostCommits(Session& session) {
    const std::vector<EngineFact> facts =
        InSnapshot(session.database, session.patience, [&session] { return session.database.Facts(); });
    for (const EngineFact& fact : facts)
        if (fact.losesCommits) hosts::ReportLine(L"kledger: gapless is not sure here: " + fact.warning);
}

// What issues the codes: one rule, or the rules of a numbering.
struct Front {
    StoredRule rule;
    std::unique_ptr<CodeMaker> maker;
    std::unique_ptr<FieldNames> known;
    std::unique_ptr<Issuer> issuer;
};

std::vector<StoredRule> AllRules(Session& session) {
    return InSnapshot(session.database, session.patience, [&] { return Rules(session.database).All(); });
}

Front FrontOf(Session& session, Numbering numbering, const IssueOptions& options) {
    const std::vector<StoredRule> rules = AllRules(session);
    Front front;
    for (const NumberingPart& part : numbering.parts) {
        const auto rule = std::ranges::find(rules, part.rule, &StoredRule::id);
        if (rule == rules.end()) continue;
        const CodeMaker maker(rule->definition.text, rule->settings);
        if (!front.known) front.known = std::make_unique<FieldNames>(maker);
        front.known->Add(FieldNames(maker).All());
        if (front.rule.id == 0 || rule->policy == Policy::Gapless) front.rule = *rule;
    }
    if (front.known) front.known->Add(numbering.fields);
    const DateFormat dates = options.dateFormat.empty() ? DateFormat() : DateFormat(options.dateFormat);
    front.issuer = std::make_unique<NumberingIssuer>(session.database, session.patience, std::move(numbering), rules,
                                                     dates, options.dryRun);
    return front;
}

Front FrontOf(Session& session, const IssueOptions& options) {
    if (auto numbering = FindNumbering(session, options.rule)) return FrontOf(session, *std::move(numbering), options);
    Front front;
    front.rule = ResolveRule(session, options.rule);
    front.maker = std::make_unique<CodeMaker>(front.rule.definition.text, front.rule.settings);
    UseDateFormat(*front.maker, options.dateFormat);
    front.known = std::make_unique<FieldNames>(*front.maker);
    return front;
}

} // namespace

int IssueCodes(Session& session, const IssueOptions& options) {
    if (!options.key.empty() && !options.file.empty())
        throw hosts::HostError(L"--key is for one record; name the column with the keys of a file with --key-column");
    if (!options.keyColumn.empty() && options.file.empty())
        throw hosts::HostError(L"--key-column is for a file; give the key of one record with --key");
    if (options.count > 1 && (!options.file.empty() || !options.key.empty()))
        throw hosts::HostError(
            L"--count is for codes of one record without a key: a key has one code, and a file has a "
            L"record for each");
    Front front = FrontOf(session, options);
    std::vector<Line> lines = ReadLines(*front.known, options);
    if (front.rule.policy == Policy::Gapless && !options.dryRun) WarnOfLostCommits(session);
    if (!front.issuer) {
        const Workplace workplace{session.database, front.rule, *front.maker, session.patience};
        front.issuer = options.dryRun ? std::make_unique<DryIssuer>(workplace) : MakeIssuer(workplace);
    }
    Issuer& issuer = *front.issuer;
    const StopSignal signal;
    const auto begin = std::chrono::steady_clock::now();
    Run run(session, *front.known, issuer, lines, options);
    {
        const Finisher finisher(issuer);
        run.Issue();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    const Totals& totals = run.Counted();
    PrintSummary(session, options, totals, seconds.count());
    if (run.IsFutile() && !run.IsWhole()) hosts::ReportLine(std::to_wstring(run.Left()) + L" more were not tried");
    if (!run.IsWhole() && !run.IsFutile()) {
        hosts::ReportLine(
            L"kledger: stopped; everything that was stored is shown, and the records after it are not issued");
        return ExitStopped;
    }
    if (totals.refused == 0) return ExitDone;
    return totals.issued == 0 && options.file.empty() ? ExitFailed : ExitSomeRefused;
}

} // namespace ledger
