// A server reached through ODBC.
#pragma once

#include <map>

#include "ledger/db/Database.h"
#include "ledger/db/odbc/OdbcStatement.h"

namespace ledger {

class OdbcDatabase final : public Database {
  public:
    // The engine that the connection string's driver is for.
    OdbcDatabase(const std::wstring& connectionString, const OdbcEngine& engine);
    ~OdbcDatabase() override;

    void Connect() override;
    void Limit(const Deadline& deadline) noexcept override;
    void Begin(Access access) override;
    void Commit() override;
    void Rollback() noexcept override;
    [[nodiscard]] bool IsDead() const noexcept override;
    Statement& Prepare(const std::wstring& sql) override;
    [[nodiscard]] bool HasTable(const std::wstring& name) override;
    // Servers keep many things in one database.
    [[nodiscard]] bool IsForeign() override { return false; }
    [[nodiscard]] std::wstring TableText(std::wstring definition) const override;
    void KeepWritersOut(const std::wstring& table) override;
    void Confirm() override;
    [[nodiscard]] bool EntersByWriting() const noexcept override { return mvarEngine.entersByWriting; }
    [[nodiscard]] std::vector<EngineFact> Facts() override;

  private:
    struct Open; // a session and its statements
    [[nodiscard]] OdbcSession& Session();
    void Disconnect() noexcept;
    void CheckProduct(OdbcSession& session) const;
    [[nodiscard]] std::wstring Ask(const std::wstring& sql);

    const OdbcEngine& mvarEngine;
    std::wstring mvarConnectionString;
    Handle mvarEnvironment;
    Deadline mvarDeadline;
    bool mvarConfirmed = false; // in this transaction
    bool mvarIsOne = false;     // what it did is to be stored together
    std::unique_ptr<Open, void (*)(Open*)> mvarOpen;
};

} // namespace ledger
