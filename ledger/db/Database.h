// A connection to a database, whatever its engine. What is used is standard SQL, and nothing is kept in the session but
// settings, so that a connection that was lost is replaced by another one. What engines do differently stands in their
// folders and in the members below that ask for it.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "ledger/db/DbError.h"
#include "ledger/db/Statement.h"

namespace ledger {

enum class Access {
    Read,  // one consistent state from the first statement to the last, in nobody's way
    Write, // as if no other transaction had run meanwhile
    Define // as Write, for changes of the tables themselves, each of which some engines store at once
};

// How long the calls of a connection may take: each of them so long, and none beyond the end.
struct Deadline {
    std::chrono::steady_clock::time_point end;
    std::chrono::milliseconds each;
};

// What an engine promises as it is set up here, for people to read.
struct EngineFact {
    std::wstring name;
    std::wstring value;
    std::wstring warning; // what is not kept, and what to do about it; empty when all is well
    bool losesCommits = false;
};

// Every member fails with DbError unless it says otherwise.
class Database {
  public:
    Database() = default;
    Database(const Database&) = delete; // one connection, one owner
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    // Connects, in place of a connection that there may be, whose transaction is undone.
    virtual void Connect() = 0;
    // Binds the calls that follow; without it none is bound.
    virtual void Limit(const Deadline& deadline) noexcept = 0;

    // Begins a transaction. Statements outside of one are not allowed.
    virtual void Begin(Access access) = 0;
    // Stores all of the transaction or fails.
    virtual void Commit() = 0;
    // Undoes the transaction, if the connection still can; never fails.
    virtual void Rollback() noexcept = 0;
    // Whether the connection is known to be gone, which not every error of a lost one says.
    [[nodiscard]] virtual bool IsDead() const noexcept = 0;

    // The statement of that text, ready for its parameters; prepared once per connection.
    virtual Statement& Prepare(const std::wstring& sql) = 0;
    // Executes a statement without parameters or rows.
    void Run(const std::wstring& sql) { Prepare(sql).Execute(); }

    [[nodiscard]] virtual bool HasTable(const std::wstring& name) = 0;
    // Whether the database is a file of something else, in which a ledger has no business.
    [[nodiscard]] virtual bool IsForeign() = 0;
    // A table definition as the engine takes it: TEXT(n) becomes its type for texts of up to n characters, LONGTEXT
    // that for longer ones; both compare by their characters' codes.
    [[nodiscard]] virtual std::wstring TableText(std::wstring definition) const = 0;
    // To be called first in a transaction that changes much: nobody else writes to the table until it ends, where the
    // engine would otherwise let them and then have to undo one of the two.
    virtual void KeepWritersOut(const std::wstring& table) = 0;
    // Makes the COMMIT of a transaction that only found what somebody stored wait for all that storing it waits for: a
    // server that came back after a crash shows rows that the standbys may lack which take over from it.
    virtual void Confirm() = 0;
    // Whether a transaction that relies on a row that it has only read must write that row to be sure of it.
    [[nodiscard]] virtual bool EntersByWriting() const noexcept = 0;
    [[nodiscard]] virtual std::vector<EngineFact> Facts() = 0;

    // Whether the last transaction failed after a COMMIT that was never answered, so that it may be stored, or may be
    // yet. Kept by InTransaction.
    [[nodiscard]] bool IsInDoubt() const noexcept { return mvarInDoubt; }
    void SetInDoubt(bool inDoubt) noexcept { mvarInDoubt = inDoubt; }

  private:
    bool mvarInDoubt = false;
};

} // namespace ledger
