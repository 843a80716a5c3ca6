// What a rule is told about its numbering that no definition can hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ledger {

struct RuleSettings {
    std::int64_t step = 1;   // from one number of a series to the next
    bool reuse = false;      // whether numbers of void codes are given again
    std::wstring series;     // the field whose values are numbered separately, though no code shows them; empty: none
    std::optional<int> week; // SeparaOfWeek, which a component does not read; nothing: as the definition's text has it
    bool retired = false;    // keeps its codes and issues no more

    friend bool operator==(const RuleSettings&, const RuleSettings&) = default;
};

// A JSON object without those that are as they are anyway, "{}" when all are; no blank stands in it, so that it can
// stand in a line of other things.
[[nodiscard]] std::wstring TextOf(const RuleSettings& settings);

// The same for people: "step 1, numbers of void codes kept".
[[nodiscard]] std::wstring Described(const RuleSettings& settings);

// Reads what TextOf wrote; what is missing or of another kind is as it is anyway.
[[nodiscard]] RuleSettings RuleSettingsOf(const std::wstring& text);

// Fails with HostError when the rule was retired.
void RefuseRetired(const RuleSettings& settings, const std::wstring& rule);

} // namespace ledger
