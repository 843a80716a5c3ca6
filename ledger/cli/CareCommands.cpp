// doctor, lease close, upgrade: what keeps a ledger in good order
#include <windows.h>

#include <algorithm>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Json.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Schema.h"
#include "ledger/core/Stamp.h"
#include "ledger/core/Upgrade.h"

namespace ledger {

namespace {

void PrintFact(const Session& session, const EngineFact& fact) {
    Json json = {{"fact", ToJson(fact.name)}, {"value", ToJson(fact.value)}};
    if (!fact.warning.empty()) json["warning"] = ToJson(fact.warning);
    if (fact.losesCommits) json["losesCommits"] = true;
    session.output.Line(
        fact.name + L": " + hosts::Shown(fact.value + (fact.warning.empty() ? L"" : L"; ") + fact.warning), json);
}

// The newest time that any row tells; no clock that is sane is before it.
EngineFact ClockFact(Session& session) {
    const auto newest =
        session.database
            .Prepare(L"SELECT MAX(t) FROM (SELECT MAX(acted_at) AS t FROM kestrel_journal UNION ALL SELECT "
                     L"MAX(stored_at) AS t FROM kestrel_codes) times")
            .First([](const Statement& row) { return row.Text(1); })
            .value_or(L"");
    const std::wstring now = NowText();
    return {L"clock", now,
            newest > now ? L"rows are from " + newest + L", after this machine's time; set its clock" : std::wstring(),
            false};
}

struct OpenLease {
    StoredRule rule;
    Lease lease;
};

std::vector<OpenLease> OpenLeases(Session& session, const std::wstring& ruleName) {
    std::vector<OpenLease> open;
    for (const StoredRule& rule : Rules(session.database).All())
        if (ruleName.empty() || ruleName == rule.name)
            for (Lease& lease : Leases(session.database, rule.id).All())
                if (lease.state == L"open") open.push_back({rule, std::move(lease)});
    return open;
}

// Those that are not open any more.
std::vector<OpenLease> NotAmong(const std::vector<OpenLease>& open, const std::vector<OpenLease>& leases) {
    std::vector<OpenLease> closed;
    std::ranges::copy_if(leases, std::back_inserter(closed), [&open](const OpenLease& lease) {
        return std::ranges::none_of(open, [&lease](const OpenLease& other) {
            return other.rule.id == lease.rule.id && SubjectOf(other.lease) == SubjectOf(lease.lease);
        });
    });
    return closed;
}

// Whether the program that took the lease is at work on this machine; nothing for those of other machines.
std::optional<bool> IsAtWork(const Lease& lease) {
    const std::wstring self = ThisProgram();
    const std::size_t length = self.rfind(L':') + 1; // of the machine's name and the colon
    if (lease.owner.compare(0, length, self, 0, length) != 0) return std::nullopt;
    const auto id = static_cast<DWORD>(std::wcstoul(lease.owner.c_str() + length, nullptr, 10));
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
    if (process == nullptr) return false;
    const bool runs = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return runs;
}

std::wstring NameOf(const OpenLease& open) {
    return hosts::Shown(open.lease.owner + L" has set aside " + std::to_wstring(open.lease.first) + L" to " +
                        std::to_wstring(open.lease.last) + L" of " + open.lease.series + L" in band " +
                        open.lease.band + L" of rule " + open.rule.name + L" since " + open.lease.takenAt);
}

// The first number of the lease that no code holds, and none after it.
std::int64_t NextOf(Session& session, const OpenLease& open) {
    const auto highest = session.database
                             .Prepare(L"SELECT number FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND "
                                      L"series = ? AND number >= ? AND number <= ? AND lease = ? ORDER BY number DESC "
                                      L"LIMIT 1")
                             .Set(open.rule.id)
                             .Set(open.lease.band)
                             .Set(open.lease.series)
                             .Set(open.lease.first)
                             .Set(open.lease.last)
                             .Set(open.lease.first)
                             .First([](const Statement& row) { return row.Number(1); });
    return highest ? std::min(*highest + open.rule.settings.step, open.lease.last + 1) : open.lease.first;
}

} // namespace

int Doctor(Session& session) {
    std::vector<EngineFact> facts;
    std::vector<OpenLease> leases;
    InSnapshot(session.database, session.patience, [&] {
        facts = session.database.Facts();
        facts.push_back(ClockFact(session));
        leases = OpenLeases(session, {});
        return true;
    });
    for (const EngineFact& fact : facts)
        PrintFact(session, fact);
    for (const OpenLease& open : leases) {
        const auto works = IsAtWork(open.lease);
        const std::wstring state = !works   ? L"on another machine"
                                   : *works ? L"at work"
                                            : L"gone; close it with: kledger lease close";
        PrintFact(session, {L"lease", NameOf(open), state, false});
    }
    return ExitDone;
}

int CloseLeases(Session& session, const LeaseOptions& options) {
    std::vector<OpenLease> tried; // by the attempts before
    const auto closed = InTransaction(session.database, session.patience, OnUniqueKey::Retry, [&] {
        std::vector<OpenLease> all = OpenLeases(session, options.rule);
        std::vector<OpenLease> done = NotAmong(all, tried); // by an attempt whose COMMIT was not answered
        for (OpenLease& open : all) {
            const bool named = !options.owner.empty() && options.owner == open.lease.owner;
            const bool gone = options.owner.empty() && IsAtWork(open.lease) == std::optional(false);
            if (!named && !gone) continue;
            Leases(session.database, open.rule.id).Close(open.lease, NextOf(session, open), open.rule.settings.step);
            done.push_back(std::move(open));
        }
        tried = done;
        return done;
    });
    for (const OpenLease& open : closed)
        session.output.Line(L"closed: " + NameOf(open),
                            {{"closed", ToJson(SubjectOf(open.lease))}, {"owner", ToJson(open.lease.owner)}});
    session.output.Line(hosts::Counted(closed.size(), L"lease") + L" closed", {{"leases", closed.size()}});
    return ExitDone;
}

int Upgrade(Session& session) {
    const UpgradeReport report = UpgradeLedger(session.database, session.patience);
    const bool isNew = report.from == SchemaVersion;
    session.output.Line(isNew ? L"the ledger is up already (schema " + std::to_wstring(report.from) + L")"
                              : L"brought up from schema " + std::to_wstring(report.from) + L" to " +
                                    std::to_wstring(SchemaVersion) + L": " + hosts::Counted(report.rules, L"rule") +
                                    L", " + hosts::Counted(report.codes, L"code"),
                        {{"from", report.from},
                         {"to", SchemaVersion},
                         {"rules", report.rules},
                         {"codes", report.codes},
                         {"tickets", report.tickets}});
    if (report.tickets > 0)
        session.output.Note(
            hosts::Counted(report.tickets, L"code") +
            L" had the ticket of another one: one request had got two codes; look for them by their fields");
    return ExitDone;
}

} // namespace ledger
