// Issues each record by the first rule of a numbering that fits it, and by the next one when that is full.
#pragma once

#include <map>

#include "ledger/core/DryIssuer.h"
#include "ledger/core/NumberingFit.h"

namespace ledger {

class NumberingIssuer final : public Issuer {
  public:
    // The rules are those that the numbering names; a dry run stores nothing. Fails with HostError when one is missing.
    NumberingIssuer(Database& database, Patience patience, Numbering numbering, const std::vector<StoredRule>& rules,
                    const DateFormat& dates, bool isDry);

    [[nodiscard]] std::size_t BatchSize() const noexcept override;
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override;

  private:
    // A rule at work.
    struct Station {
        StoredRule rule;
        std::unique_ptr<CodeMaker> maker;
        std::unique_ptr<Issuer> issuer;
        DryIssuer* dry = nullptr; // the issuer, in a dry run
    };
    using Places = std::vector<std::size_t>; // among the requests

    void Equip(Station& station);
    void Remember(std::span<const Request> requests, const std::vector<Outcome>& outcomes);
    [[nodiscard]] Station& StationOf(std::size_t part);
    void LookForStored(std::span<const Request> requests, std::vector<Outcome>& outcomes);
    void Serve(std::size_t part, const Places& places, std::span<const Request> requests, std::size_t toCome,
               std::vector<Outcome>& outcomes);
    void GoOn(std::size_t part, const Request& request, Outcome& outcome);
    [[nodiscard]] std::optional<CodeRow> OfTicket(const std::wstring& ticket);

    Database& mvarDatabase;
    Patience mvarPatience;
    Numbering mvarNumbering;
    NumberingFit mvarFit;
    NumberingScope mvarScope;
    bool mvarIsDry;
    std::map<std::wstring, CodeRow> mvarTold; // by tickets that were given: what a dry run has answered
    std::vector<std::unique_ptr<Station>> mvarStations;
};

} // namespace ledger
