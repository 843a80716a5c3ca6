#include "ledger/core/Leases.h"

#include <gtest/gtest.h>

#include "ledger/DatabaseFileTest.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Schema.h"

using namespace std::chrono_literals;
using ledger::Lease;
using ledger::Leases;

namespace {

class LeasesTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        ledger::PrepareSchema(*mvarDatabase, ledger::Patience(1s));
        mvarDatabase->Begin(ledger::Access::Write);
    }

    Lease Take(std::int64_t count, const std::wstring& ticket) {
        return Leases(*mvarDatabase, 1).Take(Band, L"2024-??", count, ticket);
    }
    std::optional<Lease> OfTicket(const std::wstring& series, const std::wstring& ticket) {
        return Leases(*mvarDatabase, 1).OfTicket(Band, series, ticket);
    }
    void Close(const Lease& lease, std::int64_t next) { Leases(*mvarDatabase, 1).Close(lease, next, Band.step); }
    void Store(const Lease& lease, std::int64_t number) {
        const ledger::NumberRow row{{Band.name, L"2024-?\?", number}, lease.first, 0, L"seal"};
        ledger::Codes(*mvarDatabase, 1).AddNumbers(L"2024-" + std::to_wstring(number), {&row, 1});
    }
    // First numbers and states, by first number.
    std::vector<std::pair<std::int64_t, std::wstring>> All() {
        std::vector<std::pair<std::int64_t, std::wstring>> all;
        for (const Lease& lease : Leases(*mvarDatabase, 1).All())
            all.emplace_back(lease.first, lease.state);
        return all;
    }

  private:
    inline static const ledger::NumberBand Band = {L"Number", 5, 2, 1, 99, {}};
};

} // namespace

TEST_F(LeasesTest, OneFollowsTheOther) {
    EXPECT_EQ(Take(5, L"a").last, 5);
    EXPECT_EQ(Take(5, L"b").first, 6);
    EXPECT_EQ(Take(500, L"c").last, 99);
    EXPECT_GT(Take(1, L"d").first, 99) << "nothing is left";
}

TEST_F(LeasesTest, OneIsFoundByItsTicketAndSeries) {
    Take(5, L"a");
    Take(5, L"b");
    EXPECT_EQ(OfTicket(L"2024-?\?", L"b").value_or(Lease()).first, 6);
    EXPECT_FALSE(OfTicket(L"2024-?\?", L"c").has_value());
    EXPECT_FALSE(OfTicket(L"2025-?\?", L"b").has_value());
}

TEST_F(LeasesTest, WhatIsLeftOfTheLastOneGoesBack) {
    const Lease lease = Take(5, L"a");
    Close(lease, 3);
    EXPECT_EQ(Take(5, L"b").first, 3);
    Close(Take(5, L"c"), 8);
    EXPECT_EQ(Take(5, L"d").first, 8) << "the unused one is as if it had never been";
}

TEST_F(LeasesTest, OneIsUsedUpWhenItsLastNumberIsStored) {
    const Lease lease = Take(5, L"a");
    Store(lease, 5);
    Close(lease, 6);
    EXPECT_EQ(All(), (std::vector<std::pair<std::int64_t, std::wstring>>{{1, L"used"}}));
}

TEST_F(LeasesTest, AnActTellsOfOneWhoseLastNumberWasWasted) {
    const Lease lease = Take(5, L"a");
    Store(lease, 4);
    Close(lease, 6);
    EXPECT_EQ(All(), (std::vector<std::pair<std::int64_t, std::wstring>>{{1, L"closed"}}));
    EXPECT_EQ(Take(5, L"b").first, 6) << "no number is given twice";
}

TEST_F(LeasesTest, ASeriesGoesOnBehindOneThatWasClosedUnused) {
    const Lease unused = Take(5, L"a");
    const Lease behind = Take(5, L"b");
    Close(unused, unused.first);
    Close(behind, behind.first);
    EXPECT_EQ(All(), (std::vector<std::pair<std::int64_t, std::wstring>>{{1, L"closed"}}));
    EXPECT_EQ(Take(5, L"c").first, 2);
}
