// The text of a pattern as it is read from the beginning to the end, and the words that it is made of.
#pragma once

#include <string>
#include <string_view>

#include "ledger/core/pattern/Pattern.h"

namespace ledger {

inline constexpr std::wstring_view PatternAs = L" as ";

[[nodiscard]] bool IsDigit(wchar_t character) noexcept;
[[nodiscard]] bool IsCapital(wchar_t character) noexcept;
[[nodiscard]] bool IsNameOfFunction(wchar_t character) noexcept;
// False for an empty text.
[[nodiscard]] bool IsAllDigits(std::wstring_view text) noexcept;

class PatternCursor {
  public:
    // The text outlives the cursor.
    explicit PatternCursor(std::wstring_view text) noexcept : mvarText(text) {}

    // Fails with PatternError.
    [[noreturn]] static void Fail(std::size_t position, const std::wstring& message);
    // Fails on a text, read from the position on, with a control character or half a character; at its place.
    void RefuseUnfit(std::wstring_view text, std::size_t position) const;

    [[nodiscard]] std::wstring_view Text() const noexcept { return mvarText; }
    [[nodiscard]] std::size_t At() const noexcept { return mvarAt; }
    [[nodiscard]] bool AtEnd() const noexcept { return mvarAt >= mvarText.size(); }
    // 0 behind the end.
    [[nodiscard]] wchar_t Peek(std::size_t ahead = 0) const noexcept;
    // Whether the character comes next, behind blanks.
    [[nodiscard]] bool IsNext(wchar_t character) const noexcept;
    [[nodiscard]] bool AtAs() const noexcept;
    // A function's name and a bracket, behind "=" and blanks.
    [[nodiscard]] bool AtFormula() const noexcept;

    void Advance(std::size_t count = 1) noexcept { mvarAt += count; }
    void GoTo(std::size_t position) noexcept { mvarAt = position; }
    void SkipBlanks() noexcept;
    // The character and the blanks in front of it, if it is next. Blanks in front of anything else stay: they may
    // belong to " as ".
    bool Take(wchar_t character) noexcept;

    [[nodiscard]] std::wstring ReadDigits();
    // Up to one of the characters, " as " or the end, without the blanks around it.
    [[nodiscard]] std::wstring ReadWord(std::wstring_view ends);
    // What stands in the quotes that begin here; fails where they are never closed.
    [[nodiscard]] std::wstring ReadQuotes();
    // A function's name up to its last bracket; fails where that is missing, and on what a formula does not hold.
    [[nodiscard]] std::wstring ReadBrackets();

  private:
    std::wstring_view mvarText;
    std::size_t mvarAt = 0;
};

} // namespace ledger
