#include "ledger/db/Transaction.h"

#include <algorithm>
#include <random>
#include <thread>

namespace ledger {

namespace {

using std::chrono::steady_clock;

constexpr unsigned LongestPause = 200; // milliseconds
constexpr unsigned Doublings = 7;
constexpr std::chrono::milliseconds ShortestCall{1000};

unsigned RandomUpTo(unsigned longest) {
    static std::minstd_rand generator(std::random_device{}());
    return std::uniform_int_distribution<unsigned>(1, longest)(generator);
}

} // namespace

void Patience::Begin() noexcept { mvarEnd = steady_clock::now() + mvarLongest; }

bool Patience::Wait() {
    if (mvarEnd == steady_clock::time_point{}) Begin();
    const auto now = steady_clock::now();
    if (now >= mvarEnd) return false;
    const unsigned longest = std::min(LongestPause, 2U << std::min(mvarAttempts, Doublings));
    ++mvarAttempts;
    std::this_thread::sleep_for(std::chrono::milliseconds(RandomUpTo(longest)));
    return true;
}

Deadline Patience::ForCalls() const noexcept {
    const auto each = std::max(mvarLongest / 2, ShortestCall);
    return {std::max(mvarEnd, steady_clock::now() + ShortestCall), each};
}

void ConnectPatiently(Database& database, Patience& patience) {
    for (;;) {
        try {
            database.Limit(patience.ForCalls());
            return database.Connect();
        } catch (const DbError& error) {
            if (!error.MayRetry() || !patience.Wait()) throw;
        }
    }
}

Attempts::Attempts(Database& database, Patience patience, OnUniqueKey onUniqueKey)
    : mvarDatabase(database), mvarPatience(patience), mvarOnUniqueKey(onUniqueKey) {
    mvarPatience.Begin();
    mvarDatabase.SetInDoubt(false);
}

void Attempts::Begin(Access access) {
    mvarCommitting = false;
    mvarDatabase.Limit(mvarPatience.ForCalls());
    mvarDatabase.Begin(access);
}

void Attempts::Commit() {
    mvarCommitting = true;
    mvarDatabase.Commit();
    mvarDatabase.SetInDoubt(false);
}

bool Attempts::MayRetry(const DbError& error) const {
    return error.MayRetry() || mvarDatabase.IsDead() ||
           (error.Kind() == Fault::UniqueKey && mvarOnUniqueKey == OnUniqueKey::Retry);
}

void Attempts::Failed(const DbError& error) {
    const bool isLost = error.NeedsConnection() || mvarDatabase.IsDead();
    if (isLost && mvarCommitting) mvarDatabase.SetInDoubt(true);
    mvarDatabase.Rollback();
    if (!MayRetry(error) || !mvarPatience.Wait()) throw; // what the caller is handling
    if (isLost) ConnectPatiently(mvarDatabase, mvarPatience);
}

void Attempts::GiveUp() noexcept { mvarDatabase.Rollback(); }

} // namespace ledger
