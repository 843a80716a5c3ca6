// audit: what is wrong, or soon will be, with the codes of one rule or of all
#include <algorithm>
#include <set>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Heads.h"
#include "ledger/cli/Progress.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"
#include "ledger/core/Repair.h"

namespace ledger {

namespace {

// Findings of one kind that are named one by one; JSON names all.
constexpr std::size_t NamedForPeople = 20;

struct Audited {
    std::vector<AuditReport> rules;
    std::vector<Finding> others; // of no rule that is there
};

// Whether the journal whose newest act is among the heads is that of the rule.
bool IsOfRule(Database& database, const StoredRule& rule, const std::vector<Head>& heads) {
    const auto newest = std::ranges::find(heads, L"journal", &Head::chain);
    if (newest == heads.end()) return false;
    const auto act = Journal(database, rule.id).At(newest->number);
    return act && act->seal == newest->seal;
}

// The heads by the names that their rules have now: a rule that was renamed has its journal still.
HeadsOfRules UnderTheirNames(Database& database, const std::vector<StoredRule>& rules, const HeadsOfRules& written) {
    HeadsOfRules heads;
    for (const auto& [name, of] : written) {
        const auto rule = std::ranges::find_if(
            rules, [&database, &of = of](const StoredRule& candidate) { return IsOfRule(database, candidate, of); });
        heads[rule == rules.end() ? name : rule->name] = of;
    }
    return heads;
}

Audited Gather(Session& session, const AuditOptions& options, const HeadsOfRules& written) {
    return InSnapshot(session.database, session.patience, [&] {
        Audited audited;
        const std::vector<StoredRule> rules = Rules(session.database).All();
        const HeadsOfRules against = UnderTheirNames(session.database, rules, written);
        std::set<std::wstring> names;
        for (const StoredRule& rule : rules) {
            names.insert(rule.name);
            if (!options.rule.empty() && options.rule != rule.name) continue;
            Progress progress(static_cast<std::size_t>(Codes(session.database, rule.id).Count()));
            AuditRequest request{options.warnPercent, {}, [&progress] { progress.Advance(1); }};
            if (const auto heads = against.find(rule.name); heads != against.end()) request.against = heads->second;
            audited.rules.push_back(AuditRuleNow(session.database, rule, request));
        }
        audited.others = FindOrphans(session.database);
        for (const auto& [name, heads] : against)
            if (!names.contains(name) && (options.rule.empty() || options.rule == name))
                audited.others.push_back({FindingKind::Head, L"rule \"" + name + L"\" is gone", {{L"rule", name}}});
        return audited;
    });
}

class Report {
  public:
    explicit Report(const Session& session) : mvarSession(session) {}

    void Print(const AuditReport& report, bool isNamed) {
        if (isNamed && !mvarSession.output.IsJson()) hosts::PrintLine(L"rule " + hosts::Shown(report.rule.name));
        PrintSeries(report);
        PrintGaps(report);
        PrintLeases(report);
        mvarRule = report.rule.name;
        PrintFindings(report.findings);
        mvarCodes += report.codes;
    }

    void PrintFindings(const std::vector<Finding>& findings) {
        std::map<FindingKind, std::size_t> named;
        for (const Finding& finding : findings)
            PrintFinding(finding, named[finding.kind]++);
        for (const auto& [kind, count] : named)
            if (!mvarSession.output.IsJson() && count > NamedForPeople)
                hosts::PrintLine(L"and " + std::to_wstring(count - NamedForPeople) + L" more: " + Describe(kind).name);
    }

    // The number of findings.
    [[nodiscard]] std::size_t Close() const {
        mvarSession.output.Line(hosts::Counted(mvarCodes, L"code") + L", " + hosts::Counted(mvarFindings, L"finding"),
                                {{"codes", mvarCodes}, {"findings", mvarFindings}});
        return mvarFindings;
    }

  private:
    void PrintFinding(const Finding& finding, std::size_t before) {
        ++mvarFindings;
        const KindOfFinding& kind = Describe(finding.kind);
        if (!mvarSession.output.IsJson()) {
            if (before < NamedForPeople) hosts::PrintLine(kind.name + (L": " + hosts::Shown(finding.text)));
            if (before == 0)
                hosts::PrintLine(std::wstring(L"    meaning: ") + kind.meaning + L"; what to do: " + kind.remedy);
            return;
        }
        Json json = {{"finding", ToJson(kind.name)}};
        for (const Fact& fact : finding.facts)
            std::visit([&json, &fact](const auto& value) { AddFact(json, fact.first, value); }, fact.second);
        json["rule"] = ToJson(mvarRule);
        json["text"] = ToJson(finding.text);
        json["meaning"] = ToJson(kind.meaning);
        json["remedy"] = ToJson(kind.remedy);
        hosts::PrintLine(JsonText(json));
    }

