#include "ledger/core/RuleCalendar.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "ledger/core/definition/DefinitionText.h"

namespace ledger {

namespace {

constexpr std::size_t HeaderLength = 5;
constexpr int BandEntry = 16;
constexpr int WeekEntry = 11;
constexpr int LastEntry = 18;
constexpr std::array<std::wstring_view, 7> WeekDays = {L"sunday",   L"monday", L"tuesday", L"wednesday",
                                                       L"thursday", L"friday", L"saturday"};
constexpr double MinutesOfDay = 24 * 60;

// The number that the line begins with, as far as entries go; -1 for another line.
int EntryOf(std::wstring_view line) {
    int number = -1;
    for (const wchar_t digit : line) {
        if (digit < L'0' || digit > L'9') break;
        number = std::max(number, 0) * 10 + (digit - L'0');
        if (number > LastEntry) return -1;
    }
    return number;
}

int MinuteOf(const hosts::Variant& time) {
    if (time.Raw().vt != VT_DATE) return 0;
    const double day = time.Raw().date;
    return static_cast<int>(std::lround((day - std::floor(day)) * MinutesOfDay)) % static_cast<int>(MinutesOfDay);
}

int NumberOf(const hosts::Rule& rule, const wchar_t* setting) {
    return static_cast<int>(rule.Component().Get(setting).Number());
}

} // namespace

// Lines come in pairs of an entry's number and its value; a band's lines go on up to one that says 17.
std::optional<int> WeekOf(const std::wstring& definition) {
    std::wstring_view rest = definition;
    rest.remove_prefix(std::min(rest.size(), HeaderLength));
    std::optional<int> week;
    int entry = -1; // whose value comes next
    while (!rest.empty()) {
        const std::wstring_view line = rest.substr(0, rest.find(L'\r'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        if (entry < 0) {
            entry = EntryOf(line);
        } else if (entry == BandEntry) {
            if (line == L"17") entry = -1;
        } else {
            if (entry == WeekEntry && line.size() == 1 && line[0] >= L'0' && line[0] <= L'7') week = line[0] - L'0';
            entry = -1;
        }
    }
    return week;
}

std::wstring WithWeek(const std::wstring& definition, int week) {
    if (WeekOf(definition) == week) return definition;
    const DefinitionText read = ReadDefinitionText(definition);
    const auto line = std::ranges::find(read.items, WeekEntry, &DefinitionItem::entry);
    if (line == read.items.end())
        return definition + L'\r' + std::to_wstring(WeekEntry) + L'\r' + std::to_wstring(week);
    std::size_t begin = 0;
    for (std::size_t number = 1; number < line->line; ++number)
        begin = definition.find(L'\r', begin) + 1;
    std::wstring text = definition;
    return text.replace(begin, line->value.size(), std::to_wstring(week));
}

std::wstring NameOfWeekDay(int day) {
    const bool isDay = day >= 1 && day <= static_cast<int>(WeekDays.size());
    return isDay ? std::wstring(WeekDays.at(static_cast<std::size_t>(day) - 1)) : std::wstring();
}

std::optional<int> WeekDayOf(const std::wstring& name) {
    const auto found = std::ranges::find(WeekDays, name);
    return found == WeekDays.end() ? std::nullopt : std::optional(static_cast<int>(found - WeekDays.begin()) + 1);
}

void LoadWithWeek(hosts::Rule& rule, const std::wstring& definition, std::optional<int> week) {
    rule.Load(definition);
    if (!week) week = WeekOf(definition);
    if (week) rule.Component().Put(L"SeparaOfWeek", hosts::Variant(long{*week}));
}

Calendar CalendarOf(const hosts::Rule& rule) {
    return Calendar({NumberOf(rule, L"SeparaOfYear"), NumberOf(rule, L"SeparaOfMonth"), NumberOf(rule, L"SeparaOfWeek"),
                     MinuteOf(rule.Component().Get(L"SeparaOfDay"))});
}

} // namespace ledger
