// A rule's codes, each by itself and against its numbers.
#pragma once

#include <map>

#include "ledger/core/AuditDefinitions.h"
#include "ledger/core/AuditReuse.h"

namespace ledger {

class CodeAudit {
  public:
    CodeAudit(Database& database, const DefinitionAudit& definitions, JournalAudit& journal, const ReuseAudit& reuse,
              AuditReport& report)
        : mvarDatabase(database), mvarDefinitions(definitions), mvarJournal(journal), mvarReuse(reuse),
          mvarReport(report) {}

    // Fields, definition and mark of every code; each is told to `advance`, if there is one.
    void CheckEach(const std::function<void()>& advance);
    // Codes that have not the numbers that their definition gives them. After CheckEach.
    void CheckUncounted();
    // Codes that differ in letter case only.
    void CheckLetterCase();

  private:
    void Check(const CodeRow& row);

    Database& mvarDatabase;
    const DefinitionAudit& mvarDefinitions;
    JournalAudit& mvarJournal;
    const ReuseAudit& mvarReuse;
    AuditReport& mvarReport;
    std::map<std::int64_t, std::int64_t> mvarCodesOf; // codes of each definition
};

} // namespace ledger
