// Which part of a numbering a record gets its code by, and why there is none.
#pragma once

#include "ledger/core/Numberings.h"
#include "ledger/core/formulas/Dates.h"

namespace ledger {

// The day of a date of that format as yyyy-mm-dd; empty for any other text.
[[nodiscard]] std::wstring DayOf(const std::wstring& date, const DateFormat& dates = {});

// "2026-01-01 to 2026-12-31", "from 2026-01-01", "until 2026-12-31" or "any day".
[[nodiscard]] std::wstring DaysText(const NumberingPart& part);

// A record without a value of a part's date does not fit that part; one with a value that is no date fits none behind
// it either: nobody can say which days it belongs to, and a part for any time would number it wrongly.
class NumberingFit {
  public:
    // The numbering outlives this.
    NumberingFit(const Numbering& numbering, DateFormat dates)
        : mvarNumbering(numbering), mvarDates(std::move(dates)) {}

    // The place of the first part from `from` on that fits the record, from 0; the number of parts when none does.
    [[nodiscard]] std::size_t First(const FieldValues& record, std::size_t from) const;
    // Why no part fits the record: which field, which value, what was expected. It tells of the parts that the record
    // comes nearest to.
    [[nodiscard]] std::wstring Refusal(const FieldValues& record) const;

  private:
    // What keeps a record from a part.
    struct Obstacle {
        std::size_t met = 0; // conditions before it
        std::wstring field;  // empty: nothing does
        bool isDate = false;
        bool isUnreadable = false; // a value that is no date
        std::wstring expected;
    };

    [[nodiscard]] Obstacle ObstacleOf(const NumberingPart& part, const FieldValues& record) const;
    [[nodiscard]] std::vector<Obstacle> Nearest(const FieldValues& record) const;
    [[nodiscard]] std::wstring TextOf(const std::vector<Obstacle>& obstacles, const Obstacle& first,
                                      const FieldValues& record) const;
    [[nodiscard]] std::wstring DateText(const std::wstring& value, const std::wstring& expected) const;

    const Numbering& mvarNumbering;
    DateFormat mvarDates;
};

} // namespace ledger
