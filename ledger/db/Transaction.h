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

    // The time begins; without it, it begins with the first Wait.
    void Begin() noexcept;
    // Waits; false, without waiting, when the time is over.
    [[nodiscard]] bool Wait();
    // For the calls of a connection: half of the time each, so that one that is never answered leaves time for another.
    [[nodiscard]] Deadline ForCalls() const noexcept;

  private:
    std::chrono::milliseconds mvarLongest;
    std::chrono::steady_clock::time_point mvarEnd{};
    unsigned mvarAttempts = 0;
};

enum class OnUniqueKey { Fail, Retry };

// Tries to connect until the patience ends; for a new database object and for one whose connection was lost.
void ConnectPatiently(Database& database, Patience& patience);

// What the attempts at one transaction know of each other.
class Attempts {
  public:
    Attempts(Database& database, Patience patience, OnUniqueKey onUniqueKey);

    void Begin(Access access);
    void Commit();
    // To be called while the error is handled. Undoes the transaction. Returns when another attempt makes sense, with
    // the wait before it over and the connection made anew where it was lost; throws the same error otherwise.
    void Failed(const DbError& error);
    // Undoes the transaction, for good.
    void GiveUp() noexcept;

  private:
    [[nodiscard]] bool MayRetry(const DbError& error) const;

    Database& mvarDatabase;
    Patience mvarPatience;
    OnUniqueKey mvarOnUniqueKey;
    bool mvarCommitting = false;
};

template <class Body>
auto InTransaction(Database& database, Patience patience, OnUniqueKey onUniqueKey, Access access, Body&& body) {
    Attempts attempts(database, patience, onUniqueKey);
    for (;;) {
        try {
            attempts.Begin(access);
            auto result = body();
            attempts.Commit();
            return result;
        } catch (const DbError& error) {
            attempts.Failed(error);
        } catch (...) { // undone, and the caller's to handle
            attempts.GiveUp();
            throw;
        }
    }
}

// Runs the body and commits; what the body returns is returned. The body runs again after a conflict, a busy database
// or a lost connection (and, when asked for, a key already used): it must read again whatever it decides by, and look
// first whether an attempt before was stored after all. Other errors and what lasts longer than the patience undo the
// transaction and go on to the caller.
template <class Body>
auto InTransaction(Database& database, Patience patience, OnUniqueKey onUniqueKey, Body&& body) {
    return InTransaction(database, patience, onUniqueKey, Access::Write, std::forward<Body>(body));
}

// The same for a body that only reads: it sees one state of the database, however long it takes.
template <class Body>
auto InSnapshot(Database& database, Patience patience, Body&& body) {
    return InTransaction(database, patience, OnUniqueKey::Fail, Access::Read, std::forward<Body>(body));
}

} // namespace ledger
