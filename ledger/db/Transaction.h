// A transaction that is tried until it is stored, as far as trying helps.
#pragma once

#include <chrono>

#include "ledger/db/Database.h"

namespace ledger {

// How long to try, and the pauses between two attempts: short ones first, each of a random length, so that programs
// that got into each other's way do not meet again.
class Patience {
  public:
    explicit Patience(std::chrono::milliseconds longest) noexcept : mvarLongest(longest) {}

    // Waits; false, without waiting, when the time is over. The time begins with the first call.
    [[nodiscard]] bool Wait();

  private:
    std::chrono::milliseconds mvarLongest;
    std::chrono::steady_clock::time_point mvarEnd{};
    unsigned mvarAttempts = 0;
};

enum class OnUniqueKey { Fail, Retry };

// Whether another attempt makes sense after the error, with the wait before it and the connection made anew where it
// was lost. The transaction has been undone.
[[nodiscard]] bool PrepareRetry(Database& database, Patience& patience, OnUniqueKey onUniqueKey, const DbError& error);

// Runs the body and commits; what the body returns is returned. The body runs again after a conflict, a busy database
// or a lost connection (and, when asked for, a key already used): it must read again whatever it decides by. Other
// errors and what lasts longer than the patience undo the transaction and go on to the caller.
template <class Body>
auto InTransaction(Database& database, Patience patience, OnUniqueKey onUniqueKey, Body&& body) {
    for (;;) {
        try {
            auto result = body();
            database.Commit();
            return result;
        } catch (const DbError& error) {
            database.Rollback();
            if (!PrepareRetry(database, patience, onUniqueKey, error)) throw;
        } catch (...) { // undone, and the caller's to handle
            database.Rollback();
            throw;
        }
    }
}

} // namespace ledger
