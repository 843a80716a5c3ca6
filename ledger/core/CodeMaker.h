// Makes codes by a stored rule, and tells for each which number it holds in which series.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/common/Rule.h"
#include "ledger/core/Codes.h"
#include "ledger/core/FieldValues.h"
#include "ledger/core/RecordValues.h"
#include "ledger/core/Rules.h"

namespace ledger {

// A number band. One that tracks others numbers its codes in series, one that tracks nothing all codes of the rule.
struct NumberBand {
    std::wstring name;
    std::size_t position = 0; // of its part of a code, from 0
    std::size_t length = 0;
    std::int64_t start = 0;   // the number that a new series begins with
    std::int64_t highest = 0; // the last one that the band has room for, or that InitEnd allows
    std::vector<bool> shown;  // by position of a code: whether the character stands in the series, or "?" does
    bool tracks = true;
    std::int64_t step = 1; // from one number of a series to the next
};

// The number that a series goes on with; nothing when it begins.
using NextNumberSource = std::function<std::optional<std::int64_t>(const NumberBand& band, const std::wstring& series)>;

// A series has no number left.
class SeriesFull : public hosts::RecordError {
  public:
    SeriesFull(const NumberBand& band, const std::wstring& series, std::int64_t next);

    // The number that would have come.
    [[nodiscard]] std::int64_t Next() const noexcept { return mvarNext; }

  private:
    std::int64_t mvarNext;
};

struct MadeCode {
    std::wstring code;
    std::vector<NumberHeld> numbers;
};

class CodeMaker {
  public:
    // Fails with HostError when the definition is no rule or its codes or band names are longer than the ledger keeps.
    explicit CodeMaker(const std::wstring& definition, RuleSettings settings = {});

    // How the dates of records are written; without it they are ISO 8601.
    void SetDateFormat(const DateFormat& format) { mvarValues.SetDateFormat(format); }
    // Fails with HostError when the rule's formulas make no sense, so that it can issue nothing.
    void RefuseUnsound() const { mvarValues.RefuseUnsound(); }

    // The next code with these values of fields and macros. Fails with RecordError, which names the band or the field,
    // the value and what was expected, when a value is missing or wrong, with SeriesFull, and with what
    // the source throws.
    [[nodiscard]] MadeCode Make(const FieldValues& values, const NextNumberSource& source);

    // Gives the bands, fields and macros the values that the code was made of; fails with RecordError on a code that
    // the rule cannot have made but for its check digits.
    void TakeApart(const std::wstring& code);
    // The check digits of the code that was taken apart.
    [[nodiscard]] std::vector<CheckedPart> Checked(const std::wstring& code) const { return mvarValues.Checked(code); }

    // The numbers of a code that the rule can take apart and whose check digits are right; fails with RecordError on
    // any other code. The values are those of its record: where the rule counts separately by one that the code does
    // not show, it stands in them.
    [[nodiscard]] MadeCode Recognise(const std::wstring& code, const FieldValues& values);

    // Whether the name is a field or macro of the rule, or what it counts separately by.
    [[nodiscard]] bool Knows(const std::wstring& name) const;
    [[nodiscard]] const RuleSettings& Settings() const noexcept { return mvarSettings; }
    [[nodiscard]] hosts::Rule& Rule() noexcept { return mvarRule; }
    [[nodiscard]] const hosts::Rule& Rule() const noexcept { return mvarRule; }
    [[nodiscard]] const std::vector<hosts::Band>& Bands() const noexcept { return mvarBands; }
    [[nodiscard]] const std::vector<NumberBand>& NumberBands() const noexcept { return mvarNumberBands; }
    [[nodiscard]] std::size_t CodeLength() const noexcept { return mvarCodeLength; }
    // What a record may bring a value of: fields, macros without a formula, and what the rule counts separately by.
    [[nodiscard]] std::vector<std::wstring> Taken() const;
    // The fields and macros that a record must bring a value of.
    [[nodiscard]] const std::vector<std::wstring>& Needed() const noexcept { return mvarValues.Needed(); }
    // The values that the fields and macros have now.
    [[nodiscard]] FieldValues Values() const;
    // The fields and macros whose values do not give their parts of the code that was taken apart when they are
    // formatted again: they cannot be read back from it, as the day of a year cannot.
    [[nodiscard]] std::vector<std::wstring> Unreadable(const std::wstring& code) const;

  private:
    [[nodiscard]] std::wstring NextCode();
    [[nodiscard]] std::wstring WhyRefused(const std::wstring& message) const;
    void ReadNumberBands();
    void SetUntracked();
    [[nodiscard]] std::wstring Answer(const std::wstring& pattern);
    // The number that the band gets; nothing leaves it to the component to begin the series.
    [[nodiscard]] std::optional<std::int64_t> Ask(std::size_t band, const std::wstring& pattern);
    [[nodiscard]] std::wstring Separation(const FieldValues& values) const;
    [[nodiscard]] MadeCode Numbered(std::wstring code, const std::vector<std::wstring>& series) const;

    RuleSettings mvarSettings;
    hosts::Rule mvarRule;
    std::vector<hosts::Band> mvarBands;
    RecordValues mvarValues;
    std::vector<NumberBand> mvarNumberBands;
    std::size_t mvarCodeLength = 0;
    std::vector<hosts::Dispatch> mvarUntracked;   // the component's bands that track nothing, in their order
    const NextNumberSource* mvarSource = nullptr; // of the code that is being made
    std::wstring mvarSeparation;                  // what its series have behind their patterns
    std::vector<std::wstring> mvarSeries;         // its series, by the places of their bands
    std::size_t mvarAsked = 0;                    // behind the place of the band that the component asked for last
    std::wstring mvarLastCode;                    // what was answered last
};

// The pattern of a code's series: the code with "?" for every character that neither a fixed nor a tracked band gave.
[[nodiscard]] std::wstring SeriesOf(const NumberBand& band, std::wstring code);

// The code of a series whose number is `number`; every "?" outside the band stays, and what stands behind the pattern
// goes. Empty below 0.
[[nodiscard]] std::wstring CodeWithNumber(const NumberBand& band, std::wstring series, std::int64_t number);

} // namespace ledger
