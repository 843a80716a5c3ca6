// Days and times as records write them. Nothing here depends on the locale, the calendar or the clock of a machine.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ledger {

// A day of the Gregorian calendar and perhaps a time of it, in no time zone.
struct DateTime {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool isMoment = false; // the time counts even at midnight

    friend auto operator<=>(const DateTime&,
                            const DateTime&) = default; // NOLINT(modernize-use-nullptr): there is no null
};

// Days since 1970-01-01; the time of day does not count.
[[nodiscard]] long DayNumber(const DateTime& date) noexcept;
// The day of that number, at midnight.
[[nodiscard]] DateTime DateOfDay(long number) noexcept;

// "2026-04-12", or "2026-04-12 07:08:09" for a moment and whenever it is not midnight: what every locale reads alike.
[[nodiscard]] std::wstring IsoText(const DateTime& date);

// How the dates of a record are written: ISO 8601, or a pattern that the user gave.
//
//   ISO 8601  yyyy-mm-dd or yyyymmdd, and then perhaps a "T" or a blank and hh:nn, hh:nn:ss, hhnn or hhnnss, a fraction
//             of a second, and "Z" or a distance such as +02:00, which is left out: a date counts as it is written
//   pattern   yyyy or yy (2000 to 2099), mm, dd, hh, nn (minutes) and ss are two digits (yyyy four), m, d, h, n and s
//   one
//             or two; every other character stands for itself
//
// Years are 1000 to 9999. Blanks around a date do not count.
class DateFormat {
  public:
    // ISO 8601.
    DateFormat() = default;
    // Fails with HostError on a pattern without exactly one year, month and day.
    explicit DateFormat(std::wstring_view pattern);

    // Nothing for a text that is no date of this format.
    [[nodiscard]] std::optional<DateTime> Read(std::wstring_view text) const;
    // What to write instead of a text that is none: "ISO 8601, such as 2026-04-12", or the pattern.
    [[nodiscard]] std::wstring Expected() const;

  private:
    struct Part {
        wchar_t letter = 0; // 0 for a character that stands for itself
        std::size_t length = 0;
        wchar_t itself = 0;
    };

    std::wstring mvarPattern; // empty: ISO 8601
    std::vector<Part> mvarParts;
};

// Whether the component takes values for dates under this format of a band: its first sign that is neither quoted nor
// escaped and means something is one of a date.
[[nodiscard]] bool FormatsDates(std::wstring_view format);

// Whether nothing of the day can be seen under such a format: a time alone is enough for it.
[[nodiscard]] bool FormatsTimesAlone(std::wstring_view format);

// A time without a day, hh:nn or hh:nn:ss, as of 1970-01-01; nothing for another text.
[[nodiscard]] std::optional<DateTime> ReadTime(std::wstring_view text);

} // namespace ledger
