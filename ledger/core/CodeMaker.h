// Makes codes by a stored rule, and tells for each which number it holds in which series.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/common/Rule.h"
#include "ledger/core/Codes.h"
#include "ledger/core/FieldValues.h"
#include "ledger/core/RecordValues.h"
#include "ledger/core/Rules.h"

namespace ledger {

// A number band that tracks others, so that its codes are numbered in series.
struct NumberBand {
    std::wstring name;
    std::size_t position = 0; // of its part of a code, from 0
    std::size_t length = 0;
    std::int64_t start = 0;   // the number that a new series begins with
    std::int64_t highest = 0; // the last one that the band has room for
    std::vector<bool> shown;  // by position of a code: whether the character stands in the series, or "?" does
};

// The last code of the series before the one to be made; empty when the series begins.
using LastCodeSource = std::function<std::wstring(const NumberBand& band, const std::wstring& series)>;

struct MadeCode {
    std::wstring code;
    std::vector<NumberHeld> numbers;
};

class CodeMaker {
  public:
    // Fails with HostError when the definition is no rule, or its codes or band names are longer than the ledger keeps.
    explicit CodeMaker(const std::wstring& definition);

    // How the dates of records are written; without it they are ISO 8601.
    void SetDateFormat(const DateFormat& format) { mvarValues.SetDateFormat(format); }
    // Fails with HostError when the rule's formulas make no sense, so that it can issue nothing.
    void RefuseUnsound() const { mvarValues.RefuseUnsound(); }

    // The next code with these values of fields and macros. Fails with RecordError, which names the band or the field,
    // the value and what was expected, when a value is missing or wrong, and with what the source throws.
    [[nodiscard]] MadeCode Make(const FieldValues& values, const LastCodeSource& source);

    // Gives the bands, fields and macros the values that the code was made of; fails with RecordError on a code that
    // the rule cannot have made but for its check digits.
    void TakeApart(const std::wstring& code);
    // The check digits of the code that was taken apart.
    [[nodiscard]] std::vector<CheckedPart> Checked(const std::wstring& code) const { return mvarValues.Checked(code); }

    // The numbers of a code that the rule can take apart and whose check digits are right; fails with RecordError on
    // any other code.
    [[nodiscard]] MadeCode Recognise(const std::wstring& code);

    [[nodiscard]] hosts::Rule& Rule() noexcept { return mvarRule; }
    [[nodiscard]] const hosts::Rule& Rule() const noexcept { return mvarRule; }
    [[nodiscard]] const std::vector<hosts::Band>& Bands() const noexcept { return mvarBands; }
    [[nodiscard]] const std::vector<NumberBand>& NumberBands() const noexcept { return mvarNumberBands; }
    [[nodiscard]] std::size_t CodeLength() const noexcept { return mvarCodeLength; }
    // The fields and macros that a record must bring a value of.
    [[nodiscard]] const std::vector<std::wstring>& Needed() const noexcept { return mvarValues.Needed(); }
    // The values that the fields and macros have now.
    [[nodiscard]] FieldValues Values() const;

  private:
    [[nodiscard]] std::wstring NextCode();
    [[nodiscard]] std::wstring WhyRefused(const std::wstring& message) const;
    void ReadNumberBands();
    [[nodiscard]] std::wstring Answer(const std::wstring& series);
    [[nodiscard]] MadeCode Numbered(std::wstring code, const std::vector<std::wstring>& series) const;

    hosts::Rule mvarRule;
    std::vector<hosts::Band> mvarBands;
    RecordValues mvarValues;
    std::vector<NumberBand> mvarNumberBands;
    std::size_t mvarCodeLength = 0;
    const LastCodeSource* mvarSource = nullptr; // of the code that is being made
    std::vector<std::wstring> mvarAsked;        // the series asked for so far, band by band
    std::wstring mvarLastCode;                  // what was answered last
};

// The series of a code: the code with "?" for every character that neither a fixed nor a tracked band gave.
[[nodiscard]] std::wstring SeriesOf(const NumberBand& band, std::wstring code);

// The code of a series whose number is `number`; every "?" outside the band stays. Empty below 0.
[[nodiscard]] std::wstring CodeWithNumber(const NumberBand& band, std::wstring series, std::int64_t number);

} // namespace ledger
