#include "ledger/core/AuditNumbers.h"

#include <algorithm>
#include <cwchar>
#include <limits>

namespace ledger {

void NumberAudit::CheckEach(Database& database) {
    mvarDatabase = &database;
    NumberReader(database, mvarReport.rule.id).ForEach([this](const FullNumber& row) { Check(row); });
    EndSeries();
}

void NumberAudit::Check(const FullNumber& row) {
    const NumberHeld& held = row.number.held;
    const bool isLeftOut = IsLeftOut(row);
    if (mvarRows == 0 || mvarSeries.band != held.band || mvarSeries.series != held.series) BeginSeries(held);
    if (isLeftOut) LeaveOut(row.number);
    FindGap(held, isLeftOut);
    const std::wstring before = Before(row.number);
    ++mvarRows;
    Count(held.number, isLeftOut);
    if (row.row.code.empty() && !isLeftOut)
        FindUnfit(row, FindingKind::Lost, L" was given to code " + row.code + L", which is gone");
    else if (!Fits(row, before))
        FindUnfit(row, FindingKind::Changed, L" and its code " + row.code + L" are not as they were stored");
    mvarJournal.TellRow(row.number);
    mvarHeads.Tell(row.number);
    Remember(row.number);
}

bool NumberAudit::IsLeftOut(const FullNumber& row) const {
    const Act* act = row.code.empty() ? mvarJournal.At(row.number.act) : nullptr;
    return act != nullptr && act->kind == acts::Next;
}

// One that was left out is the last of its gap.
void NumberAudit::FindGap(const NumberHeld& held, bool isLeftOut) {
    const std::int64_t behind = isLeftOut ? held.number + 1 : held.number;
    if (mvarRows == 0) {
        if (const auto gap = GapBefore({held.band, held.series, behind}, mvarReport.bands)) mvarGaps.push_back(*gap);
    } else if (isLeftOut || held.number > mvarExpected) {
        mvarGaps.push_back({held.band, held.series, mvarEnd + 1, behind - 1});
    }
}

void NumberAudit::Count(std::int64_t number, bool isLeftOut) {
    mvarEnd = number;
    mvarExpected = number + (isLeftOut ? 1 : mvarStep);
    if (isLeftOut) {
        mvarSeries.leftOutTo = number;
        return;
    }
    if (mvarSeries.count++ == 0) mvarSeries.first = number;
    mvarSeries.last = number;
}

void NumberAudit::LeaveOut(const NumberRow& row) {
    Lease all;
    all.band = row.held.band;
    all.series = row.held.series;
    all.first = mvarRows == 0 ? std::numeric_limits<std::int64_t>::min() : mvarEnd + 1;
    all.grantedTo = row.held.number;
    mvarLeftOut[{all.band, all.series}].push_back(all);
    CheckAfter(row);
}

void NumberAudit::CheckAfter(const NumberRow& row) {
    const NumberHeld& held = row.held;
    const std::wstring after = PartOf(*mvarJournal.At(row.act), L", after ");
    const auto stored = mvarDatabase
                            ->Prepare(L"SELECT number, seal FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND "
                                      L"series = ? AND number = ?")
                            .Set(mvarReport.rule.id)
                            .Set(held.band)
                            .Set(held.series)
                            .Set(static_cast<std::int64_t>(std::wcstoll(after.c_str(), nullptr, 10)))
                            .First([](const Statement& found) {
                                const std::wstring number = std::to_wstring(found.Number(1));
                                return number + L" " + found.Text(2);
                            });
    if (after == L"none" || stored == after) return;
    mvarReport.Find(FindingKind::Act,
                    L"the last number of " + held.series + L" before act " + std::to_wstring(row.act) +
                        L" left numbers out is gone or changed",
                    {{L"band", held.band}, {L"series", held.series}, {L"act", row.act}});
}

void NumberAudit::FindUnfit(const FullNumber& row, FindingKind kind, const std::wstring& what) {
    const NumberHeld& held = row.number.held;
    mvarReport.Find(kind, L"number " + std::to_wstring(held.number) + L" in band " + held.band + what,
                    {{L"code", row.code}, {L"band", held.band}, {L"series", held.series}, {L"number", held.number}});
}

bool NumberAudit::Fits(const FullNumber& row, const std::wstring& before) const {
    const CodeRow& code = mvarReuse.First(row.row);
    if (row.number.seal == SealOf(mvarReport.rule.id, code, row.number, before)) return true;
    // What an act brought can have come below a series that had begun already.
    const bool mayBegin = mvarLastAct > 0 && row.number.act == 0 && row.number.lease == 0;
    return mayBegin && row.number.seal == SealOf(mvarReport.rule.id, code, row.number, {});
}

// The seal that the number's own continues.
std::wstring NumberAudit::Before(const NumberRow& row) {
    if (row.act > 0) return {};
    if (row.lease == 0) return mvarLastSeal;
    const auto head = mvarLeaseHeads.find(row.lease);
    if (head != mvarLeaseHeads.end()) return head->second.seal;
    if (const Lease* lease = mvarLeases.Of(row)) return lease->seal;
    mvarReport.Find(FindingKind::Lease,
                    L"the lease of number " + std::to_wstring(row.held.number) + L" in " + row.held.series +
                        L" is gone",
                    {{L"band", row.held.band}, {L"series", row.held.series}, {L"first", row.lease}});
    return {};
}

void NumberAudit::Remember(const NumberRow& row) {
    mvarLastSeal = row.seal;
    mvarLastAct = row.act;
    const Head head = {
        row.lease == 0 ? L"series" : L"lease", row.held.band, row.held.series, row.lease, row.held.number, row.seal};
    if (row.lease == 0)
        mvarSeriesHead = head;
    else
        mvarLeaseHeads[row.lease] = head;
}

void NumberAudit::BeginSeries(const NumberHeld& held) {
    EndSeries();
    mvarSeries = {held.band, held.series};
    mvarRows = 0;
    mvarLastSeal.clear();
    mvarLastAct = 0;
}

void NumberAudit::EndSeries() {
    if (mvarRows > 0) mvarReport.series.push_back(mvarSeries);
    if (!mvarSeriesHead.chain.empty()) mvarReport.heads.push_back(mvarSeriesHead);
    for (auto& [first, head] : mvarLeaseHeads)
        mvarReport.heads.push_back(std::move(head));
    mvarSeriesHead = {};
    mvarLeaseHeads.clear();
}

void NumberAudit::CheckSeries(unsigned warnPercent) {
    for (const Series& one : mvarReport.series)
        CheckRoom(one, warnPercent);
    CheckGaps();
}

void NumberAudit::CheckRoom(const Series& series, unsigned warnPercent) {
    const auto room = RoomLeft(series, mvarReport.bands);
    if (!room || room->percent >= warnPercent) return;
    mvarReport.Find(FindingKind::Room, RoomText(series.series, series.band, room->left),
                    {{L"band", series.band}, {L"series", series.series}, {L"left", room->left}});
}

void NumberAudit::CheckGaps() {
    std::ranges::sort(mvarGaps, {}, [](const Gap& gap) { return std::tuple(gap.band, gap.series, gap.first); });
    for (const Gap& gap : mvarGaps) {
        if (IsLeftOfLeases(gap, mvarLeftOut[{gap.band, gap.series}]))
            mvarReport.leftOut.push_back(gap);
        else if (IsLeftOfLeases(gap, mvarLeases.OfSeries(gap.band, gap.series)))
            mvarReport.leftOfLeases.push_back(gap);
        else
            mvarReport.Find(FindingKind::Gap, gap.series + L" misses " + RangeText(gap) + L" in band " + gap.band,
                            {{L"band", gap.band}, {L"series", gap.series}, {L"first", gap.first}, {L"last", gap.last}});
    }
}

} // namespace ledger
