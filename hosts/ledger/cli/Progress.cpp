#include "hosts/ledger/cli/Progress.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace ledger {

namespace {

constexpr std::size_t Width = 40;
constexpr std::chrono::milliseconds Between{200};

bool SomebodyWatches() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
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
    const std::size_t filled = mvarDone * Width / mvarTotal;
    const std::string bar = std::string(filled, '#') + std::string(Width - filled, '.');
    std::fprintf(stderr, "\r[%s] %zu of %zu", bar.c_str(), mvarDone, mvarTotal);
    std::fflush(stderr);
}

void Progress::Clear() {
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(Width) + 40, "");
    std::fflush(stderr);
}

} // namespace ledger
