// codes list, codes find and codes export: the codes of a ledger by what is known of them.
#pragma once

#include "ledger/cli/Session.h"
#include "ledger/core/CodeQuery.h"

namespace ledger {

struct CodesOptions {
    CodeWish wish;
    std::vector<std::wstring> fields; // Name=Value, wishes as well
    std::wstring file;                // of an export; empty: standard output
};

// Each prints the codes that fit as it finds them, and returns the exit code. Fails with HostError on a wish that makes
// no sense; FindCodes also when no code fits.
int ListCodes(Session& session, const CodesOptions& options);
int FindCodes(Session& session, const CodesOptions& options);
// CSV, or JSON where that is asked for; a file takes its place only when it is whole.
int ExportCodes(Session& session, const CodesOptions& options);

} // namespace ledger
