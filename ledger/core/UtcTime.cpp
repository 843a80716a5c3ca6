#include "ledger/core/UtcTime.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace ledger {

namespace {

// How a time looks: "9" is a digit. What of it is left out is as early as can be.
constexpr std::wstring_view Shape = L"9999-99-99T99:99:99Z";
constexpr std::wstring_view Earliest = L"0000-01-01T00:00:00Z";
constexpr std::array<std::size_t, 7> Lengths = {4, 7, 10, 13, 16, 19, 20};

bool FitsShape(const std::wstring& text) {
    if (std::ranges::find(Lengths, text.size()) == Lengths.end()) return false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isDigit = text[at] >= L'0' && text[at] <= L'9';
        if (Shape[at] == L'9' ? !isDigit : text[at] != Shape[at]) return false;
    }
    return true;
}

} // namespace

std::optional<std::chrono::sys_seconds> TimeOf(const std::wstring& text) {
    using namespace std::chrono;
    if (!FitsShape(text)) return std::nullopt;
    const std::wstring whole = text + std::wstring(Earliest.substr(text.size()));
    const auto part = [&whole](std::size_t at, std::size_t size) { return std::stoi(whole.substr(at, size)); };
    const year_month_day date(year(part(0, 4)), month(static_cast<unsigned>(part(5, 2))),
                              day(static_cast<unsigned>(part(8, 2))));
    const int hour = part(11, 2);
    const int minute = part(14, 2);
    const int second = part(17, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

std::wstring DateText(std::chrono::sys_seconds time) {
    const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(time));
    const auto padded = [](unsigned number, std::size_t size) {
        const std::wstring text = std::to_wstring(number);
        return std::wstring(size - std::min(size, text.size()), L'0') + text;
    };
    return padded(static_cast<unsigned>(static_cast<int>(date.year())), 4) + L'-' +
           padded(static_cast<unsigned>(date.month()), 2) + L'-' + padded(static_cast<unsigned>(date.day()), 2);
}

} // namespace ledger
