#include "ledger/core/CodeMaker.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "hosts/common/Text.h"
#include "ledger/core/Refusals.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

namespace {

using hosts::HostError;
using hosts::RecordError;

// What the columns of the tables hold.
constexpr std::size_t LongestCode = 255;
constexpr std::size_t LongestBandName = 120;
constexpr std::size_t LongestSeries = 255;

// Nothing when the text is not all digits or the number is beyond 64 bits.
std::optional<std::int64_t> DigitsAsNumber(const std::wstring& text) {
    std::int64_t number = 0;
    if (text.empty()) return std::nullopt;
    for (const wchar_t digit : text) {
        if (digit < L'0' || digit > L'9') return std::nullopt;
        const std::int64_t value = digit - L'0';
        if (number > (std::numeric_limits<std::int64_t>::max() - value) / 10) return std::nullopt;
        number = number * 10 + value;
    }
    return number;
}

// The largest number of so many digits, as far as 64 bits go.
std::int64_t LargestNumber(std::size_t digits) {
    std::int64_t largest = 0;
    for (; digits > 0 && largest <= (std::numeric_limits<std::int64_t>::max() - 9) / 10; --digits)
        largest = largest * 10 + 9;
    return largest;
}

std::int64_t StartOf(const hosts::Dispatch& band) {
    const std::wstring defaultText = band.Get(L"Default").Text();
    return DigitsAsNumber(defaultText.empty() ? band.Get(L"InitStart").Text() : defaultText).value_or(0);
}

std::int64_t HighestOf(const hosts::Dispatch& band, std::size_t length) {
    const std::int64_t room = LargestNumber(length);
    return std::min(room, DigitsAsNumber(band.Get(L"InitEnd").Text()).value_or(room));
}

// Names of bands are the same whatever their letter case.
bool IsTracked(const hosts::Band& band, const std::vector<std::wstring>& tracked) {
    return std::ranges::any_of(tracked, [&band](const std::wstring& name) {
        return CompareStringOrdinal(name.c_str(), -1, band.name.c_str(), -1, TRUE) == CSTR_EQUAL;
    });
}

std::vector<bool> ShownBy(const std::vector<hosts::Band>& bands, const std::vector<std::wstring>& tracked) {
    std::vector<bool> shown;
    for (const hosts::Band& band : bands)
        shown.insert(shown.end(), band.length, band.style == hosts::BandStyle::Fixed || IsTracked(band, tracked));
    return shown;
}

// The series of a band that tracks nothing: fixed bands stand as they are.
std::wstring UntrackedPattern(const std::vector<hosts::Band>& bands, const hosts::Rule& rule) {
    std::wstring pattern;
    for (const hosts::Band& band : bands)
        pattern += band.style == hosts::BandStyle::Fixed ? rule.BandValue(band.name) : std::wstring(band.length, L'?');
    return pattern;
}

FieldValues KnownTo(const hosts::Rule& rule, const FieldValues& values) {
    FieldValues known;
    std::ranges::copy_if(values, std::back_inserter(known),
                         [&rule](const auto& value) { return rule.Knows(value.first); });
    return known;
}

std::vector<hosts::Band> LoadBands(hosts::Rule& rule, const std::wstring& definition, const RuleSettings& settings) {
    LoadWithWeek(rule, definition, settings.week);
    return rule.Bands();
}

// Digits are a date for the component, too: "1905" counts days, and happens to lie in that year.
bool IsOfFormat(const std::wstring& value, const std::wstring& format) {
    if (!FormatsDates(format) || DateFormat().Read(value)) return true;
    return FormatsTimesAlone(format) && ReadTime(value);
}

// A number that does not fit into its band, after the last code of its series; the message when it fits.
std::wstring WhyNumberIsRefused(const NumberBand& band, const std::wstring& series, const std::wstring& lastCode,
                                const std::wstring& format, const std::wstring& message) {
    const std::wstring last = lastCode.empty() ? std::wstring() : lastCode.substr(band.position, band.length);
    const std::int64_t next = last.empty() ? band.start : DigitsAsNumber(last).value_or(0) + 1;
    if (next > LargestNumber(band.length))
        return L"series " + series + L": full, " + std::to_wstring(band.highest) + L" was the last number";
    const std::wstring shown = Formatted(std::to_wstring(next), format);
    return shown.size() == band.length ? message : LengthRefusal(band.name, shown, band.length);
}

} // namespace

std::wstring SeriesOf(const NumberBand& band, std::wstring code) {
    for (std::size_t at = 0; at < code.size() && at < band.shown.size(); ++at)
        if (!band.shown[at]) code[at] = L'?';
    return code;
}

