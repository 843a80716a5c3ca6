#include "common/Numbers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "common/Decimal.h"
#include "common/PlainText.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

// Up to here, two to the power of 53, each whole number is a double.
constexpr double ExactIntegers = 9007199254740992.0;
// And of so many digits, whatever they are.
constexpr std::size_t DigitsOfAnyDouble = 15;

bool IsAllDigits(StringView text) { return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit); }

double ExactNumber(StringView digits) {
    std::int64_t number = 0;
    for (const wchar_t digit : digits)
        number = number * 10 + (digit - L'0');
    return static_cast<double>(number);
}

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

// The number behind an "e", as far as it can matter: beside it stands a count of digits, which is never that large.
std::int64_t ToExponent(StringView text) {
    constexpr std::int64_t most = std::int64_t{1} << 62U;
    const bool negative = text.front() == L'-';
    if (negative || text.front() == L'+') text.remove_prefix(1);
    std::int64_t exponent = 0;
    for (const wchar_t digit : text)
        exponent = std::min(exponent * 10 + (digit - L'0'), most / 10);
    return negative ? -exponent : exponent;
}

// What UnsignedNumberLength has found to be a number.
Decimal ToDecimal(StringView text) {
    const auto mantissa = text.substr(0, text.find_first_of(L"eE"));
    const auto point = std::min(mantissa.find(L'.'), mantissa.size());
    const auto first = mantissa.find_first_not_of(L"0.");
    if (first == StringView::npos) return {};
    Decimal decimal;
    const auto last = mantissa.find_last_not_of(L"0.");
    std::copy_if(mantissa.begin() + static_cast<std::ptrdiff_t>(first),
                 mantissa.begin() + static_cast<std::ptrdiff_t>(last) + 1, std::back_inserter(decimal.digits), IsDigit);
    decimal.exponent = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) - (first < point ? 1 : 0);
    if (mantissa.size() < text.size()) decimal.exponent += ToExponent(text.substr(mantissa.size() + 1));
    return decimal;
}

std::optional<Parsed> ParseNumber(StringView text) {
    text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
    const bool negative = !text.empty() && text.front() == L'-';
    if (negative || (!text.empty() && text.front() == L'+')) text.remove_prefix(1);
    const auto length = UnsignedNumberLength(text);
    if (length == 0) return std::nullopt;
    const double number = Nearest(ToDecimal(text.substr(0, length)));
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
    if (std::isnan(number)) return L"nan";
    if (std::isinf(number)) return L"inf";
    const auto* const sign = number < 0 ? L"-" : L"";
    number = std::fabs(number);
    if (number <= ExactIntegers && std::trunc(number) == number)
        return sign + ToText(static_cast<std::int64_t>(number));
    const auto decimal = Shortest(number);
    return sign + PlainNotation(decimal.digits, static_cast<int>(decimal.exponent));
}

std::optional<double> NumericValue(const String& text) {
    // A few digits, with zeros in front or not, are the same number to every user.
    if (text.size() <= DigitsOfAnyDouble && IsAllDigits(text)) return ExactNumber(text);
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
