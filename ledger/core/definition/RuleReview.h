// A rule looked over before it is stored: what its text says in vain, what its component finds, and what keeps it from
// issuing any code.
#pragma once

#include <string>
#include <vector>

#include "ledger/core/RuleSettings.h"
#include "ledger/core/definition/Untaken.h"

namespace ledger {

struct RuleReview {
    std::vector<Untaken> untaken;        // in the order of the lines
    std::vector<std::wstring> findings;  // sentences of the component's Check, in the language of Windows
    std::vector<std::wstring> obstacles; // each alone keeps every record from getting a code
    std::wstring unsound;                // why the formulas make no sense, so that no ledger stores it; empty: they do

    [[nodiscard]] bool IsClean() const noexcept { return untaken.empty() && findings.empty() && NoCode().empty(); }
    // Obstacles and formulas.
    [[nodiscard]] std::vector<std::wstring> NoCode() const;
    // All of it, a line each.
    [[nodiscard]] std::vector<std::wstring> Lines() const;
};

// The findings are those of the rule as a ledger uses it: a number that tracks nothing is counted over the whole rule,
// and numbers stop at their end, so nothing is said of either. Fails with HostError on a text that makes no band.
[[nodiscard]] RuleReview ReviewDefinition(const std::wstring& definition, const RuleSettings& settings = {});

} // namespace ledger
