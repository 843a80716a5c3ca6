// The port for all that depends on the platform's automation runtime or the user's locale: formatting, numbers and
// dates in texts, comparison without regard to case.
#pragma once

#include <optional>

#include "common/String.h"

namespace kestrel {

// Days since 30 December 1899; the fraction is the time of day.
using Date = double;

class TextPort {
  public:
    virtual ~TextPort() = default;

    // The value formatted by the platform's formatting function (first day of the week Sunday, first week the one of 1
    // January). A format that cannot be applied leaves the value unchanged.
    [[nodiscard]] virtual String Format(const String& value, const String& format) const = 0;

    // What the text means as a number in the user's locale; nothing when it is not numeric.
    [[nodiscard]] virtual std::optional<double> Number(const String& text) const = 0;

    // What the text means as a date; nothing when it is none.
    [[nodiscard]] virtual std::optional<Date> ParseDate(const String& text) const = 0;

    // Whether the user takes both texts for the same: as the user's locale compares, without regard to case, width or
    // kind of kana. Only the conversion of relations asks, and the check of what it would find; whatever else compares
    // without regard to case folds it.
    [[nodiscard]] virtual bool SameText(StringView left, StringView right) const = 0;

    // What SameText compares of a text: two have the same key exactly when it takes them for the same. Not for people.
    [[nodiscard]] virtual String SortKey(const String& text) const = 0;

    // The text in upper or lower case, character by character and alike in every locale.
    [[nodiscard]] virtual String Upper(const String& text) const = 0;
    [[nodiscard]] virtual String Lower(const String& text) const = 0;
};

} // namespace kestrel
