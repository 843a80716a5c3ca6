#include "ledger/core/RecordValues.h"

#include <windows.h>

#include <algorithm>

#include "ledger/core/Refusals.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

namespace {

using hosts::HostError;
using hosts::RecordError;

DateTime ReadClock(bool isUtc) {
    SYSTEMTIME now{};
    if (isUtc)
        GetSystemTime(&now);
    else
        GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

// The macro's name before what is wrong with what it is computed from.
FormulaValue Evaluated(const PlannedFormula& formula, const Surroundings& surroundings) {
    try {
        return Evaluate(formula.call, surroundings);
    } catch (const RecordError& error) {
        throw RecordError(L"macro " + formula.macro + L" (" + formula.text + L"): " + error.Message());
    }
}

FormulaNames NamesOf(const hosts::Rule& rule, const std::vector<hosts::Band>& bands,
                     const std::vector<BoundBand>& bound) {
    FormulaNames names{rule.Names(), {}};
    for (const hosts::Band& band : bands)
        names.bands[band.name];
    for (const BoundBand& band : bound)
        names.bands[band.name] = band.isMacro ? band.item : std::wstring();
    return names;
}

[[noreturn]] void RefuseComputed(const PlannedFormula& formula, const std::wstring& name, const std::wstring& value) {
    throw RecordError(L"macro " + name + L" is computed (" + formula.text + L"), no value expected: '" + value + L"'");
}

} // namespace

std::wstring RefusalOf(const CheckedPart& part) {
    return L"band " + part.band + L": '" + part.stands + L"', '" + part.expected + L"' expected (" + part.formula +
           L")";
}

RecordValues::RecordValues(hosts::Rule& rule, const std::vector<hosts::Band>& bands)
    : mvarRule(rule), mvarBands(bands), mvarBound(ReadBoundBands(rule, bands)), mvarCalendar(CalendarOf(rule)) {
    const auto fields = static_cast<std::ptrdiff_t>(rule.Component().Object(L"UsrFields").Get(L"Count").Number());
    mvarFields.insert(rule.Names().begin(), rule.Names().begin() + fields); // they come before the macros
    try {
        ReadFormulas();
        RefuseUnfit();
    } catch (const HostError& error) {
        mvarUnsound = error.Message();
    }
    Sort();
}

void RecordValues::ReadFormulas() {
    std::vector<MacroFormula> formulas;
    const hosts::Dispatch macros = mvarRule.Component().Object(L"UsrMacros");
    const long count = macros.Get(L"Count").Number();
    for (long position = 1; position <= count; ++position) {
        hosts::Dispatch macro = macros.Item(hosts::Variant(position));
        const std::wstring description = macro.Get(L"Description").Text();
        if (!IsFormula(description)) continue;
        const std::wstring name = macro.Get(L"Name").Text();
        formulas.push_back({name, description});
        mvarMacros.emplace(name, std::move(macro));
    }
    mvarFormulas = FormulaSet(formulas, NamesOf(mvarRule, mvarBands, mvarBound));
}

void RecordValues::RefuseUnfit() const {
    for (const PlannedFormula& formula : mvarFormulas.Planned())
        if (mvarFields.contains(formula.macro))
            throw HostError(L"macro " + formula.macro + L" is computed, and a field has its name");
    for (const BoundBand& band : mvarBound) {
        const PlannedFormula* formula = FormulaOf(band);
        if (formula != nullptr && formula->isLate && band.swap != Swap::None)
            throw HostError(L"band " + band.name + L" shows a check digit (" + formula->text +
                            L"), which no relation can convert");
    }
}

void RecordValues::Sort() {
    std::vector<std::wstring> items;
    for (const BoundBand& band : mvarBound) {
        items.push_back(band.item);
        const PlannedFormula* formula = FormulaOf(band);
        if (formula != nullptr && formula->isLate) mvarLate.push_back(band);
        if (band.swap != Swap::None || !FormatsDates(band.format)) continue;
        mvarDateItems.insert(band.item);
        if (!FormatsTimesAlone(band.format)) mvarDayItems.insert(band.item);
    }
    mvarGiven = mvarFormulas.Given(items);
}

void RecordValues::RefuseUnsound() const {
    if (!mvarUnsound.empty()) throw HostError(mvarUnsound);
}

const PlannedFormula* RecordValues::FormulaOf(const BoundBand& band) const {
    return band.isMacro ? mvarFormulas.Find(band.item) : nullptr;
}

std::wstring RecordValues::Named(const std::wstring& item) const {
    return (mvarFields.contains(item) ? L"field " : L"macro ") + item;
}

void RecordValues::Give(const FieldValues& record) {
    RefuseUnsound();
    mvarValues = Brought(record);
    RefuseMissing(mvarValues);
    GiveBrought(mvarValues);
    Compute(mvarValues);
}

RecordValues::Values RecordValues::Brought(const FieldValues& record) const {
    Values values;
    for (const auto& [name, value] : record) {
        if (const PlannedFormula* formula = mvarFormulas.Find(name)) RefuseComputed(*formula, name, value);
        values[name] = value;
    }
    return values;
}

void RecordValues::RefuseMissing(const Values& values) const {
    for (const BoundBand& band : mvarBound)
        if (band.item.empty()) throw RecordError(L"band " + band.name + L" is bound to no field or macro");
    for (const std::wstring& item : mvarGiven) {
        const auto value = values.find(item);
        if (value == values.end() || TextOf(value->second).empty()) throw RecordError(Named(item) + L": no value");
    }
}

std::wstring RecordValues::ForComponent(const std::wstring& item, const std::wstring& value) const {
    if (!mvarDateItems.contains(item)) return value;
    auto date = mvarDates.Read(value);
    if (!date && !mvarDayItems.contains(item)) date = ReadTime(value);
    if (!date)
        throw RecordError(Named(item) + L": '" + value + L"' is no date, " + mvarDates.Expected() + L" expected");
    return IsoText(*date);
}

void RecordValues::GiveBrought(const Values& values) {
    for (const auto& [name, value] : values)
        mvarRule.SetValue(name, ForComponent(name, TextOf(value)));
}

void RecordValues::SetMacro(const std::wstring& name, const std::wstring& value) const {
    mvarMacros.at(name).Put(L"Value", hosts::Variant(value));
}

void RecordValues::Compute(Values& values) const {
    const std::wstring none; // no code yet, and nothing here asks for one
    const Surroundings surroundings = From(values, none);
    for (const PlannedFormula& formula : mvarFormulas.Planned()) {
        if (formula.isLate) continue;
        values[formula.macro] = Evaluated(formula, surroundings);
        SetMacro(formula.macro, TextOf(values[formula.macro]));
    }
    for (const BoundBand& band : mvarLate)
        SetMacro(band.item, std::wstring(band.length, L'0'));
}

Surroundings RecordValues::From(const Values& values, const std::wstring& code) const {
    Surroundings surroundings;
    surroundings.valueOf = [this, &values](const std::wstring& name) {
        const auto value = values.find(name);
        if (value == values.end()) throw RecordError(Named(name) + L": no value");
        return value->second;
    };
    surroundings.partOf = [this, &code](const std::wstring& name) {
        const auto band = std::ranges::find(mvarBands, name, &hosts::Band::name);
        return code.substr(band->position, band->length);
    };
    surroundings.clock = ReadClock;
    surroundings.calendar = mvarCalendar;
    surroundings.dates = mvarDates;
    return surroundings;
}

std::wstring RecordValues::Completed(std::wstring code) const {
    Values values = mvarValues;
    const Surroundings surroundings = From(values, code);
    for (const PlannedFormula& formula : mvarFormulas.Planned()) {
        if (!formula.isLate) continue;
        values[formula.macro] = Evaluated(formula, surroundings);
        for (const BoundBand& band : mvarLate) {
            if (band.item != formula.macro) continue;
            const std::wstring text = Formatted(TextOf(values[formula.macro]), band.format);
            if (text.size() != band.length) throw RecordError(LengthRefusal(band.name, text, band.length));
            code.replace(band.position, band.length, text);
        }
    }
    return code;
}

std::vector<CheckedPart> RecordValues::Checked(const std::wstring& code) const {
    Values values;
    std::vector<CheckedPart> checked;
    const Surroundings surroundings = From(values, code);
    for (const PlannedFormula& formula : mvarFormulas.Planned()) {
        // What a record must bring besides stands in no code.
        if (!formula.isLate || !mvarFormulas.Given({formula.macro}).empty()) continue;
        values[formula.macro] = Evaluated(formula, surroundings);
        for (const BoundBand& band : mvarLate)
            if (band.item == formula.macro)
                checked.push_back({band.name, formula.text, code.substr(band.position, band.length),
                                   Formatted(TextOf(values[formula.macro]), band.format)});
    }
    return checked;
}

std::wstring RecordValues::Masked(std::wstring series) const {
    for (const BoundBand& band : mvarLate)
        if (series.size() >= band.position + band.length) series.replace(band.position, band.length, band.length, L'?');
    return series;
}

void RecordValues::Hide(std::vector<bool>& shown) const {
    for (const BoundBand& band : mvarLate)
        std::fill_n(shown.begin() + static_cast<std::ptrdiff_t>(band.position), band.length, false);
}

} // namespace ledger
