// A rule's numbers: each row against its seal, each chain against itself, each series against its room.
#pragma once

#include <map>

#include "ledger/core/AuditHeads.h"
#include "ledger/core/AuditLeases.h"
#include "ledger/core/NumberReader.h"

namespace ledger {

class NumberAudit {
  public:
    NumberAudit(const LeaseAudit& leases, JournalAudit& journal, HeadAudit& heads, AuditReport& report)
        : mvarLeases(leases), mvarJournal(journal), mvarHeads(heads), mvarReport(report) {}

    // Reads every number; fails with DbError.
    void CheckEach(Database& database);
    // Gaps, and the room that is left. After CheckEach.
    void CheckSeries(unsigned warnPercent);

  private:
    void Check(const FullNumber& row);
    void FindUnfit(const FullNumber& row, FindingKind kind, const std::wstring& what);
    [[nodiscard]] bool Fits(const FullNumber& row, const std::wstring& before) const;
    [[nodiscard]] std::wstring Before(const NumberRow& row);
    void Remember(const NumberRow& row);
    void BeginSeries(const NumberHeld& held);
    void EndSeries();
    void CheckRoom(const Series& series, unsigned warnPercent);
    void CheckGaps();

    const LeaseAudit& mvarLeases;
    JournalAudit& mvarJournal;
    HeadAudit& mvarHeads;
    AuditReport& mvarReport;
    std::vector<Gap> mvarGaps;
    Series mvarSeries; // the one that is being read
    Head mvarSeriesHead;
    std::map<std::int64_t, Head> mvarLeaseHeads; // of the leases of that series
    std::wstring mvarLastSeal;                   // of the number before
    std::int64_t mvarLastAct = 0;
};

} // namespace ledger
