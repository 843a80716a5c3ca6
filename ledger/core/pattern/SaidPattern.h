// A stored rule said as a pattern, where it can be.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ledger/core/pattern/RuleBuilder.h"

namespace ledger {

struct SaidPattern {
    std::wstring text; // empty: no pattern says the rule
    std::wstring why;  // none does
    PatternSettings settings;
    std::map<std::wstring, std::wstring> files; // by the names that the pattern gives them: codes and values
    std::vector<std::wstring> besides; // what the rule holds that makes no difference to its codes, and the pattern
                                       // does not say
};

// The pattern was tried: the rule that it makes has the same definition, but for what `besides` names.
[[nodiscard]] SaidPattern SayPattern(const std::wstring& definition);

} // namespace ledger
