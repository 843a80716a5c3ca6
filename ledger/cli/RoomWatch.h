// Tells while codes are issued which series will soon have no number left.
#pragma once

#include <set>

#include "ledger/cli/Output.h"
#include "ledger/core/Issuer.h"

namespace ledger {

class RoomWatch {
  public:
    // Of a series at least `warnPercent` of all its numbers must be left; at 0 nothing is told. The output outlives
    // this.
    RoomWatch(const Output& output, unsigned warnPercent) noexcept : mvarOutput(output), mvarWarnPercent(warnPercent) {}

    // Tells of those that have less left, of each once, and once more when it is full: people on standard error,
    // programs by a line of its own.
    void Look(const std::vector<SeriesRoom>& rooms);

  private:
    void Tell(const SeriesRoom& room) const;

    const Output& mvarOutput;
    unsigned mvarWarnPercent;
    std::set<std::tuple<std::wstring, std::wstring, bool>> mvarTold; // band, series, and whether it was full
};

} // namespace ledger
