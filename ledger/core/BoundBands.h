// The bands of a rule that show the value of a field or a macro.
#pragma once

#include <string>
#include <vector>

#include "hosts/common/Rule.h"

namespace ledger {

enum class Swap : long { None = 0, Simple = 1, Layers = 2 };

struct BoundBand {
    std::wstring name;
    std::wstring item; // the field or macro; empty for a band that is bound to none
    bool isMacro = false;
    std::wstring format;
    Swap swap = Swap::None;
    std::size_t position = 0; // of its part of a code, from 0
    std::size_t length = 0;
};

[[nodiscard]] std::vector<BoundBand> ReadBoundBands(const hosts::Rule& rule, const std::vector<hosts::Band>& bands);

// The value as the component formats it.
[[nodiscard]] std::wstring Formatted(const std::wstring& value, const std::wstring& format);

} // namespace ledger
