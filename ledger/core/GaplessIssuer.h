// Each code gets its number in the transaction that stores it: the component asks for the highest number of the series,
// adds one, and the key on the number decides between programs that did so at once. The loser reads again.
//
// No number is ever skipped: a number is taken only by a transaction that stores it, and the highest one that anybody
// reads is stored for good.
#pragma once

#include "ledger/core/Issuer.h"
#include "ledger/core/KnownEnds.h"
#include "ledger/core/Reuse.h"

namespace ledger {

class GaplessIssuer final : public Issuer {
  public:
    explicit GaplessIssuer(const Workplace& workplace)
        : mvarWorkplace(workplace), mvarCodes(workplace.database, workplace.rule.id),
          mvarReuse(workplace.database, workplace.rule.id),
          mvarClaims(workplace.database, workplace.rule.id, workplace.scope) {}

    [[nodiscard]] std::size_t BatchSize() const noexcept override { return 1; }
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override {}

  private:
    // The seals that the numbers of bands continue; a band whose series begins has none.
    using Heads = std::vector<std::pair<std::wstring, std::wstring>>;

    struct Draft {
        NewCode code;
        std::optional<FreeNumber> free;  // of a void code; it has a place and a seal
        std::vector<NumberHeld> guessed; // ends of series that the code's numbers go on from
    };

    [[nodiscard]] Outcome IssueOne(const Request& request);
    [[nodiscard]] Draft MakeNext(const Request& request, bool mayGuess);
    // Where the number goes on, and perhaps a guess.
    [[nodiscard]] std::optional<HighestNumber> EndOf(const std::wstring& band, const std::wstring& series,
                                                     bool mayGuess, Draft& draft);
    // Makes and stores the next code; a wrong guess takes a second draft. `tried` is what the attempt before made.
    [[nodiscard]] NewCode StoreNext(const Request& request, bool mayGuess, std::wstring& tried);
    [[nodiscard]] bool Store(const Draft& draft, std::wstring& tried);
    void SealNumbers(NewCode& code, const Heads& before) const;
    void RefuseRepeated(const NewCode& code, const std::wstring& before);

    Workplace mvarWorkplace;
    Codes mvarCodes;
    Reuse mvarReuse;
    Claims mvarClaims;
    KnownEnds mvarEnds;
};

} // namespace ledger
