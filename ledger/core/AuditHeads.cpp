#include "ledger/core/AuditHeads.h"

namespace ledger {

HeadAudit::HeadAudit(const std::vector<Head>& heads) {
    for (const Head& head : heads)
        if (head.chain == L"journal")
            mvarActs.push_back(&head);
        else
            mvarNumbers[{head.band, head.series, head.number}] = &head;
}

void HeadAudit::Tell(const NumberRow& row) {
    if (mvarNumbers.empty()) return;
    const auto wanted = mvarNumbers.find({row.held.band, row.held.series, row.held.number});
    if (wanted != mvarNumbers.end() && wanted->second->seal == row.seal && wanted->second->lease == row.lease)
        mvarNumbers.erase(wanted);
}

void HeadAudit::Check(const JournalAudit& journal, AuditReport& report) const {
    for (const Head* head : mvarActs) {
        const Act* act = journal.At(head->number);
        if (act == nullptr || act->seal != head->seal)
            report.Find(FindingKind::Head,
                        L"act " + std::to_wstring(head->number) + L" of the journal is not what it was",
                        {{L"chain", head->chain}, {L"number", head->number}});
    }
    for (const auto& [place, head] : mvarNumbers)
        report.Find(
            FindingKind::Head,
            L"number " + std::to_wstring(head->number) + L" of " + head->series + L" in band " + head->band +
                L" is not what it was",
            {{L"chain", head->chain}, {L"band", head->band}, {L"series", head->series}, {L"number", head->number}});
}

} // namespace ledger
