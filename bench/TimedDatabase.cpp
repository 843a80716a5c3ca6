#include "bench/TimedDatabase.h"

namespace bench {

// Setting parameters and reading columns counts as well: it is part of what a statement costs.
class TimedDatabase::TimedStatement final : public ledger::Statement {
  public:
    TimedStatement(TimedDatabase& owner, ledger::Statement& statement, Step step)
        : mvarOwner(owner), mvarStatement(statement), mvarStep(step) {}

    Statement& Set(const std::wstring& text) override {
        mvarOwner.Time(mvarStep, [&] { mvarStatement.Set(text); });
        return *this;
    }
    Statement& Set(std::int64_t number) override {
        mvarOwner.Time(mvarStep, [&] { mvarStatement.Set(number); });
        return *this;
    }
    void Execute() override {
        mvarOwner.Time(mvarStep, [&] { mvarStatement.Execute(); });
    }
    [[nodiscard]] std::int64_t Changed() const override { return mvarStatement.Changed(); }
    bool Fetch() override {
        bool isRow = false;
        mvarOwner.Time(mvarStep, [&] { isRow = mvarStatement.Fetch(); });
        return isRow;
    }
    [[nodiscard]] std::wstring Text(unsigned column) const override { return mvarStatement.Text(column); }
    [[nodiscard]] std::optional<std::int64_t> NumberIfAny(unsigned column) const override {
        return mvarStatement.NumberIfAny(column);
    }
    void Close() noexcept override { mvarStatement.Close(); }

  private:
    TimedDatabase& mvarOwner;
    ledger::Statement& mvarStatement;
    Step mvarStep;
};

TimedDatabase::TimedDatabase(ledger::Database& other) : PassingDatabase(other) {}

TimedDatabase::~TimedDatabase() = default;

void TimedDatabase::Begin(ledger::Access access) {
    Time(Step::Begin, [&] { PassingDatabase::Begin(access); });
}

void TimedDatabase::Commit() {
    Time(Step::Commit, [&] { PassingDatabase::Commit(); });
}

ledger::Statement& TimedDatabase::Prepare(const std::wstring& sql) {
    const Step step = sql.starts_with(L"SELECT") ? Step::Read : Step::Write;
    ledger::Statement* prepared = nullptr;
    Time(step, [&] { prepared = &PassingDatabase::Prepare(sql); });
    auto& timed = mvarStatements[sql];
    if (!timed) timed = std::make_unique<TimedStatement>(*this, *prepared, step);
    return *timed;
}

} // namespace bench
