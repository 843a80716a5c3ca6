#include "ledger/cli/Progress.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace ledger {

namespace {

constexpr std::size_t BarWidth = 40;
constexpr std::chrono::milliseconds Between{200};

bool SomebodyWatches() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

// A bar that cannot be shown is not worth a word.
void Show(const std::string& text) {
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
    static_cast<void>(std::fflush(stderr));
}

} // namespace

Progress::Progress(std::size_t total)
    : mvarTotal(total), mvarShown(total > 0 && SomebodyWatches()), mvarDrawn(std::chrono::steady_clock::now()) {}

Progress::~Progress() {
    if (mvarShown) Clear();
}

void Progress::Advance(std::size_t done) {
    mvarDone += done;
    const auto now = std::chrono::steady_clock::now();
    if (!mvarShown || now - mvarDrawn < Between) return;
    mvarDrawn = now;
    Draw();
}

void Progress::Draw() const {
    const std::size_t filled = mvarDone * BarWidth / mvarTotal;
    const std::string bar = std::string(filled, '#') + std::string(BarWidth - filled, '.');
    Show("\r[" + bar + "] " + std::to_string(mvarDone) + " of " + std::to_string(mvarTotal));
}

void Progress::Clear() { Show("\r" + std::string(BarWidth + 40, ' ') + "\r"); }

} // namespace ledger
