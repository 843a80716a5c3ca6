// What a numbering has issued: the keys of the claims let no request have two codes in it, and no code come twice,
// though its rules know nothing of each other.
#pragma once

#include <span>
#include <vector>

#include "ledger/core/Codes.h"

namespace ledger {

// Of the numbering that a code is issued by; of no numbering, when the code is issued by its rule alone.
struct NumberingScope {
    std::int64_t id = 0;
    std::vector<std::int64_t> rules; // that its parts name
};

// What Remove does, so that its plan can be looked at: numbering, code and rule.
extern const wchar_t* const RemoveClaimQuery;

// Members run in the caller's transaction and fail with DbError.
class Claims {
  public:
    Claims(Database& database, std::int64_t ruleId, const NumberingScope* scope)
        : mvarDatabase(database), mvarRuleId(ruleId), mvarScope(scope) {}

    // The code that a request has, from whichever rule of the numbering.
    [[nodiscard]] std::optional<CodeRow> OfTicket(const std::wstring& ticket);
    // Fails with Fault::UniqueKey when the numbering has issued the code, or another one for the ticket.
    void Add(std::span<const NewCode> codes);
    // The code's number is given to another one: whichever numbering issued the code has no claim to it any more.
    void Remove(const std::wstring& code);
    [[nodiscard]] const wchar_t* Origin() const noexcept { return mvarScope == nullptr ? L"issued" : Numbered; }

  private:
    Database& mvarDatabase;
    std::int64_t mvarRuleId;
    const NumberingScope* mvarScope;
};

} // namespace ledger
