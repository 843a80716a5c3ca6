// What is wrong, or soon will be, with a rule's codes: every row against its seal, every chain against itself and
// against the journal, one consistent state of the database at a time.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Finding.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Rules.h"
#include "ledger/core/Series.h"
#include "ledger/db/Transaction.h"

namespace ledger {

// The newest row of a chain.
struct Head {
    std::wstring chain; // journal, series or lease
    std::wstring band;
    std::wstring series;
    std::int64_t lease = 0;  // of a lease, its first number
    std::int64_t number = 0; // of the act or the number
    std::wstring seal;
};

struct AuditReport {
    StoredRule rule;
    std::int64_t codes = 0;
    std::vector<Series> series;
    std::vector<NumberBand> bands; // of the newest definition
    std::vector<Gap> leftOfLeases; // gaps that leases account for
    std::vector<Gap> leftOut;      // gaps that were made on purpose, as the journal tells
    std::vector<Lease> openLeases;
    std::vector<Finding> findings;
    std::vector<Head> heads;

    void Find(FindingKind kind, std::wstring text, std::vector<Fact> facts) {
        findings.push_back({kind, std::move(text), std::move(facts)});
    }
};

struct AuditRequest {
    unsigned warnPercent = 10;     // of a band's room that must be left, unless another rule takes over
    std::vector<Head> against;     // what must still be there
    std::function<void()> advance; // told of every code
};

// Runs in the caller's transaction, which may only read. Fails with DbError.
[[nodiscard]] AuditReport AuditRuleNow(Database& database, const StoredRule& rule, const AuditRequest& request);

// Rows of rules that are not there.
[[nodiscard]] std::vector<Finding> FindOrphans(Database& database);

} // namespace ledger
