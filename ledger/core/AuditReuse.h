// Numbers of void codes that were given again, checked against the acts that did so.
#pragma once

#include <map>

#include "ledger/core/AuditJournal.h"
#include "ledger/core/Reuse.h"

namespace ledger {

class ReuseAudit {
  public:
    // Adds its findings to the report, and tells the journal of the void codes. Fails with DbError.
    ReuseAudit(Database& database, JournalAudit& journal, AuditReport& report);

    // Whether the code is what the act that gave it its number says; also for one that got a number of its own.
    [[nodiscard]] bool Fits(const CodeRow& code) const;
    // The code that had the number first: the one that the number's seal covers.
    [[nodiscard]] const CodeRow& First(const CodeRow& code) const;

  private:
    [[nodiscard]] bool IsAsItWas(const CodeRow& row, const Act* act) const;
    void CheckFree(Database& database);

    AuditReport& mvarReport;
    std::map<std::wstring, CodeRow> mvarFirst;      // by the code that has the number now
    std::map<std::wstring, std::wstring> mvarSeals; // likewise, of the code that has it now
};

} // namespace ledger
