// A statement of the embedded engine.
#pragma once

#include <memory>

#include "ledger/db/Statement.h"
#include "ledger/db/sqlite/SqliteError.h"

namespace ledger {

class SqliteStatement final : public Statement {
  public:
    SqliteStatement(sqlite3* connection, const std::wstring& sql);

    Statement& Set(const std::wstring& text) override;
    Statement& Set(std::int64_t number) override;
    void Execute() override;
    [[nodiscard]] std::int64_t Changed() const override { return sqlite3_changes64(mvarConnection); }
    bool Fetch() override;
    [[nodiscard]] std::wstring Text(unsigned column) const override;
    [[nodiscard]] std::optional<std::int64_t> NumberIfAny(unsigned column) const override;
    void Close() noexcept override;

  private:
    // Whether there is a row.
    bool Step();

    sqlite3* mvarConnection;
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> mvarStatement;
    int mvarSet = 0;
    bool mvarHasRow = false; // the first one, which the execution has read already
};

} // namespace ledger
