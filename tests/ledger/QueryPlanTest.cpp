// How the embedded database finds the highest number: the engine says so itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "ledger/DatabaseFileTest.h"
#include "ledger/core/Claims.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Schema.h"

using namespace std::chrono_literals;

namespace {

class QueryPlanTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        ledger::PrepareSchema(*mvarDatabase, ledger::Patience(1s));
    }

    // One line for each table that the query reads.
    std::vector<std::wstring> Plan(const std::wstring& query) {
        ledger::Statement& rows = mvarDatabase->Prepare(L"EXPLAIN QUERY PLAN " + query);
        for (auto parameter = std::ranges::count(query, L'?'); parameter > 0; --parameter)
            rows.Set(1);
        rows.Execute();
        std::vector<std::wstring> reads;
        while (rows.Fetch()) {
            const std::wstring step = rows.Text(4);
            if (step.find(L"kestrel_") != std::wstring::npos || step.starts_with(L"SCAN")) reads.push_back(step);
        }
        return reads;
    }
    void ExpectOneStepDownTheKey(const std::wstring& query) {
        const std::vector<std::wstring> reads = Plan(query);
        EXPECT_FALSE(reads.empty());
        for (const std::wstring& read : reads) {
            const std::string shown(read.begin(), read.end());
            EXPECT_TRUE(read.starts_with(L"SEARCH")) << shown;
            EXPECT_NE(read.find(L"series=?"), std::wstring::npos) << shown;
        }
    }
};

} // namespace

TEST_F(QueryPlanTest, APlanTellsAScanFromASearch) {
    const std::vector<std::wstring> reads = Plan(L"SELECT COUNT(*) FROM kestrel_numbers WHERE code LIKE ?");
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_TRUE(reads[0].starts_with(L"SCAN"));
}

TEST_F(QueryPlanTest, TheHighestNumberIsFoundThroughTheKey) { ExpectOneStepDownTheKey(ledger::HighestNumberQuery); }

TEST_F(QueryPlanTest, TheLowestNumberToGiveAgainIsFoundThroughTheKey) {
    ExpectOneStepDownTheKey(ledger::LowestFreeQuery);
}

TEST_F(QueryPlanTest, TheClaimOfACodeIsFoundThroughItsKey) {
    const std::vector<std::wstring> reads = Plan(ledger::RemoveClaimQuery);
    const auto isClaims = [](const std::wstring& read) {
        return read.find(L"numbering_id=? AND code=?") != std::wstring::npos;
    };
    EXPECT_TRUE(std::ranges::any_of(reads, isClaims)) << std::string(reads.back().begin(), reads.back().end());
}

TEST_F(QueryPlanTest, TheFirstFreeNumberIsFoundThroughTheKeys) {
    for (const wchar_t* query : ledger::FirstFreeQueries)
        ExpectOneStepDownTheKey(query);
}

TEST_F(QueryPlanTest, NumbersOfCodesAreCountedThroughTheirCodes) {
    const std::vector<std::wstring> reads = Plan(ledger::NumbersBetweenQuery);
    ASSERT_EQ(reads.size(), 1U);
    const std::string shown(reads[0].begin(), reads[0].end());
    EXPECT_NE(reads[0].find(L"kestrel_numbers_of_codes (code>? AND code<?"), std::wstring::npos) << shown;
}
