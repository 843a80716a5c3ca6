// Codes that were issued elsewhere.
#pragma once

#include <functional>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/db/Transaction.h"

namespace ledger {

struct ForeignCode {
    std::size_t line = 0;
    std::wstring code;
    FieldValues others; // what is stored with it beside the values that its code holds
};

struct AdoptionFinding {
    std::size_t line = 0;
    std::wstring code;
    std::wstring kind; // adopted, foreign or duplicate
    std::wstring detail;
};

// Takes over what the rule can take apart and nobody has, all at once or nothing; with each code the values that can be
// read back from it. One finding for each code, in their
// order. `advance` is told of each code that was looked at. Fails with HostError when the rule was changed meanwhile.
[[nodiscard]] std::vector<AdoptionFinding> Adopt(Database& database, Patience patience, const StoredRule& rule,
                                                 CodeMaker& maker, const std::vector<ForeignCode>& codes,
                                                 const std::function<void()>& advance);

} // namespace ledger
