#include "ledger/db/Transaction.h"

#include <algorithm>
#include <random>
#include <thread>

namespace ledger {

namespace {

constexpr unsigned LongestPause = 200; // milliseconds
constexpr unsigned Doublings = 7;

unsigned RandomUpTo(unsigned longest) {
    static std::minstd_rand generator(std::random_device{}());
    return std::uniform_int_distribution<unsigned>(1, longest)(generator);
}

} // namespace

bool Patience::Wait() {
    const auto now = std::chrono::steady_clock::now();
    if (mvarAttempts == 0) mvarEnd = now + mvarLongest;
    if (now >= mvarEnd) return false;
    const unsigned longest = std::min(LongestPause, 2U << std::min(mvarAttempts, Doublings));
    ++mvarAttempts;
    std::this_thread::sleep_for(std::chrono::milliseconds(RandomUpTo(longest)));
    return true;
}

bool PrepareRetry(Database& database, Patience& patience, OnUniqueKey onUniqueKey, const DbError& error) {
    const bool isUniqueKey = error.Kind() == Fault::UniqueKey && onUniqueKey == OnUniqueKey::Retry;
    const bool isLost = error.Kind() == Fault::Lost || database.IsDead();
    if (!isUniqueKey && !isLost && !error.MayRetry()) return false;
    if (!patience.Wait()) return false;
    while (isLost) {
        try {
            database.Reconnect();
            return true;
        } catch (const DbError&) { // not there yet
            if (!patience.Wait()) return false;
        }
    }
    return true;
}

} // namespace ledger
