// report: each series with its numbers over time, how full it is and when it will be full.
#pragma once

#include "ledger/cli/Session.h"

namespace ledger {

struct ReportOptions {
    std::wstring rule; // empty: all
    std::wstring html; // a file for the page; empty: text to standard output
    unsigned warnPercent = 10;
};

// Returns the exit code. What the audit finds is shown and is no failure of the report.
int ReportLedger(Session& session, const ReportOptions& options);

} // namespace ledger
