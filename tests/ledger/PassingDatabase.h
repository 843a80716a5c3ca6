// A database that passes each call on to another one: what changes some of them is derived from it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ledger/db/Database.h"

class PassingDatabase : public ledger::Database {
  public:
    // The other database outlives this one.
    explicit PassingDatabase(ledger::Database& other) : mvarOther(other) {}

    void Connect() override { mvarOther.Connect(); }
    void Limit(const ledger::Deadline& deadline) noexcept override { mvarOther.Limit(deadline); }
    void Begin(ledger::Access access) override { mvarOther.Begin(access); }
    void Commit() override { mvarOther.Commit(); }
    void Rollback() noexcept override { mvarOther.Rollback(); }
    [[nodiscard]] bool IsDead() const noexcept override { return mvarOther.IsDead(); }
    ledger::Statement& Prepare(const std::wstring& sql) override { return mvarOther.Prepare(sql); }
    [[nodiscard]] bool HasTable(const std::wstring& name) override { return mvarOther.HasTable(name); }
    [[nodiscard]] bool IsForeign() override { return mvarOther.IsForeign(); }
    [[nodiscard]] std::wstring TableText(std::wstring definition) const override {
        return mvarOther.TableText(std::move(definition));
    }
    void KeepWritersOut(const std::wstring& table) override { mvarOther.KeepWritersOut(table); }
    void Confirm() override { mvarOther.Confirm(); }
    [[nodiscard]] bool EntersByWriting() const noexcept override { return mvarOther.EntersByWriting(); }
    [[nodiscard]] std::vector<ledger::EngineFact> Facts() override { return mvarOther.Facts(); }

  private:
    ledger::Database& mvarOther;
};
