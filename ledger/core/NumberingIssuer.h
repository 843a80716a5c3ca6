// Issues each record by the first rule of a numbering that fits it, and by the next one when that is full.
#pragma once

#include "ledger/core/Issuer.h"
#include "ledger/core/Numberings.h"

namespace ledger {

class NumberingIssuer final : public Issuer {
  public:
    // The rules are those that the numbering names. Fails with HostError when one is missing.
    NumberingIssuer(Database& database, Patience patience, Numbering numbering, const std::vector<StoredRule>& rules,
                    const DateFormat& dates);

    [[nodiscard]] std::size_t BatchSize() const noexcept override;
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override;

  private:
    // A rule at work.
    struct Station {
        StoredRule rule;
        std::unique_ptr<CodeMaker> maker;
        std::unique_ptr<Issuer> issuer;
    };
    using Places = std::vector<std::size_t>; // among the requests

    [[nodiscard]] std::size_t Fitting(const Request& request, std::size_t from) const;
    [[nodiscard]] Station& StationOf(std::size_t part);
    void LookForStored(std::span<const Request> requests, std::vector<Outcome>& outcomes);
    void Serve(std::size_t part, const Places& places, std::span<const Request> requests, std::size_t toCome,
               std::vector<Outcome>& outcomes);
    void GoOn(std::size_t part, const Request& request, Outcome& outcome);

    Database& mvarDatabase;
    Patience mvarPatience;
    Numbering mvarNumbering;
    NumberingScope mvarScope;
    std::vector<std::unique_ptr<Station>> mvarStations;
};

} // namespace ledger
