// A thread for calls that may never return: a driver waits for its server as long as the system lets it, and cannot be
// told to stop. Whoever waits here waits no longer than he wants, and leaves the thread behind.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace ledger {

class CallThread {
  public:
    using Call = std::function<int()>;

    CallThread();
    CallThread(const CallThread&) = delete; // one thread
    CallThread& operator=(const CallThread&) = delete;
    ~CallThread();

    // What the call returns; nothing when it has not returned by then. The call must own what it uses, or live as long
    // as the process: it may still be under way. After that nothing more can be called.
    [[nodiscard]] std::optional<int> Run(Call call, std::chrono::steady_clock::time_point end);
    [[nodiscard]] bool IsStuck() const noexcept { return mvarStuck; }

  private:
    struct State;

    std::shared_ptr<State> mvarState; // the thread's as well
    std::thread mvarThread;
    bool mvarStuck = false;
};

} // namespace ledger
