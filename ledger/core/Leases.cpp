#include "ledger/core/Leases.h"

#include <algorithm>

#include "ledger/core/Seal.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

const wchar_t* const LeaseSelect =
    L"SELECT band, series, first_number, last_number, granted_to, owner, taken_at, ticket, state, "
    L"act, seal FROM kestrel_leases WHERE rule_id = ?";

std::wstring SelectLeases(const wchar_t* rest) { return std::wstring(LeaseSelect) + rest; }

Lease ReadLease(const Statement& row) {
    Lease lease;
    lease.band = row.Text(1);
    lease.series = row.Text(2);
    lease.first = row.Number(3);
    lease.last = row.Number(4);
    lease.grantedTo = row.Number(5);
    lease.owner = row.Text(6);
    lease.takenAt = row.Text(7);
    lease.ticket = row.Text(8);
    lease.state = row.Text(9);
    lease.act = row.Number(10);
    lease.seal = row.Text(11);
    return lease;
}

} // namespace

const std::array<const wchar_t*, 2> FirstFreeQueries = {
    L"SELECT number, code FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? ORDER BY number DESC "
    L"LIMIT 1",
    // The block taken last is the highest one, so its end is found through the key. One that was closed unused keeps
    // its first number, as its key.
    L"SELECT CASE WHEN last_number < first_number THEN first_number ELSE last_number END, '' FROM kestrel_leases WHERE "
    L"rule_id = ? AND band = ? AND series = ? ORDER BY first_number DESC LIMIT 1"};

std::wstring SealOf(std::int64_t ruleId, const Lease& lease) {
    return SealText({})
        .Add(L"lease")
        .Add(ruleId)
        .Add(lease.band)
        .Add(lease.series)
        .Add(lease.first)
        .Add(lease.grantedTo)
        .Add(lease.owner)
        .Add(lease.takenAt)
        .Add(lease.ticket)
        .Seal();
}

std::wstring SubjectOf(const Lease& lease) {
    return lease.band + L" " + lease.series + L" " + std::to_wstring(lease.first);
}

std::int64_t Leases::FirstFree(const NumberBand& band, const std::wstring& series) {
    std::int64_t first = band.start;
    for (const wchar_t* query : FirstFreeQueries) {
        const auto end =
            mvarDatabase.Prepare(query).Set(mvarRuleId).Set(band.name).Set(series).First([](const Statement& row) {
                HighestNumber taken;
                taken.number = row.Number(1);
                taken.code = row.Text(2);
                return taken;
            });
        if (end) first = std::max(first, end->Next(band.step)); // what is set aside has its last step in it
    }
    return first;
}

std::optional<Lease> Leases::OfTicket(const NumberBand& band, const std::wstring& series, const std::wstring& ticket) {
    return mvarDatabase.Prepare(SelectLeases(L" AND band = ? AND series = ? AND ticket = ?"))
        .Set(mvarRuleId)
        .Set(band.name)
        .Set(series)
        .Set(ticket)
        .First(ReadLease);
}

Lease Leases::Take(const NumberBand& band, const std::wstring& series, std::int64_t count, const std::wstring& ticket) {
    Lease lease;
    lease.band = band.name;
    lease.series = series;
    lease.first = FirstFree(band, series);
    if (lease.first > band.highest) return lease;
    const std::int64_t room = (band.highest - lease.first) / band.step + 1;
    lease.last = lease.first + std::min(count, room) * band.step - 1;
    lease.grantedTo = lease.last;
    lease.owner = ThisProgram();
    lease.takenAt = NowText();
    lease.ticket = ticket;
    lease.state = L"open";
    lease.seal = SealOf(mvarRuleId, lease);
    Statement& insert = mvarDatabase.Prepare(
        L"INSERT INTO kestrel_leases (rule_id, band, series, first_number, last_number, granted_to, owner, taken_at, "
        L"ticket, state, act, seal) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, 'open', 0, ?)");
    insert.Set(mvarRuleId).Set(band.name).Set(series).Set(lease.first).Set(lease.last).Set(lease.grantedTo);
    insert.Set(lease.owner).Set(lease.takenAt).Set(lease.ticket).Set(lease.seal).Execute();
    return lease;
}

bool Leases::MarkUsed(const Lease& lease, std::int64_t step) {
    const auto owner = mvarDatabase
                           .Prepare(L"SELECT lease FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? "
                                    L"AND number = ?")
                           .Set(mvarRuleId)
                           .Set(lease.band)
                           .Set(lease.series)
                           .Set(lease.grantedTo - step + 1)
                           .First([](const Statement& row) { return row.Number(1); });
    if (owner != lease.first) return false;
    mvarDatabase
        .Prepare(L"UPDATE kestrel_leases SET state = 'used' WHERE rule_id = ? AND band = ? AND series = ? AND "
                 L"first_number = ? AND state = 'open'")
        .Set(mvarRuleId)
        .Set(lease.band)
        .Set(lease.series)
        .Set(lease.first)
        .Execute();
    return true;
}

// One that is unused and the last one: as if it had never been.
bool Leases::RemoveUnused(const Lease& lease) {
    Statement& removal = mvarDatabase.Prepare(
        L"DELETE FROM kestrel_leases WHERE rule_id = ? AND band = ? AND series = ? AND first_number = ? AND state = "
        L"'open'");
    const auto behind = mvarDatabase
                            .Prepare(L"SELECT first_number FROM kestrel_leases WHERE rule_id = ? AND band = ? AND "
                                     L"series = ? ORDER BY first_number DESC LIMIT 1")
                            .Set(mvarRuleId)
                            .Set(lease.band)
                            .Set(lease.series)
                            .First([](const Statement& row) { return row.Number(1); });
    if (behind.value_or(0) > lease.first) return false;
    removal.Set(mvarRuleId).Set(lease.band).Set(lease.series).Set(lease.first).Execute();
    return removal.Changed() == 1;
}

void Leases::Close(const Lease& lease, std::int64_t next, std::int64_t step) {
    if (next > lease.grantedTo && MarkUsed(lease, step)) return;
    if (next == lease.first && RemoveUnused(lease)) return;
    Journal journal(mvarDatabase, mvarRuleId);
    const std::int64_t act = journal.NextNumber();
    Statement& update = mvarDatabase.Prepare(L"UPDATE kestrel_leases SET last_number = ?, state = 'closed', act = ? "
                                             L"WHERE rule_id = ? AND band = ? AND series = "
                                             L"? AND first_number = ? AND state = 'open'");
    update.Set(next - 1).Set(act).Set(mvarRuleId).Set(lease.band).Set(lease.series).Set(lease.first).Execute();
    if (update.Changed() == 1)
        journal.Write(acts::Lease, SubjectOf(lease), std::to_wstring(next - 1), lease.ticket + L" closed");
}

std::vector<Lease> Leases::All() {
    return mvarDatabase.Prepare(SelectLeases(L" ORDER BY band, series, first_number")).Set(mvarRuleId).Rows(ReadLease);
}

} // namespace ledger
