// Tells what an issuer would answer now, refusals included, and stores nothing.
#pragma once

#include <set>

#include "ledger/core/Forecast.h"

namespace ledger {

class DryIssuer final : public Issuer {
  public:
    // Fails with HostError on a rule that was retired.
    explicit DryIssuer(const Workplace& workplace)
        : mvarWorkplace(workplace), mvarCodes(workplace.database, workplace.rule.id), mvarForecast(workplace) {
        RefuseRetired(workplace.rule.settings, workplace.rule.name);
    }

    [[nodiscard]] std::size_t BatchSize() const noexcept override { return 200; }
    [[nodiscard]] std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) override;
    void Finish() override {}
    // Has the series of the values go on with that number, where they have not come so far.
    void GoOnWith(const FieldValues& values, std::int64_t next);

  private:
    // What was answered so far.
    struct State {
        Forecast::Place place;
        std::map<std::wstring, CodeRow> byTicket; // of those that were given
        std::set<std::wstring> made;              // codes of rules that number nothing come once
    };

    [[nodiscard]] Outcome Answer(State& state, const Request& request);
    [[nodiscard]] std::optional<CodeRow> OfTicket(const State& state, const Request& request);
    void RefuseRepeated(State& state, const std::wstring& code);

    Workplace mvarWorkplace;
    Codes mvarCodes;
    Forecast mvarForecast;
    State mvarState;
};

} // namespace ledger
