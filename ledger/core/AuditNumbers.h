// A rule's numbers: each row against its seal, each chain against itself, each series against its room.
#pragma once

#include <map>

#include "ledger/core/AuditHeads.h"
#include "ledger/core/AuditLeases.h"
#include "ledger/core/AuditReuse.h"
#include "ledger/core/NumberReader.h"

namespace ledger {

class NumberAudit {
  public:
    NumberAudit(const LeaseAudit& leases, JournalAudit& journal, const ReuseAudit& reuse, HeadAudit& heads,
                AuditReport& report)
        : mvarLeases(leases), mvarJournal(journal), mvarReuse(reuse), mvarHeads(heads), mvarReport(report),
          mvarStep(journal.LongestStep()) {}

    // Reads every number; fails with DbError.
    void CheckEach(Database& database);
    // Gaps, and the room that is left. After CheckEach.
    void CheckSeries(unsigned warnPercent);

  private:
    void Check(const FullNumber& row);
    // Whether the number has no code because the act that brought it left numbers out.
    [[nodiscard]] bool IsLeftOut(const FullNumber& row) const;
    // The gap before the number is accounted for, and what was the last number before it must be there still.
    void LeaveOut(const NumberRow& row);
    void CheckAfter(const NumberRow& row);
    void FindUnfit(const FullNumber& row, FindingKind kind, const std::wstring& what);
    [[nodiscard]] bool Fits(const FullNumber& row, const std::wstring& before) const;
    [[nodiscard]] std::wstring Before(const NumberRow& row);
    void Remember(const NumberRow& row);
    void BeginSeries(const NumberHeld& held);
    // The numbers between the row and what came before it.
    void FindGap(const NumberHeld& held, bool isLeftOut);
    void Count(std::int64_t number, bool isLeftOut);
    void EndSeries();
    void CheckRoom(const Series& series, unsigned warnPercent);
    void CheckGaps();

    const LeaseAudit& mvarLeases;
    JournalAudit& mvarJournal;
    const ReuseAudit& mvarReuse;
    HeadAudit& mvarHeads;
    AuditReport& mvarReport;
    std::vector<Gap> mvarGaps;
    std::int64_t mvarStep;
    std::map<std::pair<std::wstring, std::wstring>, std::vector<Lease>> mvarLeftOut; // as if leases had done it
    Database* mvarDatabase = nullptr;                                                // while it is being read
    std::int64_t mvarRows = 0;                                                       // of the series that is being read
    std::int64_t mvarEnd = 0;                                                        // the number of the row before
    std::int64_t mvarExpected = 0;                                                   // the highest that leaves no gap
    Series mvarSeries;                                                               // the one that is being read
    Head mvarSeriesHead;
    std::map<std::int64_t, Head> mvarLeaseHeads; // of the leases of that series
    std::wstring mvarLastSeal;                   // of the number before
    std::int64_t mvarLastAct = 0;
};

} // namespace ledger
