// Codes are read in pieces: a reader whose connection is lost goes on where it was.
#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "hosts/common/Dispatch.h"
#include "ledger/DatabaseFileTest.h"
#include "ledger/RuleText.h"
#include "ledger/core/CodeQuery.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/Schema.h"

using namespace std::chrono_literals;

namespace {

const ledger::Patience ReadingWait(5s);

class CodeReadingTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        ledger::PrepareSchema(*mvarDatabase, ReadingWait);
        const std::wstring definition = NumberedRule(L"-", L"Year");
        ledger::CodeMaker maker(definition);
        static_cast<void>(ledger::ChangeRule(*mvarDatabase, ReadingWait,
                                             {L"rule", definition, ledger::Policy::Gapless, {}, {}, {}}, maker));
    }

    void Store(const std::vector<std::wstring>& codes) {
        ledger::InTransaction(*mvarDatabase, ReadingWait, ledger::OnUniqueKey::Fail, [&] {
            for (const std::wstring& code : codes)
                mvarDatabase
                    ->Prepare(L"INSERT INTO kestrel_codes (rule_id, code, ticket, definition, origin, void_act, "
                              L"stored_at, fields) VALUES (1, ?, ?, 1, 'issued', 0, '2026-01-01T00:00:00Z', '{}')")
                    .Set(code)
                    .Set(code)
                    .Execute();
            return true;
        });
    }

    // What is visited, while the connection is lost behind each of these and `meanwhile` happens.
    std::vector<std::wstring> Read(std::vector<std::wstring> losses, const std::function<void()>& meanwhile) {
        std::vector<std::wstring> codes;
        ledger::ForEachCode(*mvarDatabase, ReadingWait, {}, [&](const ledger::FoundCode& found) {
            codes.push_back(found.row.code);
            if (std::erase(losses, found.row.code) == 0) return;
            mvarDatabase->Rollback();
            meanwhile();
            throw ledger::DbError(ledger::Fault::Lost, L"cut");
        });
        return codes;
    }

  private:
    hosts::Apartment mvarApartment; // for the component, which the rule is made with
};

} // namespace

TEST_F(CodeReadingTest, GoesOnBehindTheLastCodeWhenTheConnectionIsLost) {
    Store({L"2024-000001", L"2024-000003", L"2024-000005"});
    bool stored = false;
    const std::vector<std::wstring> codes = Read({L"2024-000003", L"2024-000005"}, [&] {
        if (!std::exchange(stored, true)) Store({L"2024-000002", L"2024-000004"});
    });
    EXPECT_EQ(codes, (std::vector<std::wstring>{L"2024-000001", L"2024-000003", L"2024-000004", L"2024-000005"}))
        << "each once, and what was stored by then behind the place that was reached";
}

TEST_F(CodeReadingTest, ReadsMoreThanOnePiece) {
    std::vector<std::wstring> codes;
    for (int number = 1; number <= 2001; ++number)
        codes.push_back(L"2024-" + std::to_wstring(1'000'000 + number).substr(1));
    Store(codes);
    EXPECT_EQ(Read({codes[998], codes[999], codes[1500]}, [] {}), codes);
}
