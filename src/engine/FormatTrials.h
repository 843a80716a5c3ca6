// What formats make of values, tried out: the only way to know, for what a format means is the platform's affair.
//
// A format is tried on whole numbers of up to so many digits as the band has characters, on dates of two years, and
// on texts, and each trial is made once per format and length. Bands of more than LongestTried characters are not
// tried: they count as well formatted.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

#include "common/String.h"

namespace kestrel {

// A value and what a format made of it.
struct Formatted {
    String value;
    String text;
};

struct FormatTrial {
    bool fits = true;                  // whether any value tried gets the band's length
    std::optional<Formatted> unstable; // a result of that length from which the format makes another text
    std::optional<Formatted> unread;   // of a number: a result whose number is another one when it is read back
    std::optional<Formatted> noNumber; // of a number: a result that is no number
};

class FormatTrials {
  public:
    static constexpr std::int32_t LongestTried = 255;

    // For a band whose values may be anything.
    const FormatTrial& OfAnything(const String& format, std::int32_t length);
    // For a number band.
    const FormatTrial& OfNumbers(const String& format, std::int32_t length);

  private:
    std::unordered_map<String, FormatTrial> mvarOfAnything;
    std::unordered_map<String, FormatTrial> mvarOfNumbers;
};

// As a band formats its value: an empty format leaves it as it is.
[[nodiscard]] String FormattedWith(const String& format, const String& value);

} // namespace kestrel
