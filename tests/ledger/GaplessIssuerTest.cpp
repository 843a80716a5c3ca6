#include "ledger/core/GaplessIssuer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "hosts/common/Dispatch.h"
#include "ledger/RuleText.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/Schema.h"
#include "ledger/db/Open.h"

using namespace std::chrono_literals;
using ledger::Database;
using ledger::Outcome;

namespace {

const ledger::Patience Wait(1s);

// A database in which something happens right before a statement.
class MeddledDatabase final : public Database {
  public:
    MeddledDatabase(Database& database, std::function<void(const std::wstring&)> meddle)
        : mvarDatabase(database), mvarMeddle(std::move(meddle)) {}

    void Connect() override { mvarDatabase.Connect(); }
    void Limit(const ledger::Deadline& deadline) noexcept override { mvarDatabase.Limit(deadline); }
    void Begin(ledger::Access access) override { mvarDatabase.Begin(access); }
    void Commit() override { mvarDatabase.Commit(); }
    void Rollback() noexcept override { mvarDatabase.Rollback(); }
    [[nodiscard]] bool IsDead() const noexcept override { return mvarDatabase.IsDead(); }
    ledger::Statement& Prepare(const std::wstring& sql) override {
        mvarMeddle(sql);
        return mvarDatabase.Prepare(sql);
    }
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
    Database& mvarDatabase;
    std::function<void(const std::wstring&)> mvarMeddle;
};

// The code that another program stores, after a first attempt of ours at it failed, and after ours has read in the
// second attempt how far the series is: when it looks whether somebody has the code.
class GaplessIssuerTest : public testing::Test {
  protected:
    void SetUp() override {
        RemoveFiles();
        mvarDatabase = ledger::OpenDatabase(mvarFile.wstring(), Wait);
        ledger::PrepareSchema(*mvarDatabase, Wait);
    }
    void TearDown() override {
        mvarDatabase.reset();
        RemoveFiles();
    }

    Outcome IssueWhileStored(const std::vector<std::wstring>& statements) {
        const std::wstring definition = NumberedRule(L"-", L"Year");
        ledger::CodeMaker maker(definition);
        const ledger::StoredRule rule =
            ledger::ChangeRule(*mvarDatabase, Wait, {L"rule", definition, ledger::Policy::Gapless, {}, {}, {}}, maker)
                .rule;
        bool failed = false;
        bool stored = false;
        MeddledDatabase database(*mvarDatabase, [&](const std::wstring& sql) {
            if (!failed && sql.starts_with(L"INSERT INTO kestrel_codes")) {
                failed = true;
                throw ledger::DbError(ledger::Fault::Conflict, L"in the way");
            }
            if (!failed || stored || !sql.ends_with(L"FROM kestrel_codes c WHERE rule_id = ? AND code = ?")) return;
            stored = true;
            for (const std::wstring& statement : statements)
                mvarDatabase->Run(statement);
        });
        ledger::GaplessIssuer issuer({database, rule, maker, Wait});
        const ledger::Request request{{{L"Year", L"2024"}}, L"{\"Year\":\"2024\"}", L"ours", false};
        Outcome outcome = issuer.Issue({&request, 1}, 0).front();
        EXPECT_TRUE(stored);
        return outcome;
    }

    static constexpr const wchar_t* Code =
        L"INSERT INTO kestrel_codes (rule_id, code, ticket, definition, origin, void_act, stored_at, fields) VALUES "
        L"(1, '2024-000001', 'theirs', 1, 'issued', 0, '2026-01-01T00:00:00Z', '{}')";
    static constexpr const wchar_t* Number =
        L"INSERT INTO kestrel_numbers (rule_id, band, series, number, code, lease, act, seal) VALUES "
        L"(1, 'Number', '2024-?????"
        L"?', 1, '2024-000001', 0, 0, 'seal')";

  private:
    void RemoveFiles() {
        std::error_code error;
        for (const char* suffix : {"", "-wal", "-shm"})
            std::filesystem::remove(mvarFile.wstring() + std::filesystem::path(suffix).wstring(), error);
    }

    hosts::Apartment mvarApartment;
    std::filesystem::path mvarFile = std::filesystem::temp_directory_path() / "GaplessIssuerTest.db";
    std::unique_ptr<Database> mvarDatabase;
};

} // namespace

TEST_F(GaplessIssuerTest, TriesAgainWhenTheCodeWasCountedAfterTheSeriesWasRead) {
    const Outcome outcome = IssueWhileStored({Code, Number});
    EXPECT_EQ(outcome.refusal, L"");
    EXPECT_EQ(outcome.code, L"2024-000001") << "what the other one stored was undone with the attempt";
}

TEST_F(GaplessIssuerTest, RefusesACodeThatNoNumberLeadsOnFrom) {
    EXPECT_EQ(IssueWhileStored({Code}).refusal,
              L"code 2024-000001 is issued already, though not counted in its series; see kledger audit");
}
