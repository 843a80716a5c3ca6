#include "common/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "common/Ports.h"

namespace kestrel {

namespace {

bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }

bool IsAllDigits(StringView text) { return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit); }

StringView WithoutLeadingZeros(StringView digits) {
    const auto first = digits.find_first_not_of(L'0');
    return first == StringView::npos ? StringView() : digits.substr(first);
}

// How many characters at the beginning belong to a number: digits, at most one ".", and an exponent that has digits.
// 0 when there is not a single digit before the exponent.
std::size_t UnsignedNumberLength(StringView text) {
    std::size_t length = 0;
    std::size_t digits = 0;
    bool point = false;
    for (; length < text.size(); ++length) {
        if (IsDigit(text[length]))
            ++digits;
        else if (text[length] == L'.' && !point)
            point = true;
        else
            break;
    }
    if (digits == 0) return 0;
    if (length < text.size() && (text[length] == L'e' || text[length] == L'E')) {
        auto end = length + 1;
        if (end < text.size() && (text[end] == L'+' || text[end] == L'-')) ++end;
        if (end < text.size() && IsDigit(text[end])) {
            while (end < text.size() && IsDigit(text[end]))
                ++end;
            length = end;
        }
    }
    return length;
}

struct Parsed {
    double number = 0;
    StringView rest;
};

// Of digits that no double can hold: whether they are too large, and not too small. The place of the first digit that
// counts and the exponent together say so.
bool IsTooLarge(std::string_view digits) {
    const auto mantissa = digits.substr(0, digits.find_first_of("eE"));
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    const auto magnitude = static_cast<std::int64_t>(point) -
                           static_cast<std::int64_t>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
    if (mantissa.size() == digits.size()) return magnitude > 0;
    const auto exponentText = digits.substr(mantissa.size() + 1);
    std::int64_t exponent = 0;
    const auto* const end = exponentText.data() + exponentText.size();
    if (std::from_chars(exponentText.data(), end, exponent).ec == std::errc::result_out_of_range)
        return exponentText.front() != '-';
    return exponent > -magnitude;
}

// Too large reads as infinity, too small as 0, as the digits say.
double ToDouble(const std::string& digits) {
    double number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc::result_out_of_range) return number;
    return IsTooLarge(digits) ? std::numeric_limits<double>::infinity() : 0;
}

std::optional<Parsed> ParseNumber(StringView text) {
    text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
    const bool negative = !text.empty() && text.front() == L'-';
    if (negative || (!text.empty() && text.front() == L'+')) text.remove_prefix(1);
    const auto length = UnsignedNumberLength(text);
    if (length == 0) return std::nullopt;
    std::string digits;
    for (const wchar_t character : text.substr(0, length))
        if (character != L'+') digits += static_cast<char>(character);
    const double number = ToDouble(digits);
    return Parsed{negative ? -number : number, text.substr(length)};
}

// Digits whose first one counts 10 to the power of the exponent.
String PlainNotation(String digits, int exponent) {
    if (exponent < 0) return L"0." + String(static_cast<std::size_t>(-exponent) - 1, L'0') + digits;
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) return digits.append(whole - digits.size(), L'0');
    return digits.insert(whole, 1, L'.');
}

} // namespace

std::optional<double> LeadingNumber(StringView text) {
    const auto parsed = ParseNumber(text);
    return parsed ? std::optional(parsed->number) : std::nullopt;
}

std::optional<double> WholeNumber(StringView text) {
    const auto parsed = ParseNumber(text);
    if (!parsed || parsed->rest.find_first_not_of(L' ') != StringView::npos) return std::nullopt;
    return parsed->number;
}

std::optional<std::int32_t> ToInteger(double number) {
    const double rounded = std::nearbyint(number);
    // Written so that what is no number fails as well.
    const bool fits =
        rounded >= std::numeric_limits<std::int32_t>::min() && rounded <= std::numeric_limits<std::int32_t>::max();
    return fits ? std::optional(static_cast<std::int32_t>(rounded)) : std::nullopt;
}

String CanonicalText(double number) {
    std::array<char, 32> buffer{}; // sign, 17 digits, point and exponent fit
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(number), std::chars_format::scientific);
    const std::string_view text(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    const auto end = text.find('e');
    if (end == std::string_view::npos) return String(text.begin(), text.end()); // no number, or infinite
    int exponent = 0;
    const auto first = end + (text[end + 1] == '+' ? 2 : 1);
    std::from_chars(text.data() + first, text.data() + text.size(), exponent);
    String digits(1, static_cast<wchar_t>(text.front()));
    if (end > 2) digits.append(text.begin() + 2, text.begin() + static_cast<std::ptrdiff_t>(end));
    return (number < 0 ? L"-" : L"") + PlainNotation(digits, exponent);
}

std::optional<double> NumericValue(const String& text) {
    const auto number = WholeNumber(text);
    return number && CanonicalText(*number) == text ? number : TheText().Number(text);
}

String Increased(StringView text, std::uint32_t step) {
    if (!IsAllDigits(text)) return CanonicalText(LeadingNumber(text).value_or(0) + step);
    String digits(WithoutLeadingZeros(text));
    std::uint64_t carry = step;
    for (auto digit = digits.rbegin(); digit != digits.rend() && carry != 0; ++digit, carry /= 10) {
        carry += static_cast<std::uint64_t>(*digit - L'0');
        *digit = static_cast<wchar_t>(L'0' + carry % 10);
    }
    return carry == 0 && !digits.empty() ? digits : ToText(static_cast<std::int64_t>(carry)) + digits;
}

bool NumericallyLess(StringView left, StringView right) {
    if (!IsAllDigits(left) || !IsAllDigits(right))
        return LeadingNumber(left).value_or(0) < LeadingNumber(right).value_or(0);
    left = WithoutLeadingZeros(left);
    right = WithoutLeadingZeros(right);
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

} // namespace kestrel
