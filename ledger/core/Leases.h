// Blocks of numbers that one program has set aside for itself, so that it needs no transaction per number.
//
// A lease is open as long as its program runs; it is closed, and what is left of it goes back where nobody has taken
// numbers behind it since. A program that ends without closing leaves its lease open, for the audit to find.
#pragma once

#include <array>
#include <vector>

#include "ledger/db/Database.h"

namespace ledger {

struct Lease {
    std::wstring band;
    std::wstring series;
    std::int64_t first = 0;
    std::int64_t last = 0;      // what may be used, or was, when it is closed
    std::int64_t grantedTo = 0; // what was set aside
    std::wstring owner;
    std::wstring takenAt;
    bool open = true;
};

// What FirstFree asks, so that the plans can be looked at: rule, band and series each.
extern const std::array<const wchar_t*, 2> FirstFreeQueries;

// Members run in the caller's transaction and fail with DbError.
class Leases {
  public:
    Leases(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // Sets `count` numbers aside, fewer at the band's end: none below `start`, none above `highest`, none that is
    // stored or set aside already. Two programs that do so at once collide on a key. `highest` must not be reached yet;
    // a lease whose first number is above it is returned without being stored.
    Lease Take(const std::wstring& band, const std::wstring& series, std::int64_t count, std::int64_t start,
               std::int64_t highest);
    // `next` is the first number of the lease that was not used. A lease that is used up leaves no trace: its numbers
    // are stored.
    void Close(const Lease& lease, std::int64_t next);
    // All of the rule's, by band, series and first number.
    [[nodiscard]] std::vector<Lease> All();
    void RemoveAll();

    // The number that the next lease would begin with.
    [[nodiscard]] std::int64_t FirstFree(const std::wstring& band, const std::wstring& series, std::int64_t start);

  private:
    void Remove(const Lease& lease);

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

} // namespace ledger
