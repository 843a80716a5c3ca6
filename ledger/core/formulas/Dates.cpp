#include "ledger/core/formulas/Dates.h"

#include <algorithm>
#include <array>
#include <cwchar>

#include "hosts/common/HostError.h"
#include "hosts/common/Text.h"

namespace ledger {

namespace {

constexpr int FirstYear = 1000;
constexpr int LastYear = 9999;

bool IsDateDigit(wchar_t character) noexcept { return character >= L'0' && character <= L'9'; }

int DaysIn(int year, int month) noexcept {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (month == 2) return leap ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

bool Exists(const DateTime& date) noexcept {
    return date.year >= FirstYear && date.year <= LastYear && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= DaysIn(date.year, date.month) && date.hour < 24 && date.minute < 60 && date.second < 60;
}

using hosts::WithoutBlanks;

// Reads a text from its beginning; every member says whether what it wanted was there, and takes it only then.
class DateReader {
  public:
    explicit DateReader(std::wstring_view text) : mvarRest(text) {}

    bool Take(wchar_t character) {
        if (mvarRest.empty() || mvarRest.front() != character) return false;
        mvarRest.remove_prefix(1);
        return true;
    }

    bool Digits(std::size_t least, std::size_t most, int& number) {
        std::size_t count = 0;
        int read = 0;
        while (count < most && count < mvarRest.size() && IsDateDigit(mvarRest[count]))
            read = read * 10 + (mvarRest[count++] - L'0');
        if (count < least) return false;
        mvarRest.remove_prefix(count);
        number = read;
        return true;
    }

    void SkipDigits() {
        while (!mvarRest.empty() && IsDateDigit(mvarRest.front()))
            mvarRest.remove_prefix(1);
    }

    [[nodiscard]] bool AtEnd() const noexcept { return mvarRest.empty(); }

  private:
    std::wstring_view mvarRest;
};

bool ReadIsoDay(DateReader& reader, DateTime& date) {
    if (!reader.Digits(4, 4, date.year)) return false;
    if (!reader.Take(L'-')) return reader.Digits(2, 2, date.month) && reader.Digits(2, 2, date.day);
    return reader.Digits(2, 2, date.month) && reader.Take(L'-') && reader.Digits(2, 2, date.day);
}

bool ReadIsoTime(DateReader& reader, DateTime& date) {
    if (!reader.Digits(2, 2, date.hour)) return false;
    const bool isSpread = reader.Take(L':');
    if (!reader.Digits(2, 2, date.minute)) return false;
    if (isSpread ? reader.Take(L':') && !reader.Digits(2, 2, date.second)
                 : !reader.Digits(2, 2, date.second) && reader.Digits(1, 1, date.second))
        return false;
    if (reader.Take(L'.') || reader.Take(L',')) reader.SkipDigits();
    return true;
}

bool ReadIsoZone(DateReader& reader) {
    int part = 0;
    if (reader.Take(L'Z') || reader.AtEnd()) return true;
    if (!reader.Take(L'+') && !reader.Take(L'-')) return false;
    if (!reader.Digits(2, 2, part)) return false;
    if (reader.AtEnd()) return true;
    static_cast<void>(reader.Take(L':')); // it may be left out
    return reader.Digits(2, 2, part);
}

std::optional<DateTime> ReadIso(std::wstring_view text) {
    DateTime date;
    DateReader reader(text);
    if (!ReadIsoDay(reader, date)) return std::nullopt;
    if (!reader.AtEnd()) {
        if (!reader.Take(L'T') && !reader.Take(L' ')) return std::nullopt;
        if (!ReadIsoTime(reader, date) || !ReadIsoZone(reader)) return std::nullopt;
    }
    return reader.AtEnd() && Exists(date) ? std::optional(date) : std::nullopt;
}

int& PartOf(DateTime& date, wchar_t letter) {
    switch (letter) {
    case L'y': return date.year;
    case L'm': return date.month;
    case L'd': return date.day;
    case L'h': return date.hour;
    case L'n': return date.minute;
    default: return date.second;
    }
}

bool IsNamedDateFormat(std::wstring_view format) {
    static constexpr std::array<std::wstring_view, 7> names = {
        L"general date", L"long date", L"medium date", L"short date", L"long time", L"medium time", L"short time"};
    return std::ranges::find(names, format) != names.end();
}

bool IsNamedOtherFormat(std::wstring_view format) {
    static constexpr std::array<std::wstring_view, 9> names = {L"general number", L"currency",   L"fixed",
                                                               L"standard",       L"percent",    L"scientific",
                                                               L"yes/no",         L"true/false", L"on/off"};
    return std::ranges::find(names, format) != names.end();
}

std::wstring LowerAscii(std::wstring_view text) {
    std::wstring lower(text);
    for (wchar_t& character : lower)
        if (character >= L'A' && character <= L'Z') character = static_cast<wchar_t>(character - L'A' + L'a');
    return lower;
}

} // namespace

// Both by counting years from March on, so that the leap day is the last one of its year.
long DayNumber(const DateTime& date) noexcept {
    const long year = date.year - (date.month <= 2 ? 1 : 0);
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yearOfEra = year - era * 400;
    const long dayOfYear = (153L * (date.month + (date.month > 2 ? -3 : 9)) + 2) / 5 + date.day - 1;
    return era * 146'097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719'468;
}

DateTime DateOfDay(long number) noexcept {
    const long days = number + 719'468;
    const long era = (days >= 0 ? days : days - 146'096) / 146'097;
    const long dayOfEra = days - era * 146'097;
    const long yearOfEra = (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long month = (5 * dayOfYear + 2) / 153;
    DateTime date;
    date.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    date.year = static_cast<int>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
    date.day = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
    return date;
}

std::wstring IsoText(const DateTime& date) {
    std::array<wchar_t, 80> text{};
    const bool hasTime = date.isMoment || date.hour != 0 || date.minute != 0 || date.second != 0;
    // There is room for all of it.
    static_cast<void>(std::swprintf(text.data(), text.size(),
                                    hasTime ? L"%04d-%02d-%02d %02d:%02d:%02d" : L"%04d-%02d-%02d", date.year,
                                    date.month, date.day, date.hour, date.minute, date.second));
    return text.data();
}

DateFormat::DateFormat(std::wstring_view pattern) : mvarPattern(pattern) {
    std::wstring parts;
    for (std::size_t at = 0; at < pattern.size();) {
        const wchar_t letter = pattern[at];
        const std::size_t length = std::min(pattern.find_first_not_of(letter, at), pattern.size()) - at;
        const bool isPart = std::wstring_view(L"ymdhns").find(letter) != std::wstring_view::npos;
        const bool fits = letter == L'y' ? length == 2 || length == 4 : length <= 2;
        if (isPart && (!fits || parts.find(letter) != std::wstring::npos)) parts += L'?';
        if (isPart) parts += letter;
        mvarParts.push_back(isPart ? Part{letter, length, 0} : Part{0, 1, letter});
        at += isPart ? length : 1;
    }
    const auto has = [&parts](wchar_t letter) { return parts.find(letter) != std::wstring::npos; };
    if (!has(L'y') || !has(L'm') || !has(L'd') || has(L'?'))
        throw hosts::HostError(
            L"\"" + mvarPattern +
            L"\" is no format of dates; write one with a year, a month and a day, such as dd.mm.yyyy");
}

std::optional<DateTime> DateFormat::Read(std::wstring_view text) const {
    text = WithoutBlanks(text);
    if (mvarPattern.empty()) return ReadIso(text);
    DateTime date;
    DateReader reader(text);
    for (const Part& part : mvarParts) {
        if (part.letter == 0) {
            if (!reader.Take(part.itself)) return std::nullopt;
            continue;
        }
        const std::size_t most = std::max<std::size_t>(part.length, 2);
        if (!reader.Digits(part.length, most, PartOf(date, part.letter))) return std::nullopt;
        if (part.letter == L'y' && part.length == 2) date.year += 2000;
    }
    return reader.AtEnd() && Exists(date) ? std::optional(date) : std::nullopt;
}

std::wstring DateFormat::Expected() const {
    return mvarPattern.empty() ? L"ISO 8601, such as 2026-04-12" : mvarPattern;
}

std::optional<DateTime> ReadTime(std::wstring_view text) {
    text = WithoutBlanks(text);
    DateTime time;
    time.isMoment = true;
    DateReader reader(text);
    if (!reader.Digits(2, 2, time.hour) || !reader.Take(L':') || !reader.Digits(2, 2, time.minute)) return std::nullopt;
    if (reader.Take(L':') && !reader.Digits(2, 2, time.second)) return std::nullopt;
    return reader.AtEnd() && Exists(time) ? std::optional(time) : std::nullopt;
}

bool FormatsTimesAlone(std::wstring_view format) {
    const std::wstring lower = LowerAscii(format);
    if (IsNamedDateFormat(lower)) return lower.ends_with(L" time");
    if (!FormatsDates(format)) return false;
    wchar_t before = 0; // the sign that meant something last: an "m" behind hours means minutes
    for (std::size_t at = 0; at < lower.size(); ++at) {
        if (lower[at] == L'\\') {
            ++at;
        } else if (lower[at] == L'"') {
            at = std::min(lower.find(L'"', at + 1), lower.size());
        } else if (lower.compare(at, 5, L"am/pm") == 0 || lower.compare(at, 3, L"a/p") == 0) {
            at += lower[at + 1] == L'm' ? 4 : 2;
        } else if (std::wstring_view(L"ymdhnsqwct").find(lower[at]) != std::wstring_view::npos) {
            const bool goesOn = at > 0 && lower[at - 1] == L'm' && before == L'n';
            const bool isMinute = lower[at] == L'm' && (before == L'h' || goesOn);
            before = isMinute ? L'n' : lower[at];
            if (std::wstring_view(L"hnst").find(before) == std::wstring_view::npos) return false;
        }
    }
    return true;
}

bool FormatsDates(std::wstring_view format) {
    const std::wstring lower = LowerAscii(format);
    if (IsNamedDateFormat(lower)) return true;
    if (IsNamedOtherFormat(lower)) return false;
    for (std::size_t at = 0; at < lower.size(); ++at) {
        if (lower[at] == L'\\') {
            ++at;
        } else if (lower[at] == L'"') {
            at = std::min(lower.find(L'"', at + 1), lower.size());
        } else if (std::wstring_view(L"ymdhnsqwct").find(lower[at]) != std::wstring_view::npos) {
            return true;
        } else if (std::wstring_view(L"0#@&<>!%").find(lower[at]) != std::wstring_view::npos) {
            return false;
        }
    }
    return false;
}

} // namespace ledger
