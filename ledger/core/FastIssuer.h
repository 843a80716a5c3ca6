// Numbers come from blocks that this program has set aside, and codes are stored many at a time.
//
// A number that was set aside and not used is a gap; its lease tells of it.
#pragma once

#include <map>

#include "ledger/core/Issuer.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Reuse.h"

namespace ledger {

class FastIssuer final : public Issuer {
  public:
    explicit FastIssuer(const Workplace& workplace)
        : mvarWorkplace(workplace), mvarCodes(workplace.database, workplace.rule.id),
          mvarLeases(workplace.database, workplace.rule.id), mvarReuse(workplace.database, workplace.rule.id),
          mvarClaims(workplace.database, workplace.rule.id, workplace.scope) {}

    [[nodiscard]] std::size_t BatchSize() const noexcept override;
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override;

  private:
    struct Block {
        Lease lease;
        std::int64_t next = 0; // beyond the lease's end when it is used up
    };
    using LeaseKey = NumberHeld; // band, series and first number

    [[nodiscard]] NewCode MakeNext(const Request& request);
    [[nodiscard]] std::int64_t NextNumber(const NumberBand& band, const std::wstring& series);
    void TakeBlock(Block& block, const NumberBand& band, const std::wstring& series);
    [[nodiscard]] std::vector<NumberRow> UseNumbers(std::vector<NumberHeld>&& numbers);
    // Gives the numbers that wait, each in a transaction of its own.
    void GiveAgain(std::span<const Request> requests, std::vector<Outcome>& outcomes);
    [[nodiscard]] Outcome GiveOne(const Request& request);
    void LookForStored(std::span<const Request> requests, std::vector<Outcome>& outcomes);
    [[nodiscard]] std::vector<NewCode> MakeAll(std::span<const Request> requests, std::vector<Outcome>& outcomes);
    void StoreAll(std::vector<NewCode> codes, std::span<const Request> requests, std::vector<Outcome>& outcomes);
    [[nodiscard]] bool StoreTogether(std::vector<NewCode>& codes);
    [[nodiscard]] bool IsTaken(const NewCode& code);
    [[nodiscard]] Outcome StoreAlone(NewCode code, const Request& request);
    void SealNumbers(NewCode& code, std::map<LeaseKey, std::wstring>& heads) const;
    [[nodiscard]] std::map<LeaseKey, std::wstring> StoredHeads(const NewCode& code);
    // Those of which the last number was wasted; the others are used up now.
    [[nodiscard]] std::vector<Lease> MarkUsedUp();

    Workplace mvarWorkplace;
    Codes mvarCodes;
    Leases mvarLeases;
    Reuse mvarReuse;
    Claims mvarClaims;
    std::map<std::pair<std::wstring, std::wstring>, Block> mvarBlocks; // by band and series
    std::map<LeaseKey, std::wstring> mvarHeads;                        // the newest seals of the leases at work
    std::vector<Lease> mvarUsedUp;                                     // kept until their codes are stored
    std::size_t mvarToCome = 0;                                        // requests that still want a number
};

} // namespace ledger
