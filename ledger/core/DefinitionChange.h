// A rule's new definition, where codes may have been issued by the old one.
#pragma once

#include "ledger/cli/Session.h"
#include "ledger/core/CodeMaker.h"

namespace ledger {

struct ChangeReport {
    std::int64_t codes = 0;   // stored for the rule
    std::int64_t foreign = 0; // of them, those that the new definition could not have made; they keep their numbers
};

// Stores the rule with the definition that the maker was made of, and counts the stored codes anew in the series of
// that definition. Fails with HostError, and changes nothing, when codes of another length are stored.
ChangeReport ChangeDefinition(Session& session, StoredRule& rule, CodeMaker& maker);

} // namespace ledger
