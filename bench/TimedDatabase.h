// A database whose calls are timed: it passes each of them on to the one that it wraps.
#pragma once

#include <array>
#include <map>

#include "ledger/db/Database.h"

namespace bench {

enum class Step { Begin, Read, Write, Commit };

class TimedDatabase final : public ledger::Database {
  public:
    // The wrapped database outlives this one.
    explicit TimedDatabase(ledger::Database& database);
    TimedDatabase(const TimedDatabase&) = delete; // its statements belong to it
    TimedDatabase& operator=(const TimedDatabase&) = delete;
    ~TimedDatabase() override;

    [[nodiscard]] std::chrono::steady_clock::duration Spent(Step step) const noexcept {
        return mvarSpent[static_cast<std::size_t>(step)];
    }

    void Connect() override { mvarDatabase.Connect(); }
    void Limit(const ledger::Deadline& deadline) noexcept override { mvarDatabase.Limit(deadline); }
    void Begin(ledger::Access access) override;
    void Commit() override;
    void Rollback() noexcept override { mvarDatabase.Rollback(); }
    [[nodiscard]] bool IsDead() const noexcept override { return mvarDatabase.IsDead(); }
    ledger::Statement& Prepare(const std::wstring& sql) override;
    [[nodiscard]] bool HasTable(const std::wstring& name) override { return mvarDatabase.HasTable(name); }
    [[nodiscard]] bool IsForeign() override { return mvarDatabase.IsForeign(); }
    [[nodiscard]] std::wstring TableText(std::wstring definition) const override {
        return mvarDatabase.TableText(std::move(definition));
    }
    void KeepWritersOut(const std::wstring& table) override { mvarDatabase.KeepWritersOut(table); }
    void Confirm() override { mvarDatabase.Confirm(); }
    [[nodiscard]] bool EntersByWriting() const noexcept override { return mvarDatabase.EntersByWriting(); }
    [[nodiscard]] std::vector<ledger::EngineFact> Facts() override { return mvarDatabase.Facts(); }

  private:
    class TimedStatement;

    template <class Call>
    void Time(Step step, const Call& call) {
        const auto begin = std::chrono::steady_clock::now();
        call();
        mvarSpent[static_cast<std::size_t>(step)] += std::chrono::steady_clock::now() - begin;
    }

    ledger::Database& mvarDatabase;
    std::array<std::chrono::steady_clock::duration, 4> mvarSpent{};
    std::map<std::wstring, std::unique_ptr<TimedStatement>> mvarStatements; // by their texts
};

} // namespace bench
