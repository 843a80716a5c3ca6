// A rule's leases, checked against their seals and against the acts that closed them.
#pragma once

#include <map>
#include <utility>

#include "ledger/core/AuditJournal.h"
#include "ledger/core/Leases.h"

namespace ledger {

class LeaseAudit {
  public:
    // Adds its findings and the open leases to the report. Fails with DbError.
    LeaseAudit(Database& database, const JournalAudit& journal, AuditReport& report);

    // The lease that the number came from; null when it is gone.
    [[nodiscard]] const Lease* Of(const NumberRow& row) const;
    // By their first numbers.
    [[nodiscard]] const std::vector<Lease>& OfSeries(const std::wstring& band, const std::wstring& series) const;
    // Adds a finding for each lease that is said to be used up and whose last number is not stored; `step` is the
    // longest that the rule ever had. Fails with DbError.
    void CheckUsedUp(Database& database, std::int64_t step) const;

  private:
    void Check(const Lease& lease, const JournalAudit& journal);
    void CheckActs(const JournalAudit& journal);
    [[nodiscard]] static bool IsClosedBy(const Lease& lease, const JournalAudit& journal);

    AuditReport& mvarReport;
    std::map<std::pair<std::wstring, std::wstring>, std::vector<Lease>> mvarLeases; // by band and series
};

} // namespace ledger
