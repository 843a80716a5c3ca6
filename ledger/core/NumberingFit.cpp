#include "ledger/core/NumberingFit.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

namespace {

// Empty when the record brings none.
std::wstring ValueOf(const FieldValues& record, const std::wstring& field) {
    const auto found =
        std::find_if(record.rbegin(), record.rend(), [&field](const auto& value) { return value.first == field; });
    return found == record.rend() ? std::wstring() : found->second;
}

using hosts::Quoted;

} // namespace

std::wstring DaysText(const NumberingPart& part) {
    if (part.from.empty()) return part.until.empty() ? L"any day" : L"until " + part.until;
    return part.until.empty() ? L"from " + part.from : part.from + L" to " + part.until;
}

std::wstring DayOf(const std::wstring& date, const DateFormat& dates) {
    constexpr std::size_t lengthOfDay = 10;
    const auto read = dates.Read(date);
    return read ? IsoText(*read).substr(0, lengthOfDay) : std::wstring();
}

NumberingFit::Obstacle NumberingFit::ObstacleOf(const NumberingPart& part, const FieldValues& record) const {
    std::size_t met = 0;
    for (const auto& [field, wanted] : part.when) {
        if (ValueOf(record, field) != wanted) return {met, field, false, false, Quoted(wanted)};
        ++met;
    }
    if (part.date.empty()) return {};
    const std::wstring value = ValueOf(record, part.date);
    const std::wstring day = DayOf(value, mvarDates);
    if (!day.empty() && day >= part.from && (part.until.empty() || day <= part.until)) return {};
    return {met, part.date, true, day.empty() && !value.empty(), DaysText(part)};
}

std::size_t NumberingFit::First(const FieldValues& record, std::size_t from) const {
    for (; from < mvarNumbering.parts.size(); ++from) {
        const Obstacle obstacle = ObstacleOf(mvarNumbering.parts[from], record);
        if (obstacle.field.empty()) return from;
        if (obstacle.isUnreadable) break;
    }
    return mvarNumbering.parts.size();
}

std::vector<NumberingFit::Obstacle> NumberingFit::Nearest(const FieldValues& record) const {
    std::vector<Obstacle> nearest;
    for (const NumberingPart& part : mvarNumbering.parts) {
        Obstacle obstacle = ObstacleOf(part, record);
        if (obstacle.isUnreadable) return {obstacle};
        if (!nearest.empty() && nearest.front().met < obstacle.met) nearest.clear();
        if (nearest.empty() || nearest.front().met == obstacle.met) nearest.push_back(std::move(obstacle));
    }
    return nearest;
}

std::wstring NumberingFit::DateText(const std::wstring& value, const std::wstring& expected) const {
    if (value.empty()) return L"no value, a date expected (" + mvarDates.Expected() + L")";
    const std::wstring day = DayOf(value, mvarDates);
    if (day.empty()) return Quoted(value) + L" is no date, " + mvarDates.Expected() + L" expected";
    return day + L" is none of its days: " + expected;
}

// Of several parts that the same field keeps the record from, what each of them expects.
std::wstring NumberingFit::TextOf(const std::vector<Obstacle>& obstacles, const Obstacle& first,
                                  const FieldValues& record) const {
    std::vector<std::wstring> all;
    for (const Obstacle& obstacle : obstacles)
        if (obstacle.field == first.field && obstacle.isDate == first.isDate &&
            std::ranges::find(all, obstacle.expected) == all.end())
            all.push_back(obstacle.expected);
    std::wstring expected;
    for (const std::wstring& one : all)
        expected += (expected.empty() ? L"" : first.isDate ? L"; " : L" or ") + one;
    const std::wstring value = ValueOf(record, first.field);
    const std::wstring name = L"field " + first.field + L": ";
    if (first.isDate) return name + DateText(value, expected);
    return name + (value.empty() ? L"no value" : Quoted(value)) + L", " + expected + L" expected";
}

std::wstring NumberingFit::Refusal(const FieldValues& record) const {
    const std::vector<Obstacle> obstacles = Nearest(record);
    std::vector<std::wstring> texts;
    for (const Obstacle& obstacle : obstacles)
        if (std::wstring text = TextOf(obstacles, obstacle, record); std::ranges::find(texts, text) == texts.end())
            texts.push_back(std::move(text));
    std::wstring refusal = L"no rule of numbering \"" + mvarNumbering.name + L"\" fits";
    for (std::size_t at = 0; at < texts.size(); ++at)
        refusal += (at == 0 ? L": " : L"; or ") + texts[at];
    return refusal;
}

} // namespace ledger