std::wstring CodeWithNumber(const NumberBand& band, std::wstring series, std::int64_t number) {
    if (number < 0 || series.size() < band.shown.size()) return {};
    series.resize(band.shown.size());
    std::wstring digits = std::to_wstring(number);
    if (digits.size() < band.length) digits.insert(0, band.length - digits.size(), L'0');
    return series.replace(band.position, band.length, digits);
}

SeriesFull::SeriesFull(const NumberBand& band, const std::wstring& series, std::int64_t next)
    : RecordError(L"series " + series + L": full, " + std::to_wstring(std::min(next - band.step, band.highest)) +
                  L" was the last number"),
      mvarNext(next) {}

CodeMaker::CodeMaker(const std::wstring& definition, RuleSettings settings)
    : mvarSettings(std::move(settings)), mvarBands(LoadBands(mvarRule, definition, mvarSettings)),
      mvarValues(mvarRule, mvarBands), mvarCodeLength(mvarRule.CodeLength()) {
    if (mvarCodeLength > LongestCode)
        throw HostError(L"the rule's codes are " + std::to_wstring(mvarCodeLength) +
                        L" characters long; the ledger keeps codes of up to " + std::to_wstring(LongestCode));
    ReadNumberBands();
    mvarRule.OnLastCode([this](const std::wstring& series) { return Answer(series); });
}

void CodeMaker::ReadNumberBands() {
    for (const hosts::Band& band : mvarBands) {
        if (band.style != hosts::BandStyle::Number) continue;
        if (band.name.size() > LongestBandName)
            throw HostError(L"the name of band " + band.name + L" is longer than the ledger keeps (" +
                            std::to_wstring(LongestBandName) + L" characters)");
        hosts::Dispatch object = mvarRule.Component().Item(hosts::Variant(band.name), L"Band");
        mvarNumberBands.push_back({band.name, band.position, band.length, StartOf(object),
                                   HighestOf(object, band.length), ShownBy(mvarBands, band.tracked),
                                   !band.tracked.empty(), mvarSettings.step});
        mvarValues.Hide(mvarNumberBands.back().shown);
        if (band.tracked.empty()) mvarUntracked.push_back(std::move(object));
    }
}

bool CodeMaker::Knows(const std::wstring& name) const {
    return mvarRule.Knows(name) || (!name.empty() && name == mvarSettings.series);
}

// The component asks for one tracking band after the other, in their order.
std::wstring CodeMaker::Answer(const std::wstring& pattern) {
    while (mvarAsked < mvarNumberBands.size() && !mvarNumberBands[mvarAsked].tracks)
        ++mvarAsked;
    if (mvarSource == nullptr || mvarAsked >= mvarNumberBands.size()) return {};
    const NumberBand& band = mvarNumberBands[mvarAsked];
    const auto next = Ask(mvarAsked++, mvarValues.Masked(pattern));
    mvarLastCode = next ? CodeWithNumber(band, pattern, *next - 1) : std::wstring();
    return mvarLastCode;
}

std::optional<std::int64_t> CodeMaker::Ask(std::size_t band, const std::wstring& pattern) {
    const NumberBand& asked = mvarNumberBands[band];
    mvarSeries[band] = pattern + mvarSeparation;
    const auto next = (*mvarSource)(asked, mvarSeries[band]);
    if (next.value_or(asked.start) > asked.highest)
        throw SeriesFull(asked, mvarSeries[band], next.value_or(asked.start));
    return next;
}

// The component never asks for a band that tracks nothing and takes the value that it has: the ledger counts for it.
void CodeMaker::SetUntracked() {
    std::size_t object = 0;
    for (std::size_t at = 0; at < mvarNumberBands.size(); ++at) {
        const NumberBand& band = mvarNumberBands[at];
        if (band.tracks) continue;
        const std::int64_t number = Ask(at, UntrackedPattern(mvarBands, mvarRule)).value_or(band.start);
        mvarUntracked[object++].Put(L"Value", hosts::Variant(std::to_wstring(number)));
    }
}

// Series that differ in a value that no code shows differ behind their patterns.
std::wstring CodeMaker::Separation(const FieldValues& values) const {
    if (mvarSettings.series.empty()) return {};
    const auto found = std::find_if(values.rbegin(), values.rend(),
                                    [this](const auto& value) { return value.first == mvarSettings.series; });
    if (found == values.rend() || found->second.empty())
        throw RecordError(L"field " + mvarSettings.series + L": no value, and the rule counts separately by it");
    std::wstring separation = L" [" + found->second + L"]";
    if (hosts::HasControl(separation) || mvarCodeLength + separation.size() > LongestSeries)
        throw RecordError(L"field " + mvarSettings.series + L": no series can have the value \"" +
                          hosts::Shown(found->second) + L"\"; it has " + std::to_wstring(found->second.size()) +
                          L" characters, and there is room for " + std::to_wstring(LongestSeries - 3 - mvarCodeLength) +
                          L" without control characters");
    return separation;
}

