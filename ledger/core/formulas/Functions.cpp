#include "ledger/core/formulas/Functions.h"

#include <algorithm>

#include "hosts/common/HostError.h"
#include "hosts/common/Nearest.h"
#include "hosts/common/Utf8.h"
#include "ledger/core/Sha256.h"
#include "ledger/core/formulas/CheckDigits.h"

namespace ledger {

namespace {

constexpr DateTime FirstRunningDay = {2000, 1, 1};
constexpr int LongestText = 255; // more than a code holds
constexpr int MostHashDigits = 18;

std::wstring UpperAscii(std::wstring_view text) {
    std::wstring upper(text);
    for (wchar_t& character : upper)
        if (character >= L'a' && character <= L'z') character = static_cast<wchar_t>(character - L'a' + L'A');
    return upper;
}

// Latin-1, Greek and Cyrillic letters besides: by their places in Unicode, so that no locale has a say.
wchar_t UpperOf(wchar_t letter) {
    const bool is32Apart = (letter >= L'a' && letter <= L'z') || (letter >= 0xE0 && letter <= 0xFE && letter != 0xF7) ||
                           (letter >= 0x3B1 && letter <= 0x3C9 && letter != 0x3C2) ||
                           (letter >= 0x430 && letter <= 0x44F);
    if (is32Apart) return static_cast<wchar_t>(letter - 32);
    if (letter >= 0x450 && letter <= 0x45F) return static_cast<wchar_t>(letter - 80);
    return letter;
}

std::wstring Padded(int number, std::size_t digits) {
    std::wstring text = std::to_wstring(number);
    if (text.size() < digits) text.insert(0, digits - text.size(), L'0');
    return text;
}

std::wstring Text(const Arguments& arguments, std::size_t at, const Surroundings& surroundings) {
    return TextOf(Evaluate(*arguments.at[at], surroundings));
}

std::wstring Shown(const Expression& expression) {
    return expression.kind == Expression::Kind::Name ? expression.text : expression.text + L"(...)";
}

DateTime Date(const Arguments& arguments, std::size_t at, const Surroundings& surroundings) {
    const Expression& argument = *arguments.at[at];
    const FormulaValue value = Evaluate(argument, surroundings);
    if (const auto* date = std::get_if<DateTime>(&value)) return *date;
    const auto& text = std::get<std::wstring>(value);
    // What the rule itself writes is ISO 8601, however records are written.
    const auto read = argument.kind == Expression::Kind::Text ? DateFormat().Read(text) : surroundings.dates.Read(text);
    if (!read)
        throw hosts::RecordError(Shown(argument) + L": '" + text + L"' is no date, " + surroundings.dates.Expected() +
                                 L" expected");
    return *read;
}

int Number(const Arguments& arguments, std::size_t at, int otherwise) {
    return arguments.at[at] == nullptr ? otherwise : std::stoi(arguments.at[at]->text);
}

bool Says(const Arguments& arguments, std::size_t at, const wchar_t* word) {
    return arguments.at[at] != nullptr && arguments.at[at]->text == word;
}

std::wstring Code(const Arguments& arguments, const Surroundings& surroundings) {
    std::wstring code;
    for (const std::wstring& band : arguments.bands)
        code += surroundings.partOf(band);
    return code;
}

FormulaValue Fiscal(const Arguments& arguments, const Surroundings& surroundings) {
    const DateTime date = Date(arguments, 0, surroundings);
    const int month = Number(arguments, 2, 0);
    const Calendar calendar = month == 0 ? surroundings.calendar : Calendar({month, 1, 2, 0});
    const std::wstring start = Padded(calendar.Year(date), 4);
    const std::wstring end = Padded(calendar.EndYear(date), 4);
    if (Says(arguments, 1, L"start")) return start;
    return Says(arguments, 1, L"end") ? end : start + L"-" + end.substr(2);
}

FormulaValue RunningWeek(const Arguments& arguments, const Surroundings& surroundings) {
    const DateTime first = arguments.at[1] == nullptr ? FirstRunningDay : Date(arguments, 1, surroundings);
    const int week = surroundings.calendar.RunningWeek(Date(arguments, 0, surroundings), first);
    if (week < 1) throw hosts::RecordError(L"the date is before the first running week, that of " + IsoText(first));
    return std::to_wstring(week);
}

FormulaValue Today(const Arguments& arguments, const Surroundings& surroundings) {
    const DateTime now = surroundings.clock(Says(arguments, 0, L"utc"));
    return DateTime{now.year, now.month, now.day};
}

FormulaValue Now(const Arguments& arguments, const Surroundings& surroundings) {
    DateTime now = surroundings.clock(Says(arguments, 0, L"utc"));
    now.isMoment = true;
    return now;
}

FormulaValue Upper(const Arguments& arguments, const Surroundings& surroundings) {
    std::wstring text = Text(arguments, 0, surroundings);
    std::ranges::transform(text, text.begin(), UpperOf);
    return text;
}

FormulaValue Left(const Arguments& arguments, const Surroundings& surroundings) {
    return Text(arguments, 0, surroundings).substr(0, static_cast<std::size_t>(Number(arguments, 1, 0)));
}

FormulaValue Right(const Arguments& arguments, const Surroundings& surroundings) {
    const std::wstring text = Text(arguments, 0, surroundings);
    return text.substr(text.size() - std::min(text.size(), static_cast<std::size_t>(Number(arguments, 1, 0))));
}

FormulaValue Pad(const Arguments& arguments, const Surroundings& surroundings) {
    std::wstring text = Text(arguments, 0, surroundings);
    const auto length = static_cast<std::size_t>(Number(arguments, 1, 0));
    const std::wstring fill = arguments.at[2] == nullptr ? L"0" : arguments.at[2]->text;
    if (fill.size() != 1) throw hosts::RecordError(L"'" + fill + L"' does not fill, one character expected");
    if (text.size() < length)
        text.insert(Says(arguments, 3, L"right") ? text.size() : 0, length - text.size(), fill.front());
    return text;
}

FormulaValue Hash(const Arguments& arguments, const Surroundings& surroundings) {
    const Sha256Sum sum = Sha256Of(hosts::ToUtf8(Text(arguments, 0, surroundings)));
    const int digits = Number(arguments, 1, 0);
    std::uint64_t number = 0;
    for (std::size_t at = 0; at < sizeof number; ++at)
        number = number << 8U | sum.at(at);
    std::uint64_t limit = 1;
    for (int digit = 0; digit < digits; ++digit)
        limit *= 10;
    const std::wstring text = std::to_wstring(number % limit);
    return std::wstring(static_cast<std::size_t>(digits) - text.size(), L'0') + text;
}

// What the calendar says of the date, with leading zeros up to the digits.
template <int (Calendar::*Ask)(const DateTime&) const, std::size_t DigitCount>
FormulaValue OfCalendar(const Arguments& arguments, const Surroundings& surroundings) {
    return Padded((surroundings.calendar.*Ask)(Date(arguments, 0, surroundings)), DigitCount);
}

template <std::wstring (*Check)(std::wstring_view)>
FormulaValue CheckOf(const Arguments& arguments, const Surroundings& surroundings) {
    return Check(Code(arguments, surroundings));
}

Parameter DateParameter() { return {Takes::Date, L"DATE", false, 0, 0, {}}; }
Parameter ValueParameter() { return {Takes::Value, L"VALUE", false, 0, 0, {}}; }
Parameter LengthParameter(const wchar_t* name, int highest) { return {Takes::Number, name, false, 1, highest, {}}; }
Parameter WordParameter(std::vector<std::wstring> words) { return {Takes::Word, L"", true, 0, 0, std::move(words)}; }
Parameter BandsParameter() { return {Takes::Bands, L"BAND", false, 0, 0, {}}; }

std::vector<Function> DateFunctions() {
    return {
        {L"year", {DateParameter()}, OfCalendar<&Calendar::Year, 4>, 4},
        {L"half", {DateParameter()}, OfCalendar<&Calendar::Half, 1>, 1},
        {L"quarter", {DateParameter()}, OfCalendar<&Calendar::Quarter, 1>, 1},
        {L"month",
         {DateParameter(), WordParameter({L"calendar"})},
         [](const Arguments& arguments, const Surroundings& surroundings) {
             return Says(arguments, 1, L"calendar") ? OfCalendar<&Calendar::CalendarMonth, 2>(arguments, surroundings)
                                                    : OfCalendar<&Calendar::Month, 2>(arguments, surroundings);
         },
         2},
        {L"week", {DateParameter()}, OfCalendar<&Calendar::Week, 2>, 2},
        {L"day", {DateParameter()}, OfCalendar<&Calendar::Day, 2>, 2},
        {L"weekday", {DateParameter()}, OfCalendar<&Calendar::WeekDay, 1>, 1},
        {L"yearday", {DateParameter()}, OfCalendar<&Calendar::DayOfYear, 3>, 3},
        {L"fiscal",
         {DateParameter(), WordParameter({L"start", L"end", L"both"}), {Takes::Number, L"MONTH", true, 1, 12, {}}},
         Fiscal},
        {L"isoweek",
         {DateParameter()},
         [](const Arguments& arguments, const Surroundings& surroundings) -> FormulaValue {
             return Padded(IsoWeekOf(Date(arguments, 0, surroundings)).week, 2);
         },
         2},
        {L"isoyear",
         {DateParameter()},
         [](const Arguments& arguments, const Surroundings& surroundings) -> FormulaValue {
             return Padded(IsoWeekOf(Date(arguments, 0, surroundings)).year, 4);
         },
         4},
        {L"runningweek", {DateParameter(), {Takes::Date, L"DATE", true, 0, 0, {}}}, RunningWeek},
        {L"today", {WordParameter({L"local", L"utc"})}, Today, 10},
        {L"now", {WordParameter({L"local", L"utc"})}, Now, 19},
    };
}

std::vector<Function> TextFunctions() {
    return {
        {L"upper", {ValueParameter()}, Upper},
        {L"left", {ValueParameter(), LengthParameter(L"LENGTH", LongestText)}, Left},
        {L"right", {ValueParameter(), LengthParameter(L"LENGTH", LongestText)}, Right},
        {L"pad",
         {ValueParameter(),
          LengthParameter(L"LENGTH", LongestText),
          {Takes::Text, L"'FILL'", true, 0, 0, {}},
          WordParameter({L"left", L"right"})},
         Pad},
        {L"hash", {ValueParameter(), LengthParameter(L"DIGITS", MostHashDigits)}, Hash},
    };
}

std::vector<Function> CheckFunctions() {
    return {
        {L"luhn", {BandsParameter()}, CheckOf<LuhnDigit>, 1},
        {L"ean", {BandsParameter()}, CheckOf<EanDigit>, 1},
        {L"mod11",
         {{Takes::Number, L"HIGHEST", true, 3, 99, {}}, BandsParameter()},
         [](const Arguments& arguments, const Surroundings& surroundings) -> FormulaValue {
             return Modulo11Digit(Code(arguments, surroundings), Number(arguments, 0, 10));
         },
         1},
        {L"mod97", {BandsParameter()}, CheckOf<Modulo97Digits>, 2},
        {L"verhoeff", {BandsParameter()}, CheckOf<VerhoeffDigit>, 1},
        {L"damm", {BandsParameter()}, CheckOf<DammDigit>, 1},
    };
}

std::vector<Function> MakeFunctions() {
    std::vector<Function> all = DateFunctions();
    std::ranges::move(TextFunctions(), std::back_inserter(all));
    std::ranges::move(CheckFunctions(), std::back_inserter(all));
    return all;
}

bool Fits(const Parameter& parameter, const Expression& argument) {
    using Kind = Expression::Kind;
    switch (parameter.takes) {
    case Takes::Value:
    case Takes::Date: return argument.kind != Kind::Number;
    case Takes::Number:
        return argument.kind == Kind::Number && argument.text.size() < 6 &&
               std::stoi(argument.text) >= parameter.lowest && std::stoi(argument.text) <= parameter.highest;
    case Takes::Word:
        return argument.kind == Kind::Name &&
               std::ranges::find(parameter.words, argument.text) != parameter.words.end();
    case Takes::Text: return argument.kind == Kind::Text;
    default: return argument.kind == Kind::Name;
    }
}

std::wstring UsageOf(const Parameter& parameter) {
    std::wstring usage = parameter.name;
    for (const std::wstring& word : parameter.words)
        usage += (usage.empty() ? L"" : L"|") + word;
    if (parameter.takes == Takes::Bands) return usage + L" ...";
    return parameter.isOptional ? L"[" + usage + L"]" : usage;
}

} // namespace

std::wstring TextOf(const FormulaValue& value) {
    const auto* date = std::get_if<DateTime>(&value);
    return date != nullptr ? IsoText(*date) : std::get<std::wstring>(value);
}

std::wstring Function::Usage() const {
    std::wstring usage = std::wstring(name) + L"(";
    for (const Parameter& parameter : parameters)
        usage += (&parameter == &parameters.front() ? L"" : L" ") + UsageOf(parameter);
    return usage + L")";
}

bool Function::TakesBands() const { return !parameters.empty() && parameters.back().takes == Takes::Bands; }

std::span<const Function> AllFunctions() {
    static const std::vector<Function> all = MakeFunctions();
    return all;
}

const Function& FunctionOf(const Expression& call) {
    const std::wstring wanted = UpperAscii(call.text);
    const auto found =
        std::ranges::find_if(AllFunctions(), [&wanted](const Function& one) { return UpperAscii(one.name) == wanted; });
    if (found != AllFunctions().end()) return *found;
    std::vector<std::wstring> names;
    for (const Function& one : AllFunctions())
        names.emplace_back(one.name);
    throw hosts::HostError(L"there is no function \"" + call.text + L"\"" + hosts::NearestHint(call.text, names));
}

Arguments MatchArguments(const Function& function, const Expression& call) {
    const auto refuse = [&function](const std::wstring& reason) {
        throw hosts::HostError(reason + L"; write " + function.Usage());
    };
    Arguments matched;
    std::size_t next = 0;
    for (const Parameter& parameter : function.parameters) {
        if (parameter.takes == Takes::Bands) {
            for (; next < call.arguments.size() && call.arguments[next].kind == Expression::Kind::Name; ++next)
                matched.bands.push_back(call.arguments[next].text);
            if (matched.bands.empty()) refuse(call.text + L" is given no band");
            continue;
        }
        const bool fits = next < call.arguments.size() && Fits(parameter, call.arguments[next]);
        if (!fits && !parameter.isOptional)
            refuse(next < call.arguments.size() ? call.text + L" cannot take \"" + call.arguments[next].text + L"\""
                                                : call.text + L" is given too few arguments");
        matched.at.push_back(fits ? &call.arguments[next++] : nullptr);
    }
    if (next < call.arguments.size()) refuse(call.text + L" cannot take \"" + call.arguments[next].text + L"\"");
    return matched;
}

std::optional<std::size_t> LengthOf(const Expression& call) {
    const Function& function = FunctionOf(call);
    const Arguments arguments = MatchArguments(function, call);
    const std::wstring_view name = function.name;
    if (name == L"hash") return static_cast<std::size_t>(Number(arguments, 1, 0));
    if (name == L"fiscal") return Says(arguments, 1, L"start") || Says(arguments, 1, L"end") ? 4U : 7U;
    return function.length == 0 ? std::nullopt : std::optional(function.length);
}

FormulaValue Evaluate(const Expression& expression, const Surroundings& surroundings) {
    switch (expression.kind) {
    case Expression::Kind::Name: return surroundings.valueOf(expression.text);
    case Expression::Kind::Call: {
        const Function& function = FunctionOf(expression);
        return function.compute(MatchArguments(function, expression), surroundings);
    }
    default: return expression.text;
    }
}

} // namespace ledger
