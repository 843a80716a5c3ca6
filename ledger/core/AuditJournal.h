// What a rule's journal says, checked against itself and against the rows that it speaks of.
//
// The acts are read first; then whoever meets a void code or a row that an act brought tells it, and CheckRest finds
// what nobody has told.
#pragma once

#include <map>
#include <vector>

#include "ledger/core/Audit.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Seal.h"

namespace ledger {

class JournalAudit {
  public:
    // Adds its findings and its head to the report, which outlives it. Fails with DbError.
    JournalAudit(Database& database, AuditReport& report);

    [[nodiscard]] const std::vector<Act>& Acts() const noexcept { return mvarActs; }
    // Null when there is none of that number.
    [[nodiscard]] const Act* At(std::int64_t number) const;
    // The longest step that the rule has ever had: what is missing within one is no gap.
    [[nodiscard]] std::int64_t LongestStep() const;

    // A code as it is marked; finds marks without their act.
    void TellMark(const CodeRow& code);
    // A void code whose number was given again.
    void TellReused(const CodeRow& code);
    // A number row; those that an act brought are summed up.
    void TellRow(const NumberRow& row);
    // Acts whose code is not marked, and acts whose rows are not those that they brought.
    void CheckMarks();
    void CheckSums();

  private:
    void Check();
    [[nodiscard]] static bool BringsRows(const Act& act);

    std::int64_t mvarRuleId;
    AuditReport& mvarReport;
    std::vector<Act> mvarActs;
    std::map<std::int64_t, std::wstring> mvarVoids; // acts whose code was not met yet, and the code
    std::map<std::int64_t, SealSum> mvarSums;       // of the rows of each act
};

} // namespace ledger
