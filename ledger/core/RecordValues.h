// What the component needs to make a code, from what a record brings: every value that a band shows, dates as every
// locale reads them, and what macros are computed from.
//
// Check digits come in two steps: the code is made with zeros in their places, and then they are put in.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "ledger/core/BoundBands.h"
#include "ledger/core/FieldValues.h"
#include "ledger/core/formulas/FormulaSet.h"

namespace ledger {

// A check digit of a code.
struct CheckedPart {
    std::wstring band;
    std::wstring formula;
    std::wstring stands;   // in the code
    std::wstring expected; // by the formula

    [[nodiscard]] bool IsRight() const { return stands == expected; }
};

// "band Check: '3', '7' expected (=luhn(Number))"
[[nodiscard]] std::wstring RefusalOf(const CheckedPart& part);

class RecordValues {
  public:
    // The rule outlives this. Formulas that make no sense are told of later, so that codes can still be taken apart.
    RecordValues(hosts::Rule& rule, const std::vector<hosts::Band>& bands);
    RecordValues(const RecordValues&) = delete; // bound to its rule
    RecordValues& operator=(const RecordValues&) = delete;

    void SetDateFormat(const DateFormat& format) { mvarDates = format; }
    // Fails with HostError and the reason when the rule's formulas make no sense.
    void RefuseUnsound() const;

    // Gives the rule's fields and macros their values. Fails with RecordError on a value that is missing or wrong, and
    // as RefuseUnsound does.
    void Give(const FieldValues& record);
    // The code with its check digits; fails with RecordError when one cannot be computed.
    [[nodiscard]] std::wstring Completed(std::wstring code) const;
    // The check digits of a code that the rule has taken apart, in the order of the bands.
    [[nodiscard]] std::vector<CheckedPart> Checked(const std::wstring& code) const;

    // The series with "?" in the places of check digits, and the flags false there.
    [[nodiscard]] std::wstring Masked(std::wstring series) const;
    void Hide(std::vector<bool>& shown) const;

    [[nodiscard]] const std::vector<BoundBand>& Bound() const noexcept { return mvarBound; }
    // Whether it is a macro with a formula, of which no record brings a value.
    [[nodiscard]] bool Computes(const std::wstring& name) const { return mvarMacros.contains(name); }
    // The fields and macros that a record must bring a value of.
    [[nodiscard]] const std::vector<std::wstring>& Needed() const noexcept { return mvarGiven; }

  private:
    using Values = std::map<std::wstring, FormulaValue>;

    void ReadFormulas();
    void RefuseUnfit() const;
    void Sort();
    [[nodiscard]] Values Brought(const FieldValues& record) const;
    void RefuseMissing(const Values& values) const;
    void GiveBrought(const Values& values);
    void Compute(Values& values) const;
    [[nodiscard]] std::wstring ForComponent(const std::wstring& item, const std::wstring& value) const;
    [[nodiscard]] Surroundings From(const Values& values, const std::wstring& code) const;
    [[nodiscard]] const PlannedFormula* FormulaOf(const BoundBand& band) const;
    [[nodiscard]] std::wstring Named(const std::wstring& item) const;
    void SetMacro(const std::wstring& name, const std::wstring& value) const;

    hosts::Rule& mvarRule;
    std::vector<hosts::Band> mvarBands;
    std::vector<BoundBand> mvarBound;
    std::set<std::wstring> mvarFields;
    std::map<std::wstring, hosts::Dispatch> mvarMacros; // those with a formula
    FormulaSet mvarFormulas;
    std::wstring mvarUnsound;             // why the formulas make no sense; empty: they do
    std::vector<std::wstring> mvarGiven;  // what a record must bring
    std::set<std::wstring> mvarDateItems; // what a band shows as a date
    std::set<std::wstring> mvarDayItems;  // of them, those of which one shows the day
    std::vector<BoundBand> mvarLate;      // those with a check digit
    Calendar mvarCalendar;
    DateFormat mvarDates;
    Values mvarValues; // of the record at work
};

} // namespace ledger
