// issue: codes for one record or many
#include <algorithm>
#include <chrono>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/cli/IssueLines.h"
#include "ledger/cli/Progress.h"
#include "ledger/cli/RoomWatch.h"
#include "ledger/cli/StopSignal.h"
#include "ledger/core/DryIssuer.h"
#include "ledger/core/Json.h"
#include "ledger/core/NumberingIssuer.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

struct Totals {
    std::size_t issued = 0;
    std::size_t before = 0; // of them, those that had their code already
    std::size_t refused = 0;
};

// Issues the lines and shows what became of each; what is stored and could not be shown is named at the end.
class Run {
  public:
    Run(Session& session, const FieldNames& known, Issuer& issuer, IssueLines& lines, const IssueOptions& options)
        : mvarSession(session), mvarKnown(known), mvarIssuer(issuer), mvarLines(lines), mvarOptions(options),
          mvarWatch(session.output, options.quiet ? 0 : options.warnPercent) {}

    void Issue() {
        Progress progress(mvarOptions.quiet ? 0 : mvarLines.Count());
        while (!IsWhole() && !WasStopped() && !IsFutile()) {
            std::vector<IssueLine> lines = mvarLines.Next(mvarIssuer.BatchSize());
            const std::vector<Outcome> outcomes = IssueBatch(lines);
            Show(lines, outcomes);
            progress.Advance(lines.size());
            mvarDone += lines.size();
        }
    }

    [[nodiscard]] const Totals& Counted() const noexcept { return mvarTotals; }
    [[nodiscard]] bool IsWhole() const noexcept { return mvarDone == mvarLines.Count(); }
    // The one record that wants so many codes was refused, and would be again.
    [[nodiscard]] bool IsFutile() const noexcept { return mvarOptions.count > 1 && mvarTotals.refused > 0; }
    [[nodiscard]] std::size_t Left() const noexcept { return mvarLines.Count() - mvarDone; }

  private:
    std::vector<Outcome> IssueBatch(std::vector<IssueLine>& lines) {
        std::vector<Request> requests;
        for (IssueLine& line : lines) {
            if (!line.refusal.empty()) continue;
            if (!line.isGiven) line.key = NewTicket();
            requests.push_back(
                {KnownTo(mvarKnown, line.values), JsonText(ToJson(line.values)), line.key, line.isGiven});
        }
        std::vector<Outcome> issued;
        try {
            issued = mvarIssuer.Issue(requests, Left() - lines.size());
        } catch (...) {
            if (mvarSession.database.IsInDoubt()) NameOpen(lines);
            throw;
        }
        std::vector<Outcome> outcomes;
        outcomes.reserve(lines.size());
        auto outcome = issued.begin();
        for (const IssueLine& line : lines)
            outcomes.push_back(line.refusal.empty() ? *outcome++ : Outcome{{}, line.refusal, false});
        return outcomes;
    }

    // The server never answered a COMMIT: whether these have codes shows when it is back.
    static void NameOpen(const std::vector<IssueLine>& lines) {
        for (const IssueLine& line : lines)
            if (line.refusal.empty())
                hosts::ReportLine(L"line " + std::to_wstring(line.number) +
                                  L": may have a code; find out with: kledger find --ticket \"" + line.key + L"\"");
    }

    void Show(const std::vector<IssueLine>& lines, const std::vector<Outcome>& outcomes) {
        try {
            for (std::size_t at = 0; at < outcomes.size(); ++at)
                ShowOne(lines[at], outcomes[at]);
            hosts::FlushOut();
        } catch (const hosts::OutputError&) {
            for (std::size_t at = 0; at < outcomes.size(); ++at)
                if (!outcomes[at].code.empty())
                    hosts::ReportLine(L"line " + std::to_wstring(lines[at].number) + L": code " +
                                      hosts::Shown(outcomes[at].code) +
                                      L" is stored and perhaps not shown; see: kledger find "
                                      L"--ticket \"" +
                                      lines[at].key + L"\"");
            throw;
        }
    }

    void ShowOne(const IssueLine& line, const Outcome& outcome) {
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

    void ShowRefused(const IssueLine& line, const std::wstring& refusal) const {
        const std::wstring text = hosts::Shown(hosts::OneLine(refusal));
        if (mvarSession.output.IsJson())
            hosts::PrintLine(JsonText({{"line", line.number}, {"refused", ToJson(text)}}));
        else
            hosts::ReportLine(L"line " + std::to_wstring(line.number) + L": " + text);
    }

    Session& mvarSession;
    const FieldNames& mvarKnown;
    Issuer& mvarIssuer;
    IssueLines& mvarLines;
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
        hosts::Counted(totals.issued, L"code") + L" issued" +
        (totals.before > 0 ? L" (" + std::to_wstring(totals.before) + L" of them before)" : std::wstring()) + L", " +
        hosts::Counted(totals.refused, L"record") + L" refused, " + hosts::Counted(perSecond, L"code") +
        L" per second");
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
    IssueLines lines(*front.known, options);
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
    if (run.IsFutile() && !run.IsWhole()) hosts::ReportLine(L"not tried: " + std::to_wstring(run.Left()) + L" more");
    if (!run.IsWhole() && !run.IsFutile()) {
        hosts::ReportLine(
            L"kledger: stopped; everything that was stored is shown, and the records after it are not issued");
        return ExitStopped;
    }
    if (totals.refused == 0) return ExitDone;
    return totals.issued == 0 && options.file.empty() ? ExitFailed : ExitSomeRefused;
}

} // namespace ledger
