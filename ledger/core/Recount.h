// Counts the codes that are stored in the series of a definition, beside those that they are counted in already.
#pragma once

#include <set>

#include "ledger/core/CodeMaker.h"

namespace ledger {

// Members run in the caller's transaction and fail with DbError.
class Recount {
  public:
    // The rows that are added belong to the act of that number.
    Recount(Database& database, std::int64_t ruleId, std::int64_t act);

    // Returns how many codes there are; with a definition's number, those that it made.
    std::int64_t Run(CodeMaker& maker, std::int64_t definition = 0);

    [[nodiscard]] std::int64_t Foreign() const noexcept {
        return mvarForeign;
    }                                                                         // codes that the maker cannot take apart
    [[nodiscard]] std::int64_t Shared() const noexcept { return mvarShared; } // codes whose number another one holds
    [[nodiscard]] const SealSum& Sum() const noexcept { return mvarSum; }     // of the rows that were added

  private:
    void Count(CodeMaker& maker, const CodeRow& code);
    void Add(const CodeRow& code, NumberHeld held);

    std::int64_t mvarRuleId;
    Codes mvarCodes;
    std::int64_t mvarAct;
    std::set<NumberHeld> mvarTaken;
    SealSum mvarSum;
    std::int64_t mvarForeign = 0;
    std::int64_t mvarShared = 0;
};

} // namespace ledger
