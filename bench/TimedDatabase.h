// A database whose calls are timed.
#pragma once

#include <array>
#include <chrono>
#include <map>
#include <memory>

#include "ledger/PassingDatabase.h"

namespace bench {

enum class Step { Begin, Read, Write, Commit };

class TimedDatabase final : public PassingDatabase {
  public:
    // The other database outlives this one.
    explicit TimedDatabase(ledger::Database& other);
    TimedDatabase(const TimedDatabase&) = delete; // its statements belong to it
    TimedDatabase& operator=(const TimedDatabase&) = delete;
    ~TimedDatabase() override;

    [[nodiscard]] std::chrono::steady_clock::duration Spent(Step step) const noexcept {
        return mvarSpent[static_cast<std::size_t>(step)];
    }

    void Begin(ledger::Access access) override;
    void Commit() override;
    ledger::Statement& Prepare(const std::wstring& sql) override;

  private:
    class TimedStatement;

    template <class Call>
    void Time(Step step, const Call& call) {
        const auto begin = std::chrono::steady_clock::now();
        call();
        mvarSpent[static_cast<std::size_t>(step)] += std::chrono::steady_clock::now() - begin;
    }

    std::array<std::chrono::steady_clock::duration, 4> mvarSpent{};
    std::map<std::wstring, std::unique_ptr<TimedStatement>> mvarStatements; // by their texts
};

} // namespace bench
