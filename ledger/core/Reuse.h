// Numbers of void codes that are given again, in rules that allow it.
//
// The code that had the number leaves kestrel_codes for kestrel_reused, as it was; an act in the journal tells both
// codes and their seals. The number stays in its place and keeps its seal, which goes on covering the code that had it
// first, so that the chain of its series holds.
#pragma once

#include <optional>

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"

namespace ledger {

struct FreeNumber {
    std::int64_t number = 0;
    std::wstring code; // the void one
};

// A void code whose number was given again.
struct ReusedCode {
    CodeRow row; // its reuseAct is set
    std::wstring successor;
};

// What Lowest asks, so that its plan can be looked at: rule, band and series, and the same again.
extern const wchar_t* const LowestFreeQuery;

// The seal of a code by itself.
[[nodiscard]] std::wstring SealOf(std::int64_t ruleId, const CodeRow& code);

// The code that an act of reuse gave the number to.
[[nodiscard]] std::wstring SuccessorIn(const Act& act);

// Members run in the caller's transaction and fail with DbError.
class Reuse {
  public:
    Reuse(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // The lowest number of the series that waits, from `start` to `highest`.
    [[nodiscard]] std::optional<FreeNumber> Lowest(const std::wstring& band, const std::wstring& series,
                                                   std::int64_t start, std::int64_t highest);
    [[nodiscard]] bool HasAny();
    // Lets the numbers of a void code wait.
    void Free(const std::wstring& code);
    // Gives the number to a code. Fails with Fault::Conflict when somebody else just did.
    void Give(const FreeNumber& number, const CodeRow& code);
    // Makes the numbers that wait those of the void codes, or none where the rule does not allow it; returns how many
    // rows were not right.
    std::int64_t Refill(bool isAllowed);
    // Numbers that wait though their codes are not void, or the other way round.
    [[nodiscard]] std::vector<FreeNumber> Wrong(bool isAllowed);
    // In the order of the acts that gave their numbers away.
    [[nodiscard]] std::vector<CodeRow> All();
    // The newest of that text.
    [[nodiscard]] std::optional<ReusedCode> Find(const std::wstring& code);

  private:
    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

} // namespace ledger
