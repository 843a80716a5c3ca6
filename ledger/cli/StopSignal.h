// Ctrl-C and its like: a run ends after the transaction in hand, instead of in the middle of it.
#pragma once

namespace ledger {

// While one lives, a signal to end is only noted.
class StopSignal {
  public:
    StopSignal();
    StopSignal(const StopSignal&) = delete; // one per process
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal();
};

// Whether there was such a signal.
[[nodiscard]] bool WasStopped() noexcept;

} // namespace ledger
