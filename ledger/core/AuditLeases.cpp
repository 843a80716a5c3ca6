#include "ledger/core/AuditLeases.h"

#include <algorithm>
#include <set>

namespace ledger {

namespace {

std::wstring NameOf(const Lease& lease) { return L"the lease of " + SubjectOf(lease); }

std::vector<Fact> FactsOf(const Lease& lease) {
    return {{L"band", lease.band}, {L"series", lease.series}, {L"first", lease.first}};
}

} // namespace

LeaseAudit::LeaseAudit(Database& database, const JournalAudit& journal, AuditReport& report) : mvarReport(report) {
    for (Lease& lease : Leases(database, report.rule.id).All()) {
        Check(lease, journal);
        if (lease.state == L"open") report.openLeases.push_back(lease);
        mvarLeases[{lease.band, lease.series}].push_back(std::move(lease));
    }
    CheckActs(journal);
}

void LeaseAudit::Check(const Lease& lease, const JournalAudit& journal) {
    const std::wstring name = NameOf(lease);
    const std::vector<Fact> facts = FactsOf(lease);
    if (lease.seal != SealOf(mvarReport.rule.id, lease))
        return mvarReport.Find(FindingKind::Lease, name + L" was changed", facts);
    const bool isWhole = lease.last == lease.grantedTo && lease.act == 0;
    if ((lease.state == L"open" || lease.state == L"used") && isWhole) return;
    if (lease.state == L"closed" && IsClosedBy(lease, journal)) return;
    mvarReport.Find(FindingKind::Lease, name + L" is not as the journal says (" + lease.state + L")", facts);
}

bool LeaseAudit::IsClosedBy(const Lease& lease, const JournalAudit& journal) {
    const Act* act = journal.At(lease.act);
    if (act == nullptr) return false;
    if (act->kind == acts::Upgrade) return true;
    return act->kind == acts::Lease && act->subject == SubjectOf(lease) && act->detail == std::to_wstring(lease.last);
}

// A lease that was closed without a number of it being used leaves no other trace.
void LeaseAudit::CheckActs(const JournalAudit& journal) {
    std::set<std::wstring> subjects;
    for (const auto& [series, leases] : mvarLeases)
        for (const Lease& lease : leases)
            subjects.insert(SubjectOf(lease));
    for (const Act& act : journal.Acts())
        if (act.kind == acts::Lease && !subjects.contains(act.subject))
            mvarReport.Find(FindingKind::Lease, L"the lease of " + act.subject + L" is gone", {{L"act", act.number}});
}

void LeaseAudit::CheckUsedUp(Database& database, std::int64_t step) const {
    const auto isStored = [&](const Lease& lease) {
        return database
            .Prepare(L"SELECT number FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND number > ? "
                     L"AND number <= ? LIMIT 1")
            .Set(mvarReport.rule.id)
            .Set(lease.band)
            .Set(lease.series)
            .Set(std::max(lease.grantedTo - step, lease.first - 1))
            .Set(lease.grantedTo)
            .First([](const Statement&) { return true; });
    };
    for (const auto& [series, leases] : mvarLeases)
        for (const Lease& lease : leases)
            if (lease.state == L"used" && !isStored(lease))
                mvarReport.Find(FindingKind::Lease, NameOf(lease) + L" is called used, and its last number is not",
                                FactsOf(lease));
}

const Lease* LeaseAudit::Of(const NumberRow& row) const {
    const std::vector<Lease>& leases = OfSeries(row.held.band, row.held.series);
    const auto lease = std::ranges::lower_bound(leases, row.lease, {}, &Lease::first);
    return lease == leases.end() || lease->first != row.lease ? nullptr : &*lease;
}

const std::vector<Lease>& LeaseAudit::OfSeries(const std::wstring& band, const std::wstring& series) const {
    static const std::vector<Lease> none;
    const auto found = mvarLeases.find({band, series});
    return found == mvarLeases.end() ? none : found->second;
}

} // namespace ledger
