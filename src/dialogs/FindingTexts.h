// The findings of a rule as the designer tells them: those about each band in the tip of its box, how many there are in
// the status line, and all of them in the tip of that line: first those about the whole rule, which stand nowhere else.
//
// A tip is read at a glance: what would make it too long is cut off, with "…" at the end.
#pragma once

#include <unordered_map>

#include "engine/Findings.h"

namespace kestrel::dialogs {

class FindingTexts {
  public:
    FindingTexts() = default;
    explicit FindingTexts(const std::vector<Finding>& findings);

    // One sentence on each line; empty when nothing was found about the band.
    [[nodiscard]] String Of(const Band& band) const;
    [[nodiscard]] const String& All() const noexcept { return mvarAll; }
    // Empty when there are none.
    [[nodiscard]] String Count() const;

  private:
    std::size_t mvarCount = 0;
    String mvarAll;
    std::unordered_map<const Band*, String> mvarOfBands; // compared only, so that a band may end
};

} // namespace kestrel::dialogs
