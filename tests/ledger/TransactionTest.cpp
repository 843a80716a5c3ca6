#include "ledger/db/Transaction.h"

#include <gtest/gtest.h>

#include "ledger/DatabaseFileTest.h"

using namespace std::chrono_literals;
using ledger::DbError;
using ledger::Fault;
using ledger::InTransaction;
using ledger::OnUniqueKey;
using ledger::Patience;

namespace {

class TransactionTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        mvarDatabase->Begin(ledger::Access::Write);
        mvarDatabase->Run(L"CREATE TABLE t (n INTEGER NOT NULL PRIMARY KEY, text VARCHAR(20))");
        mvarDatabase->Commit();
    }

    void Insert(std::int64_t number, const std::wstring& text = {}) {
        mvarDatabase->Prepare(L"INSERT INTO t (n, text) VALUES (?, ?)").Set(number).Set(text).Execute();
    }
    std::int64_t Count() {
        return InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, [this] {
            ledger::Statement& row = mvarDatabase->Prepare(L"SELECT COUNT(*) FROM t");
            row.Execute();
            row.Fetch();
            return row.Number(1);
        });
    }
};

} // namespace

TEST_F(TransactionTest, CommitsWhatTheBodyDidAndReturnsItsResult) {
    const int result = InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, [this] {
        Insert(1);
        return 42;
    });
    EXPECT_EQ(result, 42);
    mvarDatabase->Rollback();
    EXPECT_EQ(Count(), 1);
}

TEST_F(TransactionTest, UndoesEverythingWhenTheBodyFails) {
    const auto body = [this]() -> bool {
        Insert(1);
        throw hosts::HostError(L"no");
    };
    EXPECT_THROW(InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, body), hosts::HostError);
    EXPECT_EQ(Count(), 0);
}

TEST_F(TransactionTest, RunsTheBodyAgainAfterAUsedKeyWhereThatIsAskedFor) {
    InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, [this] {
        Insert(1);
        return true;
    });
    std::int64_t next = 1;
    const auto body = [this, &next] {
        Insert(100 + next);
        Insert(next++);
        return true;
    };
    InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Retry, body);
    EXPECT_EQ(next, 3);
    EXPECT_EQ(Count(), 3) << "the first attempt left nothing";
    next = 1;
    try {
        InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, body);
        ADD_FAILURE() << "a used key was accepted";
    } catch (const DbError& error) {
        EXPECT_EQ(error.Kind(), Fault::UniqueKey);
    }
}

TEST_F(TransactionTest, PatienceEnds) {
    Patience none(0ms);
    EXPECT_FALSE(none.Wait());
    Patience some(50ms);
    int waits = 0;
    while (some.Wait())
        ++waits;
    EXPECT_GE(waits, 1);
}

TEST_F(TransactionTest, TextsComeBackAsTheyWentIn) {
    const std::wstring text = L"a'b\\c%_\"\u00FC\u20AC";
    const std::wstring back = InTransaction(*mvarDatabase, Patience(1s), OnUniqueKey::Fail, [&] {
        Insert(1, text);
        ledger::Statement& row = mvarDatabase->Prepare(L"SELECT text FROM t WHERE text = ?");
        row.Set(text).Execute();
        return row.Fetch() ? row.Text(1) : std::wstring(L"not found");
    });
    EXPECT_EQ(back, text);
}

TEST_F(TransactionTest, AConnectionCanBeMadeAnew) {
    mvarDatabase->Begin(ledger::Access::Write);
    Insert(1);
    mvarDatabase->Connect();
    EXPECT_EQ(Count(), 0) << "what was not committed is undone";
    EXPECT_FALSE(mvarDatabase->IsDead());
    mvarDatabase->Begin(ledger::Access::Read);
    EXPECT_TRUE(mvarDatabase->HasTable(L"t"));
    EXPECT_FALSE(mvarDatabase->HasTable(L"u"));
}
