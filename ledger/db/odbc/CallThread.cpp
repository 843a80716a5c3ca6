#include "ledger/db/odbc/CallThread.h"

#include <windows.h>

#include <algorithm>
#include <utility>

namespace ledger {

namespace {

using std::chrono::steady_clock;

// A wait for longer than any call is meant to take is looked at again.
DWORD MillisecondsUntil(steady_clock::time_point end) {
    constexpr std::chrono::milliseconds longest{60'000};
    const auto now = steady_clock::now();
    if (end <= now) return 0;
    if (end - now >= longest) return static_cast<DWORD>(longest.count());
    return static_cast<DWORD>(std::chrono::ceil<std::chrono::milliseconds>(end - now).count());
}

} // namespace

// The platform's own lock: handing a call over and back costs as little as it can.
struct CallThread::State {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
    Call call;
    std::optional<int> result;
    bool ends = false;

    void Work() {
        AcquireSRWLockExclusive(&lock);
        for (;;) {
            while (!call && !ends)
                SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
            if (!call) break;
            const Call current = std::exchange(call, nullptr);
            ReleaseSRWLockExclusive(&lock);
            const int returned = current();
            AcquireSRWLockExclusive(&lock);
            result = returned;
            WakeAllConditionVariable(&changed);
        }
        ReleaseSRWLockExclusive(&lock);
    }
};

CallThread::CallThread() : mvarState(std::make_shared<State>()) {
    mvarThread = std::thread([state = mvarState] { state->Work(); });
}

CallThread::~CallThread() {
    AcquireSRWLockExclusive(&mvarState->lock);
    mvarState->ends = true;
    WakeAllConditionVariable(&mvarState->changed);
    ReleaseSRWLockExclusive(&mvarState->lock);
    if (mvarStuck)
        mvarThread.detach();
    else
        mvarThread.join();
}

std::optional<int> CallThread::Run(Call call, steady_clock::time_point end) {
    State& state = *mvarState;
    AcquireSRWLockExclusive(&state.lock);
    state.result.reset();
    state.call = std::move(call);
    WakeAllConditionVariable(&state.changed);
    while (!state.result && steady_clock::now() < end)
        SleepConditionVariableSRW(&state.changed, &state.lock, MillisecondsUntil(end), 0);
    const std::optional<int> result = state.result;
    ReleaseSRWLockExclusive(&state.lock);
    mvarStuck = !result;
    return result;
}

} // namespace ledger
