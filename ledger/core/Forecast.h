// The codes that would be issued now, one after the other, without storing anything: nobody waits for it, and it takes
// nothing from anybody.
#pragma once

#include <map>

#include "ledger/core/Issuer.h"

namespace ledger {

class Forecast {
  public:
    using Place = std::map<std::pair<std::wstring, std::wstring>, std::int64_t>; // the last number by band and series

    explicit Forecast(const Workplace& workplace) : mvarWorkplace(workplace) {}

    // The code after all that are stored and those that this made before. Runs in the caller's transaction, which may
    // only read. Fails with RecordError when the rule refuses the values.
    [[nodiscard]] MadeCode Next(const FieldValues& values);

    // How far it has come, to go on from there once more.
    [[nodiscard]] const Place& Reached() const noexcept { return mvarLast; }
    void GoOnFrom(const Place& place) { mvarLast = place; }

  private:
    [[nodiscard]] std::optional<std::int64_t> NextNumber(const NumberBand& band, const std::wstring& series);
    [[nodiscard]] std::optional<std::int64_t> NextWaiting(const NumberBand& band, const std::wstring& series);

    Workplace mvarWorkplace;
    Place mvarLast;
    Place mvarGiven; // the highest number of a void code that was given again, likewise
};

} // namespace ledger
