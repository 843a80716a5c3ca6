#include "ledger/core/Leases.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "ledger/core/Codes.h"

namespace ledger {

namespace {

// The machine and the process, for whoever wonders what became of a lease.
std::wstring ThisProgram() {
    std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> machine{};
    auto size = static_cast<DWORD>(machine.size());
    if (GetComputerNameW(machine.data(), &size) == 0) machine[0] = L'?';
    return std::wstring(machine.data()) + L":" + std::to_wstring(GetCurrentProcessId());
}

} // namespace

const std::array<const wchar_t*, 2> FirstFreeQueries = {
    L"SELECT MAX(number) FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ?",
    // The block taken last is the highest one, so its end is found through the key.
    L"SELECT last_number FROM kestrel_leases WHERE rule_id = ? AND band = ? AND series = ? AND first_number = "
    L"(SELECT MAX(first_number) FROM kestrel_leases l WHERE l.rule_id = kestrel_leases.rule_id "
    L"AND l.band = kestrel_leases.band AND l.series = kestrel_leases.series)"};

std::int64_t Leases::FirstFree(const std::wstring& band, const std::wstring& series, std::int64_t start) {
    std::int64_t first = start;
    for (const wchar_t* query : FirstFreeQueries) {
        Statement& row = mvarDatabase.Prepare(query);
        row.Set(mvarRuleId).Set(band).Set(series).Execute();
        if (!row.Fetch()) continue;
        if (const auto taken = row.NumberIfAny(1)) first = std::max(first, *taken + 1);
    }
    return first;
}

Lease Leases::Take(const std::wstring& band, const std::wstring& series, std::int64_t count, std::int64_t start,
                   std::int64_t highest) {
    Lease lease{band, series, FirstFree(band, series, start), 0, 0, ThisProgram(), NowText(), true};
    if (lease.first > highest) return lease;
    lease.last = count - 1 < highest - lease.first ? lease.first + count - 1 : highest;
    lease.grantedTo = lease.last;
    mvarDatabase
        .Prepare(L"INSERT INTO kestrel_leases (rule_id, band, series, first_number, last_number, granted_to, owner, "
                 L"taken_at, state) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 'open')")
        .Set(mvarRuleId)
        .Set(band)
        .Set(series)
        .Set(lease.first)
        .Set(lease.last)
        .Set(lease.grantedTo)
        .Set(lease.owner)
        .Set(lease.takenAt)
        .Execute();
    return lease;
}

void Leases::Remove(const Lease& lease) {
    mvarDatabase
        .Prepare(L"DELETE FROM kestrel_leases WHERE rule_id = ? AND band = ? AND series = ? AND first_number = ?")
        .Set(mvarRuleId)
        .Set(lease.band)
        .Set(lease.series)
        .Set(lease.first)
        .Execute();
}

void Leases::Close(const Lease& lease, std::int64_t next) {
    if (next > lease.grantedTo) return Remove(lease);
    if (next == lease.first) {
        // Unused and the last one: as if it had never been.
        Statement& removal = mvarDatabase.Prepare(
            L"DELETE FROM kestrel_leases WHERE rule_id = ? AND band = ? AND series = ? AND first_number = ? AND NOT "
            L"EXISTS (SELECT 1 FROM kestrel_leases l WHERE l.rule_id = kestrel_leases.rule_id AND l.band = "
            L"kestrel_leases.band AND l.series = kestrel_leases.series AND l.first_number > "
            L"kestrel_leases.first_number)");
        removal.Set(mvarRuleId).Set(lease.band).Set(lease.series).Set(lease.first).Execute();
        if (removal.Changed() == 1) return;
    }
    mvarDatabase
        .Prepare(L"UPDATE kestrel_leases SET last_number = ?, state = 'closed' WHERE rule_id = ? AND band = ? AND "
                 L"series = ? AND first_number = ?")
        .Set(next - 1)
        .Set(mvarRuleId)
        .Set(lease.band)
        .Set(lease.series)
        .Set(lease.first)
        .Execute();
}

std::vector<Lease> Leases::All() {
    return mvarDatabase
        .Prepare(L"SELECT band, series, first_number, last_number, granted_to, owner, taken_at, state FROM "
                 L"kestrel_leases WHERE rule_id = ? ORDER BY band, series, first_number")
        .Set(mvarRuleId)
        .Rows([](const Statement& row) {
            return Lease{row.Text(1),   row.Text(2), row.Number(3), row.Number(4),
                         row.Number(5), row.Text(6), row.Text(7),   row.Text(8) == L"open"};
        });
}

void Leases::RemoveAll() {
    mvarDatabase.Prepare(L"DELETE FROM kestrel_leases WHERE rule_id = ?").Set(mvarRuleId).Execute();
}

} // namespace ledger
