// A rule's codes, each by itself and against its numbers.
#pragma once

#include "ledger/core/AuditDefinitions.h"
#include "ledger/core/AuditReuse.h"

namespace ledger {

class CodeAudit {
  public:
    CodeAudit(Database& database, const DefinitionAudit& definitions, JournalAudit& journal, const ReuseAudit& reuse,
              AuditReport& report)
        : mvarDatabase(database), mvarDefinitions(definitions), mvarJournal(journal), mvarReuse(reuse),
          mvarReport(report) {}

    // Fields, definition and mark of every code, and whether it has the numbers that its definition gives it; each is
    // told to `advance`, if there is one.
    void CheckEach(const std::function<void()>& advance);
    // Codes that differ in letter case only.
    void CheckLetterCase();

  private:
    void Check(const CodeRow& row);
    void CheckNumbers(const std::vector<CodeRow>& rows, const std::wstring& before);

    Database& mvarDatabase;
    const DefinitionAudit& mvarDefinitions;
    JournalAudit& mvarJournal;
    const ReuseAudit& mvarReuse;
    AuditReport& mvarReport;
};

} // namespace ledger
