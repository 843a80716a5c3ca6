// A code rule in one line, taken apart: its bands from left to right.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "hosts/common/HostError.h"

namespace ledger {

enum class PartKind { Text, Number, Letter, Field, Macro, Formula };

// A name and where the pattern says it.
struct PatternName {
    std::wstring name;
    std::size_t position = 0; // from 0
};

struct PatternPart {
    PartKind kind = PartKind::Text;
    std::size_t position = 0; // where the pattern says it, from 0
    std::wstring name;        // of the band; empty: CompletePattern finds one
    std::wstring text;        // the fixed text; the name of the field or macro; the letter to begin with
    std::wstring formula;     // of a formula
    std::wstring format;      // of fields, macros and formulas
    std::size_t length = 0;   // 0: that of the codes in the file
    std::wstring first;       // number or letter; of a number without zeros in front
    std::wstring last;        // likewise; empty: a number counts on as long as it has room
    std::wstring file;        // with the codes; empty: the value itself is used
    std::size_t layer = 0;    // of the file, from 1; 0: the file is this band's own
    std::optional<std::vector<PatternName>> tracked; // bands; nothing: CompletePattern finds them
};

using Pattern = std::vector<PatternPart>;

// What is wrong with a pattern, and where.
class PatternError final : public hosts::HostError {
  public:
    PatternError(std::size_t position, std::wstring message) : HostError(std::move(message)), mvarPosition(position) {}
    [[nodiscard]] std::size_t Position() const noexcept { return mvarPosition; }

  private:
    std::size_t mvarPosition; // from 0, at most the length of the pattern
};

} // namespace ledger
