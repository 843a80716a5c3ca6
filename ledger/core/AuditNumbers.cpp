#include "ledger/core/AuditNumbers.h"

#include <algorithm>

namespace ledger {

void NumberAudit::CheckEach(Database& database) {
    NumberReader(database, mvarReport.rule.id).ForEach([this](const FullNumber& row) { Check(row); });
    EndSeries();
}

void NumberAudit::Check(const FullNumber& row) {
    const NumberHeld& held = row.number.held;
    if (mvarSeries.count == 0 || mvarSeries.band != held.band || mvarSeries.series != held.series) BeginSeries(held);
    if (mvarSeries.count > 0 && held.number > mvarSeries.last + 1)
        mvarGaps.push_back({held.band, held.series, mvarSeries.last + 1, held.number - 1});
    if (mvarSeries.count == 0) mvarSeries.first = held.number;
    const std::wstring before = Before(row.number);
    ++mvarSeries.count;
    mvarSeries.last = held.number;
    if (row.row.code.empty())
        FindUnfit(row, FindingKind::Lost, L" was given to code " + row.code + L", which is gone");
    else if (!Fits(row, before))
        FindUnfit(row, FindingKind::Changed, L" and its code " + row.code + L" are not as they were stored");
    mvarJournal.TellRow(row.number);
    mvarHeads.Tell(row.number);
    Remember(row.number);
}

void NumberAudit::FindUnfit(const FullNumber& row, FindingKind kind, const std::wstring& what) {
    const NumberHeld& held = row.number.held;
    mvarReport.Find(kind, L"number " + std::to_wstring(held.number) + L" in band " + held.band + what,
                    {{L"code", row.code}, {L"band", held.band}, {L"series", held.series}, {L"number", held.number}});
}

bool NumberAudit::Fits(const FullNumber& row, const std::wstring& before) const {
    if (row.number.seal == SealOf(mvarReport.rule.id, row.row, row.number, before)) return true;
    // What an act brought can have come below a series that had begun already.
    const bool mayBegin = mvarLastAct > 0 && row.number.act == 0 && row.number.lease == 0;
    return mayBegin && row.number.seal == SealOf(mvarReport.rule.id, row.row, row.number, {});
}

// The seal that the number's own continues.
std::wstring NumberAudit::Before(const NumberRow& row) {
    if (row.act > 0) return {};
    if (row.lease == 0) return mvarSeries.count > 0 && mvarSeries.last == row.held.number - 1 ? mvarLastSeal : L"";
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
    mvarSeries = {held.band, held.series, 0, 0, 0};
    mvarLastSeal.clear();
    mvarLastAct = 0;
}

void NumberAudit::EndSeries() {
    if (mvarSeries.count > 0) mvarReport.series.push_back(mvarSeries);
    if (!mvarSeriesHead.chain.empty()) mvarReport.heads.push_back(mvarSeriesHead);
    for (auto& [first, head] : mvarLeaseHeads)
        mvarReport.heads.push_back(std::move(head));
    mvarSeriesHead = {};
    mvarLeaseHeads.clear();
}

void NumberAudit::CheckSeries(unsigned warnPercent) {
    for (const Series& one : mvarReport.series) {
        if (const auto gap = GapBefore(one, mvarReport.bands)) mvarGaps.push_back(*gap);
        CheckRoom(one, warnPercent);
    }
    CheckGaps();
}

void NumberAudit::CheckRoom(const Series& series, unsigned warnPercent) {
    const auto room = RoomLeft(series, mvarReport.bands);
    if (!room || room->percent >= warnPercent) return;
    mvarReport.Find(FindingKind::Room,
                    series.series + L" has " + std::to_wstring(room->left) + L" numbers left in band " + series.band,
                    {{L"band", series.band}, {L"series", series.series}, {L"left", room->left}});
}

void NumberAudit::CheckGaps() {
    std::ranges::sort(mvarGaps, {}, [](const Gap& gap) { return std::tuple(gap.band, gap.series, gap.first); });
    for (const Gap& gap : mvarGaps) {
        if (IsLeftOfLeases(gap, mvarLeases.OfSeries(gap.band, gap.series)))
            mvarReport.leftOfLeases.push_back(gap);
        else
            mvarReport.Find(FindingKind::Gap,
                            gap.series + L" misses " + std::to_wstring(gap.first) + L" to " +
                                std::to_wstring(gap.last) + L" in band " + gap.band,
                            {{L"band", gap.band}, {L"series", gap.series}, {L"first", gap.first}, {L"last", gap.last}});
    }
}

} // namespace ledger
