#include "ledger/cli/StopSignal.h"

#include <windows.h>

#include <atomic>

namespace ledger {

namespace {

std::atomic<bool>& Stopped() noexcept {
    static std::atomic<bool> stopped{false};
    return stopped;
}

// Called on a thread of the system's own.
BOOL WINAPI Note(DWORD) noexcept {
    Stopped() = true;
    return TRUE;
}

} // namespace

StopSignal::StopSignal() {
    Stopped() = false;
    // A program started without a console may have been told to ignore it.
    SetConsoleCtrlHandler(nullptr, FALSE);
    SetConsoleCtrlHandler(Note, TRUE);
}

StopSignal::~StopSignal() { SetConsoleCtrlHandler(Note, FALSE); }

bool WasStopped() noexcept { return Stopped(); }

} // namespace ledger