    static void AddFact(Json& json, const std::wstring& name, const std::wstring& value) {
        json[ToJson(name).get<std::string>()] = ToJson(value);
    }
    static void AddFact(Json& json, const std::wstring& name, std::int64_t value) {
        json[ToJson(name).get<std::string>()] = value;
    }

    void PrintSeries(const AuditReport& report) const {
        Table table({L"BAND", L"SERIES", L"CODES", L"FIRST", L"LAST", L"LEFT", L"ROOM"});
        for (const Series& one : report.series) {
            const auto room = RoomLeft(one, report.bands);
            table.Add({one.band, one.series, std::to_wstring(one.count),
                       one.count > 0 ? std::to_wstring(one.first) : L"",
                       one.count > 0 ? std::to_wstring(one.last) : L"", room ? std::to_wstring(room->left) : L"",
                       room ? std::to_wstring(room->percent) + L"%" : L""});
            Json json = {{"band", ToJson(one.band)},
                         {"series", ToJson(one.series)},
                         {"codes", one.count},
                         {"first", one.first},
                         {"last", one.last}};
            if (room) json["left"] = room->left;
            if (mvarSession.output.IsJson()) hosts::PrintLine(JsonText(json));
        }
        if (mvarSession.output.IsJson() || report.series.empty()) return;
        for (const std::wstring& line : table.Lines())
            hosts::PrintLine(line);
    }

    void PrintGaps(const AuditReport& report) const {
        for (const Gap& gap : report.leftOut)
            mvarSession.output.Line(L"gap: " + hosts::Shown(gap.series) + L" misses " + RangeText(gap) + L" in band " +
                                        gap.band + L" (left out on purpose)",
                                    {{"note", "gap"},
                                     {"band", ToJson(gap.band)},
                                     {"series", ToJson(gap.series)},
                                     {"first", gap.first},
                                     {"last", gap.last},
                                     {"leftOut", true}});
        for (const Gap& gap : report.leftOfLeases)
            mvarSession.output.Line(L"gap: " + hosts::Shown(gap.series) + L" misses " + RangeText(gap) + L" in band " +
                                        hosts::Shown(gap.band) + L" (left of a lease)",
                                    {{"note", "gap"},
                                     {"band", ToJson(gap.band)},
                                     {"series", ToJson(gap.series)},
                                     {"first", gap.first},
                                     {"last", gap.last},
                                     {"leftOfLease", true}});
    }

    // An open lease is a program that is at work, or one that ended early.
    void PrintLeases(const AuditReport& report) const {
        for (const Lease& lease : report.openLeases)
            mvarSession.output.Line(L"lease: " + hosts::Shown(lease.owner) + L" has set aside " +
                                        std::to_wstring(lease.first) + L" to " + std::to_wstring(lease.last) + L" of " +
                                        hosts::Shown(lease.series) + L" in band " + hosts::Shown(lease.band) +
                                        L" since " + hosts::Shown(lease.takenAt),
                                    {{"note", "lease"},
                                     {"owner", ToJson(lease.owner)},
                                     {"band", ToJson(lease.band)},
                                     {"series", ToJson(lease.series)},
                                     {"first", lease.first},
                                     {"last", lease.last},
                                     {"takenAt", ToJson(lease.takenAt)}});
    }

    const Session& mvarSession;
    std::wstring mvarRule;
    std::int64_t mvarCodes = 0;
    std::size_t mvarFindings = 0;
};

void Repair(Session& session) {
    const std::int64_t repaired = RepairLedger(session.database, session.patience);
    session.output.Line(hosts::Counted(repaired, L"row") + L" put right", {{"repaired", repaired}});
}

} // namespace

int AuditRule(Session& session, const AuditOptions& options) {
    if (options.repair) Repair(session);
    if (!options.rule.empty()) static_cast<void>(ResolveRule(session, options.rule));
    const Audited audited =
        Gather(session, options, options.against.empty() ? HeadsOfRules() : ReadHeads(options.against));
    Report report(session);
    HeadsOfRules heads;
    for (const AuditReport& rule : audited.rules) {
        report.Print(rule, audited.rules.size() > 1);
        heads[rule.rule.name] = rule.heads;
    }
    report.PrintFindings(audited.others);
    const std::size_t findings = report.Close();
    if (!options.writeHeads.empty()) WriteHeads(options.writeHeads, heads);
    return findings == 0 ? ExitDone : ExitFindings;
}

} // namespace ledger
