// Where series ended when this program last stored a number in them, so that it need not ask the server each time while
// nobody else counts there.
//
// An end is only a guess, which whoever stores the next number has to check with it. It is made after the end was found
// once where this program had left it: where others count as well, guesses would be wrong more often than right.
#pragma once

#include <map>
#include <optional>

#include "ledger/core/Codes.h"

namespace ledger {

class KnownEnds {
  public:
    // Nothing when it is better to ask.
    [[nodiscard]] std::optional<HighestNumber> Guess(const std::wstring& band, const std::wstring& series) const;
    // What the server said.
    void Found(const std::wstring& band, const std::wstring& series, const std::optional<HighestNumber>& end);
    // What this program has stored for good.
    void Left(const std::wstring& code, const NumberRow& number);
    // A guess was wrong.
    void Forget() noexcept { mvarEnds.clear(); }

  private:
    // Of more series it forgets them all and begins anew.
    static constexpr std::size_t Most = 1000;

    struct End {
        HighestNumber end;
        bool isOurs = false; // it was found where this program had left it
    };

    std::map<std::pair<std::wstring, std::wstring>, End> mvarEnds; // by band and series
};

} // namespace ledger
