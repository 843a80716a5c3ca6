// Formats as the platform's parser has read them. Reading one costs more than applying it, and a rule applies the same
// few again and again.
//
// It holds a fixed number of them, and what was put in first leaves first. It belongs to the WindowsText that formats
// with it and is used from any thread.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

#include "common/String.h"

namespace kestrel {

class PreparedFormats {
  public:
    // What VarTokenizeFormatString makes of a format: no format that it prepares takes more bytes.
    using Tokens = std::array<BYTE, 256>;

    // Whether the platform prepares the format for this locale; then `tokens` holds it. It does not prepare every
    // format that it applies.
    bool Prepare(const String& format, LCID locale, Tokens& tokens);

    static constexpr std::size_t Most = 16;
    // How formats count weeks, prepared or not.
    static constexpr int WeekBeginsOnSunday = 1;
    static constexpr int YearBeginsOnFirstOfJanuary = 1;

  private:
    struct Entry {
        String format;
        LCID locale = 0;
        Tokens tokens{};
    };

    [[nodiscard]] const Entry* Find(const String& format, LCID locale) const noexcept;
    void Keep(const String& format, LCID locale, const Tokens& tokens);

    SRWLOCK mvarLock = SRWLOCK_INIT;
    std::array<Entry, Most> mvarEntries{};
    std::size_t mvarNext = 0;
};

} // namespace kestrel
