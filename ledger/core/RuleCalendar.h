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

// The text with that day.
[[nodiscard]] std::wstring WithWeek(const std::wstring& definition, int week);

// "sunday" for 1 to "saturday" for 7; empty for another number, nothing for another name.
[[nodiscard]] std::wstring NameOfWeekDay(int day);
[[nodiscard]] std::optional<int> WeekDayOf(const std::wstring& name);

// Loads the definition with the day on which weeks begin: the one that is given, or that of the text. Fails with
// HostError when the text makes no band.
void LoadWithWeek(hosts::Rule& rule, const std::wstring& definition, std::optional<int> week = std::nullopt);

// Of the settings that the component has now.
[[nodiscard]] Calendar CalendarOf(const hosts::Rule& rule);

} // namespace ledger
