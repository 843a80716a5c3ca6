// The calendar that a rule's settings make.
#pragma once

#include <optional>
#include <string>

#include "hosts/common/Rule.h"
#include "ledger/core/formulas/Calendar.h"

namespace ledger {

// The day on which weeks begin as the definition's text has it, 0 to 7; nothing when it has none. The component writes
// it and does not read it back.
[[nodiscard]] std::optional<int> WeekOf(const std::wstring& definition);

// Loads the definition with the day on which weeks begin. Fails with HostError when the text makes no band.
void LoadWithWeek(hosts::Rule& rule, const std::wstring& definition);

// Of the settings that the component has now.
[[nodiscard]] Calendar CalendarOf(const hosts::Rule& rule);

} // namespace ledger
