// The embedded engine: a file, changed by one transaction at a time.
#pragma once

#include <map>

#include "ledger/db/Database.h"
#include "ledger/db/sqlite/FileIdentity.h"
#include "ledger/db/sqlite/SqliteStatement.h"

namespace ledger {

class SqliteDatabase final : public Database {
  public:
    // The file's full name. It is made on the first connection.
    explicit SqliteDatabase(std::wstring file);
    ~SqliteDatabase() override;

    void Connect() override;
    void Limit(const Deadline& deadline) noexcept override { mvarEnd = deadline.end; }
    void Begin(Access access) override;
    void Commit() override;
    void Rollback() noexcept override;
    [[nodiscard]] bool IsDead() const noexcept override { return !mvarConnection; }
    Statement& Prepare(const std::wstring& sql) override;
    [[nodiscard]] bool HasTable(const std::wstring& name) override;
    [[nodiscard]] bool IsForeign() override;
    [[nodiscard]] std::wstring TableText(std::wstring definition) const override;
    void KeepWritersOut(const std::wstring&) override {}
    void Confirm() override {}
    // Who writes holds the only right to write from the beginning of the transaction on.
    [[nodiscard]] bool EntersByWriting() const noexcept override { return false; }
    [[nodiscard]] std::vector<EngineFact> Facts() override;

  private:
    void Execute(const char* sql);
    [[nodiscard]] std::wstring Ask(const std::wstring& sql);
    void UseLog();
    void CheckFile() const;
    static int WaitWhileBusy(void* self, int calls) noexcept;

    std::wstring mvarFile;
    std::optional<FileIdentity> mvarIdentity;
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> mvarConnection;
    std::map<std::wstring, SqliteStatement> mvarStatements; // ended before the connection
    std::chrono::steady_clock::time_point mvarEnd = std::chrono::steady_clock::time_point::max();
    bool mvarWrites = false;
};

} // namespace ledger
