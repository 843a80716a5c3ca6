// Each code gets its number in the transaction that stores it: the component asks for the highest number of the series,
// adds one, and the key on the number decides between programs that did so at once. The loser reads again.
//
// No number is ever skipped: a number is taken only by a transaction that stores it, and the highest one that anybody
// reads is stored for good.
#pragma once

#include "ledger/core/Issuer.h"

namespace ledger {

class GaplessIssuer final : public Issuer {
  public:
    explicit GaplessIssuer(const Workplace& workplace)
        : mvarWorkplace(workplace), mvarCodes(workplace.database, workplace.rule.id) {}

    [[nodiscard]] std::size_t BatchSize() const noexcept override { return 1; }
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override {}

  private:
    [[nodiscard]] Outcome IssueOne(const Request& request);
    [[nodiscard]] NewCode MakeNext(const Request& request);
    void SealNumbers(NewCode& code, const std::vector<std::wstring>& before) const;
    void RefuseRepeated(const NewCode& code, const std::wstring& before);

    Workplace mvarWorkplace;
    Codes mvarCodes;
};

} // namespace ledger
