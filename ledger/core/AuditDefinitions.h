// A rule's definitions and settings, checked against the acts that stored them.
#pragma once

#include <map>
#include <optional>

#include "ledger/core/AuditJournal.h"

namespace ledger {

class DefinitionAudit {
  public:
    // Adds its findings and the newest definition's number bands to the report. Fails with DbError.
    DefinitionAudit(Database& database, const JournalAudit& journal, AuditReport& report);

    // How many number rows a code of the definition has at least; nothing when the definition is not there. Codes of
    // definition 0, which was not kept, have one.
    [[nodiscard]] std::optional<std::size_t> NumbersOfCode(std::int64_t definition) const;

  private:
    void CheckEach(const std::vector<Definition>& definitions, const JournalAudit& journal);
    void CheckActs(const std::vector<Definition>& definitions, const JournalAudit& journal);
    void CheckSettings(Database& database, const JournalAudit& journal);
    [[nodiscard]] std::size_t BandsOf(const Definition& definition);

    AuditReport& mvarReport;
    std::map<std::int64_t, std::size_t> mvarBands; // number bands of each definition
};

} // namespace ledger
