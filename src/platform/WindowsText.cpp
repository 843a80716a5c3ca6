#include "platform/WindowsText.h"

#include <algorithm>
#include <optional>
#include <string>

#include "common/PlainText.h"
#include "platform/PlainFormats.h"
#include "platform/Variant.h"

namespace kestrel {

namespace {

// A double holds every number of so many digits, a decimal of so many.
constexpr std::size_t DigitsOfDouble = 15;
constexpr std::size_t DigitsOfDecimal = 28;
constexpr DWORD TextComparison = NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH;

bool IsDigits(const String& text) noexcept { return text.find_first_not_of(L"0123456789") == String::npos; }

// Numeric formats would read a text as a double and lose its last digits.
bool NeedsDecimal(const String& value, const String& format) noexcept {
    return value.size() > DigitsOfDouble && value.size() <= DigitsOfDecimal && IsDigits(value) &&
           format.find_first_of(L"0#") != String::npos;
}

Variant ValueToFormat(const String& value, const String& format) {
    Variant variant{StringView(value)};
    // What cannot be a decimal after all is formatted as it is.
    if (NeedsDecimal(value, format)) VariantChangeType(variant.Out(), variant.Out(), 0, VT_DECIMAL);
    return variant;
}

enum class Likeness { Same, Different, AskTheSystem };

wchar_t RaisedAscii(wchar_t character) noexcept {
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A') : character;
}

bool IsPrintableAscii(wchar_t character) noexcept { return character >= L' ' && character <= L'~'; }

// Printable ASCII characters that are not the same letter: no locale takes them for the same.
bool DifferInAscii(wchar_t left, wchar_t right) noexcept {
    return left != right && IsPrintableAscii(left) && IsPrintableAscii(right) &&
           FoldedAscii(left) != FoldedAscii(right);
}

// Decides at the last character, by which most texts of a list differ, or else at the first difference, where both
// characters are printable ASCII. Anything else may be ignored, or stand for several characters, and is the system's
// affair.
Likeness CompareAscii(StringView left, StringView right) noexcept {
    if (!left.empty() && !right.empty() && DifferInAscii(left.back(), right.back())) return Likeness::Different;
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (left[i] == right[i]) continue;
        if (!IsPrintableAscii(left[i]) || !IsPrintableAscii(right[i])) return Likeness::AskTheSystem;
        if (FoldedAscii(left[i]) != FoldedAscii(right[i])) return Likeness::Different;
    }
    const StringView rest = (left.size() > right.size() ? left : right).substr(common);
    if (rest.empty()) return Likeness::Same;
    return IsPrintableAscii(rest.front()) ? Likeness::Different : Likeness::AskTheSystem;
}

// Case mapping without linguistic rules, which are the only ones that differ among locales.
template <wchar_t (*Map)(wchar_t) noexcept>
String Mapped(const String& text, DWORD mapping) {
    String mapped(text.size(), L'\0');
    if (std::all_of(text.begin(), text.end(), IsPrintableAscii)) {
        std::transform(text.begin(), text.end(), mapped.begin(), Map);
        return mapped;
    }
    const int size = static_cast<int>(text.size());
    const int written =
        LCMapStringEx(LOCALE_NAME_INVARIANT, mapping, text.data(), size, mapped.data(), size, nullptr, nullptr, 0);
    return written == size ? mapped : text;
}

// The runtime's functions take texts that they only read without const.
LPOLESTR ForReading(const String& text) noexcept { return const_cast<LPOLESTR>(text.c_str()); }

// What apply(variant, text) makes of the value; the value where it fails.
template <class Apply>
String FormattedBy(const String& value, const String& format, Apply apply) {
    Variant variant = ValueToFormat(value, format);
    Bstr text;
    return SUCCEEDED(apply(variant.Out(), text.Out())) ? text.Text() : value;
}

} // namespace

String WindowsText::Format(const String& value, const String& format) const {
    if (auto plain = PlainlyFormatted(value, format)) return *std::move(plain);
    PreparedFormats::Tokens tokens{};
    if (!mvarPrepared.Prepare(format, GetUserDefaultLCID(), tokens)) return FormatByPlatform(value, format);
    return FormattedBy(value, format, [&](VARIANT* variant, BSTR* text) {
        return VarFormatFromTokens(variant, ForReading(format), tokens.data(), 0, text, LOCALE_USER_DEFAULT);
    });
}

String WindowsText::FormatByPlatform(const String& value, const String& format) {
    return FormattedBy(value, format, [&format](VARIANT* variant, BSTR* text) {
        return VarFormat(variant, ForReading(format), PreparedFormats::WeekBeginsOnSunday,
                         PreparedFormats::YearBeginsOnFirstOfJanuary, 0, text);
    });
}

std::optional<double> WindowsText::Number(const String& text) const {
    double number = 0;
    if (FAILED(VarR8FromStr(ForReading(text), LOCALE_USER_DEFAULT, 0, &number))) return std::nullopt;
    return number;
}

std::optional<Date> WindowsText::ParseDate(const String& text) const {
    DATE date = 0;
    if (FAILED(VarDateFromStr(ForReading(text), LOCALE_USER_DEFAULT, 0, &date))) return std::nullopt;
    return date;
}

bool WindowsText::SameText(StringView left, StringView right) const {
    const Likeness answer = CompareAscii(left, right);
    if (answer != Likeness::AskTheSystem) return answer == Likeness::Same;
    return CompareStringEx(LOCALE_NAME_USER_DEFAULT, TextComparison, left.data(), static_cast<int>(left.size()),
                           right.data(), static_cast<int>(right.size()), nullptr, nullptr, 0) == CSTR_EQUAL;
}

String WindowsText::SortKey(const String& text) const {
    const int size = static_cast<int>(text.size());
    // The key comes as bytes, into a buffer that is passed, and counted, as if it were a text.
    const auto map = [&](char* key, int room) {
        return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_SORTKEY | TextComparison, text.data(), size,
                             reinterpret_cast<LPWSTR>(key), room, nullptr, nullptr, 0);
    };
    std::string key(static_cast<std::size_t>(std::max(0, map(nullptr, 0))), '\0');
    if (key.empty()) return {};
    map(key.data(), static_cast<int>(key.size()));
    // Of a text that is ignored as a whole the system's key is marks between weights that are not there; of the empty
    // text, which is the same, it has none.
    if (std::all_of(key.begin(), key.end(), [](char byte) { return byte == '\0' || byte == '\1'; })) return {};
    String widened(key.size(), L'\0');
    std::transform(key.begin(), key.end(), widened.begin(),
                   [](char byte) { return static_cast<wchar_t>(static_cast<unsigned char>(byte)); });
    return widened;
}

String WindowsText::Upper(const String& text) const { return Mapped<RaisedAscii>(text, LCMAP_UPPERCASE); }

String WindowsText::Lower(const String& text) const { return Mapped<FoldedAscii>(text, LCMAP_LOWERCASE); }

} // namespace kestrel
