#include "platform/PlainFormats.h"

#include <windows.h>

#include <algorithm>

namespace kestrel {

namespace {

// Beyond these the platform's own number types lose digits.
constexpr std::size_t MostDigits = 28;
constexpr StringView Digits = L"0123456789";
constexpr std::size_t DateLength = 10;
constexpr std::size_t DateAndTimeLength = 19;

bool IsAll(StringView text, StringView characters) noexcept {
    return text.find_first_not_of(characters) == StringView::npos;
}

std::optional<String> Padded(StringView value, StringView format) {
    if (value.empty() || value.size() > MostDigits || !IsAll(value, Digits) || !IsAll(format, L"0"))
        return std::nullopt;
    value.remove_prefix(std::min(value.find_first_not_of(L'0'), value.size()));
    String text(format.size() - std::min(format.size(), value.size()), L'0');
    return text += value;
}

struct PlainDate {
    StringView year;
    StringView month;
    StringView day;
};

int NumberOf(StringView digits) noexcept {
    int number = 0;
    for (const wchar_t digit : digits)
        number = number * 10 + (digit - L'0');
    return number;
}

int DaysOf(int year, int month) noexcept {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (month == 2) return leap ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// " hh:nn:ss"
bool IsTime(StringView text) noexcept {
    const auto isBelow = [text](std::size_t place, int limit) {
        const StringView number = text.substr(place, 2);
        return IsAll(number, Digits) && NumberOf(number) < limit;
    };
    return text[0] == L' ' && text[3] == L':' && text[6] == L':' && isBelow(1, 24) && isBelow(4, 60) && isBelow(7, 60);
}

std::optional<PlainDate> ReadDate(StringView value) noexcept {
    if (value.size() == DateAndTimeLength && IsTime(value.substr(DateLength))) value = value.substr(0, DateLength);
    if (value.size() != DateLength || value[4] != L'-' || value[7] != L'-') return std::nullopt;
    const PlainDate date{value.substr(0, 4), value.substr(5, 2), value.substr(8, 2)};
    if (!IsAll(date.year, Digits) || !IsAll(date.month, Digits) || !IsAll(date.day, Digits)) return std::nullopt;
    const int month = NumberOf(date.month);
    const int day = NumberOf(date.day);
    const bool exists =
        date.year.front() != L'0' && month >= 1 && month <= 12 && day >= 1 && day <= DaysOf(NumberOf(date.year), month);
    return exists ? std::optional(date) : std::nullopt;
}

// The part of the date that a run of one format letter stands for; empty for a run that is none of ours.
StringView PartFor(const PlainDate& date, wchar_t letter, std::size_t length) noexcept {
    if (letter == L'y') return length == 4 ? date.year : length == 2 ? date.year.substr(2) : StringView();
    if (letter != L'm' && letter != L'd') return {};
    const StringView part = letter == L'm' ? date.month : date.day;
    if (length == 2) return part;
    return length == 1 ? part.substr(part.front() == L'0' ? 1 : 0) : StringView();
}

std::optional<String> Dated(const PlainDate& date, StringView format) {
    String text;
    while (!format.empty()) {
        const wchar_t letter = format.front();
        const std::size_t length = std::min(format.find_first_not_of(letter), format.size());
        const StringView part = letter == L'-' ? format.substr(0, length) : PartFor(date, letter, length);
        if (part.empty()) return std::nullopt;
        text += part;
        format.remove_prefix(length);
    }
    return text;
}

// The user may have chosen another calendar, which the platform's dates follow.
bool HasGregorianCalendar() noexcept {
    DWORD calendar = 0;
    const int size = GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_ICALENDARTYPE | LOCALE_RETURN_NUMBER,
                                     reinterpret_cast<LPWSTR>(&calendar), sizeof calendar / sizeof(wchar_t));
    return size != 0 && calendar == CAL_GREGORIAN;
}

} // namespace

std::optional<String> PlainlyFormatted(StringView value, StringView format) {
    if (format.empty()) return std::nullopt;
    if (format.front() == L'0') return Padded(value, format);
    const auto date = ReadDate(value);
    if (!date || IsAll(format, L"-") || !HasGregorianCalendar()) return std::nullopt;
    return Dated(*date, format);
}

} // namespace kestrel
