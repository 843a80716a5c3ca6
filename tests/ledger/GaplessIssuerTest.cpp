#include "ledger/core/GaplessIssuer.h"

#include <gtest/gtest.h>

#include <functional>

#include "hosts/common/Dispatch.h"
#include "ledger/DatabaseFileTest.h"
#include "ledger/PassingDatabase.h"
#include "ledger/RuleText.h"
#include "ledger/core/Audit.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/Schema.h"

using ledger::Database;
using ledger::Outcome;

namespace {

// A database in which something happens right before a statement.
class MeddledDatabase final : public PassingDatabase {
  public:
    MeddledDatabase(Database& database, std::function<void(const std::wstring&)> meddle)
        : PassingDatabase(database), mvarMeddle(std::move(meddle)) {}

    ledger::Statement& Prepare(const std::wstring& sql) override {
        mvarMeddle(sql);
        return PassingDatabase::Prepare(sql);
    }

  private:
    std::function<void(const std::wstring&)> mvarMeddle;
};

// The code that another program stores, after a first attempt of ours at it failed, and after ours has read in the
// second attempt how far the series is: when it looks whether somebody has the code.
class GaplessIssuerTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        ledger::PrepareSchema(*mvarDatabase, Wait);
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

    // Issues codes one after the other; `meddle` is told of each statement, with the number of the code that it is for,
    // and of nothing before the first.
    std::vector<std::wstring> IssueMany(int count, const std::function<void(int, const std::wstring&)>& meddle) {
        const std::wstring definition = NumberedRule(L"-", L"Year");
        ledger::CodeMaker maker(definition);
        const ledger::StoredRule rule =
            ledger::ChangeRule(*mvarDatabase, Wait, {L"rule", definition, ledger::Policy::Gapless, {}, {}, {}}, maker)
                .rule;
        int at = 0;
        MeddledDatabase database(*mvarDatabase, [&](const std::wstring& sql) { meddle(at, sql); });
        ledger::GaplessIssuer issuer({database, rule, maker, Wait});
        std::vector<std::wstring> codes;
        for (at = 1; at <= count; ++at) {
            meddle(at, {});
            const ledger::Request request{
                {{L"Year", L"2024"}}, L"{\"Year\":\"2024\"}", L"ours " + std::to_wstring(at), false};
            codes.push_back(issuer.Issue({&request, 1}, 0).front().code);
        }
        return codes;
    }
    // Whether the ledger is in order, with so many codes.
    void ExpectInOrder(std::int64_t codes) {
        const ledger::AuditReport report = ledger::InSnapshot(*mvarDatabase, Wait, [&] {
            return ledger::AuditRuleNow(*mvarDatabase, ledger::Rules(*mvarDatabase).All().front(), {});
        });
        EXPECT_EQ(report.codes, codes);
        EXPECT_TRUE(report.findings.empty());
    }
    // Another program that issues by the same rule.
    void IssueElsewhere() {
        const std::unique_ptr<Database> database = Open();
        const ledger::StoredRule rule =
            ledger::InSnapshot(*database, Wait, [&] { return ledger::Rules(*database).All().front(); });
        ledger::CodeMaker maker(rule.definition.text);
        const ledger::Request request{{{L"Year", L"2024"}}, L"{}", L"theirs " + std::to_wstring(++mvarTheirs), false};
        EXPECT_NE(ledger::GaplessIssuer({*database, rule, maker, Wait}).Issue({&request, 1}, 0).front().code, L"");
    }
    static bool AsksForTheEnd(const std::wstring& sql) { return sql == ledger::HighestNumberQuery; }
    Database& Stored() { return *mvarDatabase; }

    static constexpr const wchar_t* Code =
        L"INSERT INTO kestrel_codes (rule_id, code, ticket, definition, origin, void_act, stored_at, fields) VALUES "
        L"(1, '2024-000001', 'theirs', 1, 'issued', 0, '2026-01-01T00:00:00Z', '{}')";
    static constexpr const wchar_t* Number =
        L"INSERT INTO kestrel_numbers (rule_id, band, series, number, code, lease, act, seal) VALUES "
        L"(1, 'Number', '2024-?????"
        L"?', 1, '2024-000001', 0, 0, 'seal')";

  private:
    hosts::Apartment mvarApartment;
    int mvarTheirs = 0;
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

TEST_F(GaplessIssuerTest, AsksForTheEndOfASeriesUntilItIsFoundWhereItWasLeft) {
    std::vector<int> asked;
    const auto codes = IssueMany(6, [&](int at, const std::wstring& sql) {
        if (AsksForTheEnd(sql)) asked.push_back(at);
    });
    EXPECT_EQ(codes.back(), L"2024-000006");
    EXPECT_EQ(asked, (std::vector<int>{1, 2}));
    ExpectInOrder(6);
}

TEST_F(GaplessIssuerTest, AWrongGuessIsFoundOutByStoringIt) {
    std::vector<int> asked;
    const auto codes = IssueMany(6, [&](int at, const std::wstring& sql) {
        if (AsksForTheEnd(sql)) asked.push_back(at);
        if (at == 4 && sql.empty()) IssueElsewhere();
    });
    EXPECT_EQ(codes, (std::vector<std::wstring>{L"2024-000001", L"2024-000002", L"2024-000003", L"2024-000005",
                                                L"2024-000006", L"2024-000007"}));
    EXPECT_EQ(asked, (std::vector<int>{1, 2, 4, 5}));
    ExpectInOrder(7);
}
