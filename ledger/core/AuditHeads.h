// Whether what was the newest of its chain once is still there, unchanged and in the same place.
#pragma once

#include <map>
#include <tuple>

#include "ledger/core/AuditJournal.h"

namespace ledger {

class HeadAudit {
  public:
    // The heads outlive it.
    explicit HeadAudit(const std::vector<Head>& heads);

    // A number row; it takes its head off the list.
    void Tell(const NumberRow& row);
    // Those that nobody has told. After every number was.
    void Check(const JournalAudit& journal, AuditReport& report) const;

  private:
    using Place = std::tuple<std::wstring, std::wstring, std::int64_t>; // band, series, number

    std::vector<const Head*> mvarActs;
    std::map<Place, const Head*> mvarNumbers;
};

} // namespace ledger
