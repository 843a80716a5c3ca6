#include "support/StandIns.h"

#include <algorithm>
#include <cmath>

#include "common/Numbers.h"

namespace kestrel::test {

namespace {

wchar_t LowerOf(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

wchar_t UpperOf(wchar_t character) {
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A') : character;
}

template <wchar_t (*Change)(wchar_t)>
String Changed(String text) {
    std::transform(text.begin(), text.end(), text.begin(), Change);
    return text;
}

// What a locale compares: letters without case and width, soft hyphens not at all.
String Compared(StringView text) {
    String compared;
    for (const wchar_t character : text) {
        const bool fullWidth = character >= L'\uFF01' && character <= L'\uFF5E';
        if (character != L'\u00AD')
            compared += LowerOf(fullWidth ? static_cast<wchar_t>(character - 0xFEE0) : character);
    }
    return compared;
}

// Days since 30 December 1899 of a day in the Gregorian calendar.
double DayNumber(int year, int month, int day) {
    const int shifted = month > 2 ? year : year - 1;
    const int era = shifted / 400;
    const int yearOfEra = shifted - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097.0 + dayOfEra - 693899.0;
}

// Digits in groups of three.
String Grouped(String digits) {
    for (std::size_t end = digits.size(); end > 3; end -= 3)
        digits.insert(end - 3, 1, L',');
    return digits;
}

bool IsIsoDate(const String& text) { return text.size() >= 10 && text[4] == L'-' && text[7] == L'-'; }

int Digits(const String& text, std::size_t from, std::size_t count) {
    return static_cast<int>(LeadingNumber(StringView(text).substr(from, count)).value_or(0));
}

} // namespace

String StandInStrings::Text(int number) const {
    switch (number) {
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): shared with the resource compiler, which knows macros
#define STRING(id, english, german)                                                                                    \
    case id:                                                                                                           \
        return L##english;
#include "resources/strings.inc"
#undef STRING
    default: return {};
    }
}

String StandInText::Format(const String& value, const String& format) const {
    if (format.size() > 1 && format.front() == L'\\') return format[1] + Format(value, format.substr(2));
    if (format.size() > 1 && format[format.size() - 2] == L'\\')
        return Format(value, format.substr(0, format.size() - 2)) + format.back();
    if (format == L">") return Upper(value);
    if (format == L"<") return Lower(value);
    if (!format.empty() && format.find_first_not_of(L'0') == String::npos && Number(value)) {
        const String digits = CanonicalText(std::nearbyint(*Number(value)));
        return digits.size() >= format.size() ? digits : String(format.size() - digits.size(), L'0') + digits;
    }
    if (format == L"#,##0" && Number(value)) return Grouped(CanonicalText(std::nearbyint(*Number(value))));
    if (IsIsoDate(value)) {
        if (format == L"yymm") return value.substr(2, 2) + value.substr(5, 2);
        if (format == L"yyyy") return value.substr(0, 4);
        if (format == L"yyyy-mm-dd") return value.substr(0, 10);
    }
    return value;
}

std::optional<double> StandInText::Number(const String& text) const {
    const auto number = WholeNumber(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<Date> StandInText::ParseDate(const String& text) const {
    const bool date = IsIsoDate(text);
    const std::size_t clock = date ? 11 : 0;
    const bool time = text.size() >= clock + 5 && text[clock + 2] == L':';
    if (!date && !time) return std::nullopt;
    double result = date ? DayNumber(Digits(text, 0, 4), Digits(text, 5, 2), Digits(text, 8, 2)) : 0;
    if (time) {
        const int seconds = text.size() >= clock + 8 ? Digits(text, clock + 6, 2) : 0;
        const double fraction = (Digits(text, clock, 2) * 3600 + Digits(text, clock + 3, 2) * 60 + seconds) / 86400.0;
        result += result < 0 ? -fraction : fraction;
    }
    return result;
}

bool StandInText::SameText(StringView left, StringView right) const { return Compared(left) == Compared(right); }

String StandInText::SortKey(const String& text) const { return Compared(text); }

String StandInText::Upper(const String& text) const { return Changed<UpperOf>(text); }
String StandInText::Lower(const String& text) const { return Changed<LowerOf>(text); }

bool ScriptedPrompts::Ask(const String& question) {
    asked.push_back(question);
    if (whileAsking) whileAsking();
    return answer;
}

bool ScriptedPrompts::AskDefaultNo(const String& question) { return Ask(question); }

StandIns::StandIns(Dialogs* dialogs) : mvarBefore(InstallPorts({&mvarStrings, &mvarText, &prompts, dialogs})) {}

} // namespace kestrel::test
