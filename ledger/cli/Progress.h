// A progress bar on standard error, for people who wait; nothing is drawn where nobody watches.
#pragma once

#include <chrono>
#include <cstddef>

namespace ledger {

class Progress {
  public:
    // Draws only when standard error is a console.
    explicit Progress(std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete; // one bar, one line of the console
    Progress& operator=(const Progress&) = delete;

    void Advance(std::size_t done);

  private:
    void Draw() const;
    static void Clear();

    std::size_t mvarTotal;
    std::size_t mvarDone = 0;
    bool mvarShown;
    std::chrono::steady_clock::time_point mvarDrawn;
};

} // namespace ledger
