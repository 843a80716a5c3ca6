// A connection to a database through ODBC, always in transactions. What is used is standard SQL, and nothing is kept in
// the session, so that a connection that was lost is replaced by another one.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "ledger/db/Statement.h"

namespace ledger {

class Database {
  public:
    // Connects; every member fails with DbError.
    explicit Database(std::wstring connectionString);

    // The statement of that text, ready for its parameters; prepared once per connection.
    Statement& Prepare(const std::wstring& sql);
    // Executes a statement without parameters or rows.
    void Run(const std::wstring& sql) { Prepare(sql).Execute(); }
    void Commit();
    // Undoes the transaction, if the connection still can.
    void Rollback() noexcept;
    // A new connection in place of the old one, with the old one's transaction undone.
    void Reconnect();
    // Whether the connection is known to be gone, which not every error of a lost one says.
    [[nodiscard]] bool IsDead() const noexcept;

    [[nodiscard]] bool HasTable(const std::wstring& name);
    // Whether one transaction at a time can write: then it pays to take the right to write first, because one who has
    // read cannot get it any more when another has written since.
    [[nodiscard]] bool HasOneWriter() const noexcept { return mvarHasOneWriter; }

  private:
    void Connect();
    [[nodiscard]] std::wstring ProductName() const;

    std::wstring mvarConnectionString;
    Handle mvarEnvironment;
    struct Session; // ended in the right order: statements, connection
    std::unique_ptr<Session, void (*)(Session*)> mvarSession;
    bool mvarHasOneWriter = false;
};

} // namespace ledger
