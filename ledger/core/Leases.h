// Blocks of numbers that one program has set aside for itself, so that it needs no transaction per number.
//
// A lease is open as long as its program runs. Used up, with its last number stored, or closed by an act of the
// journal, what is left of it going back where nobody has taken numbers behind it since, it stays as the account of its
// numbers, which are chained from its seal on. A program that ends without closing leaves its lease open, for the audit
// to find and for somebody to close.
#pragma once

#include <array>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Journal.h"

namespace ledger {

struct Lease {
    std::wstring band;
    std::wstring series;
    std::int64_t first = 0;
    std::int64_t last = 0;      // what may be used, or was, when it is closed
    std::int64_t grantedTo = 0; // what was set aside
    std::wstring owner;         // machine and process
    std::wstring takenAt;
    std::wstring ticket;
    std::wstring state;   // open, used or closed
    std::int64_t act = 0; // the act that closed it
    std::wstring seal;
};

[[nodiscard]] std::wstring SealOf(std::int64_t ruleId, const Lease& lease);

// How an act of the journal names a lease.
[[nodiscard]] std::wstring SubjectOf(const Lease& lease);

// What FirstFree asks, so that the plans can be looked at: rule, band and series each. A number with a text behind it
// is a code's, and the rule's step leads on from it.
extern const std::array<const wchar_t*, 2> FirstFreeQueries;

// Members run in the caller's transaction and fail with DbError.
class Leases {
  public:
    Leases(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // Sets `count` steps of the band aside, fewer at its end: none below its start, none above its highest number, none
    // that is stored or set aside already. Two programs that do so at once collide on a key. A lease whose first number
    // is above the highest is returned without being stored.
    Lease Take(const NumberBand& band, const std::wstring& series, std::int64_t count, const std::wstring& ticket);
    // The lease that was taken with that ticket; reads all of the series.
    [[nodiscard]] std::optional<Lease> OfTicket(const NumberBand& band, const std::wstring& series,
                                                const std::wstring& ticket);
    // Whether its last number, as its rule steps, is stored and it is used up now: one that was wasted leaves no trace,
    // so an act has to tell of it.
    bool MarkUsed(const Lease& lease, std::int64_t step);
    // `next` is the first number of the lease that was not used. Nothing happens to one that is not open any more.
    void Close(const Lease& lease, std::int64_t next, std::int64_t step);
    // All of the rule's, by band, series and first number.
    [[nodiscard]] std::vector<Lease> All();

    // The number that the next lease would begin with.
    [[nodiscard]] std::int64_t FirstFree(const NumberBand& band, const std::wstring& series);

  private:
    [[nodiscard]] bool RemoveUnused(const Lease& lease);

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

} // namespace ledger