std::wstring CodeMaker::WhyRefused(const std::wstring& message) const {
    if (std::wstring reason = WhyValuesAreRefused(mvarRule, mvarValues.Bound()); !reason.empty()) return reason;
    if (mvarAsked == 0) return message;
    const NumberBand& band = mvarNumberBands[mvarAsked - 1];
    const auto format = mvarRule.Component().Item(hosts::Variant(band.name), L"Band").Get(L"Formate").Text();
    return WhyNumberIsRefused(band, mvarSeries[mvarAsked - 1], mvarLastCode, format, message);
}

std::wstring CodeMaker::NextCode() {
    try {
        return mvarRule.NextCode();
    } catch (const hosts::DispatchError& error) {
        throw RecordError(WhyRefused(error.Message()));
    }
}

MadeCode CodeMaker::Make(const FieldValues& values, const NextNumberSource& source) {
    mvarValues.Give(KnownTo(mvarRule, values));
    mvarSeparation = Separation(values);
    mvarSeries.assign(mvarNumberBands.size(), {});
    mvarAsked = 0;
    mvarSource = &source;
    SetUntracked();
    std::wstring code = NextCode();
    if (code.size() == mvarCodeLength) code = mvarValues.Completed(std::move(code));
    return Numbered(std::move(code), mvarSeries);
}

void CodeMaker::TakeApart(const std::wstring& code) {
    try {
        mvarRule.TakeApart(code);
    } catch (const hosts::DispatchError& error) {
        const std::wstring reason = WhyNotTakenApart(mvarRule, mvarBands, mvarValues.Bound(), code);
        throw RecordError(reason.empty() ? error.Message() : reason);
    }
}

MadeCode CodeMaker::Recognise(const std::wstring& code, const FieldValues& values) {
    mvarValues.RefuseUnsound();
    TakeApart(code);
    for (const CheckedPart& part : Checked(code))
        if (!part.IsRight()) throw RecordError(RefusalOf(part));
    const std::wstring separation = Separation(values);
    std::vector<std::wstring> series;
    for (const NumberBand& band : mvarNumberBands)
        series.push_back(SeriesOf(band, code) + separation);
    return Numbered(code, series);
}

MadeCode CodeMaker::Numbered(std::wstring code, const std::vector<std::wstring>& series) const {
    if (code.size() != mvarCodeLength)
        throw RecordError(L"code " + code + L" is not as long as its bands (" + std::to_wstring(mvarCodeLength) +
                          L"); a band of the rule has no value yet");
    if (hosts::HasControl(code))
        throw RecordError(L"code " + hosts::Shown(code) +
                          L" has a control character in it, such as a line break or a tab");
    MadeCode made{std::move(code), {}};
    for (std::size_t at = 0; at < series.size(); ++at) {
        const NumberBand& band = mvarNumberBands[at];
        const std::wstring part = made.code.substr(band.position, band.length);
        const auto number = DigitsAsNumber(part);
        if (!number)
            throw RecordError(L"\"" + part + L"\" in band " + band.name + L" is no number that can be counted");
        made.numbers.push_back({band.name, series[at], *number});
    }
    return made;
}

std::vector<std::wstring> CodeMaker::Taken() const {
    std::vector<std::wstring> names = mvarRule.Names();
    std::erase_if(names, [this](const std::wstring& name) { return mvarValues.Computes(name); });
    if (!mvarSettings.series.empty() && std::ranges::find(names, mvarSettings.series) == names.end())
        names.push_back(mvarSettings.series);
    return names;
}

std::vector<std::wstring> CodeMaker::Unreadable(const std::wstring& code) const {
    std::vector<std::wstring> items;
    for (const BoundBand& band : mvarValues.Bound()) {
        if (band.swap != Swap::None || band.item.empty() || std::ranges::find(items, band.item) != items.end())
            continue;
        const std::wstring value = mvarRule.Value(band.item);
        if (!IsOfFormat(value, band.format) || Formatted(value, band.format) != code.substr(band.position, band.length))
            items.push_back(band.item);
    }
    return items;
}

FieldValues CodeMaker::Values() const {
    FieldValues values;
    for (const std::wstring& name : mvarRule.Names())
        values.emplace_back(name, mvarRule.Value(name));
    return values;
}

} // namespace ledger
