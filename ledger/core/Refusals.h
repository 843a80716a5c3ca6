// Why the component refused to make a code or to take one apart: it names what was wrong, and these name the band, the
// value and what was expected.
#pragma once

#include <string>
#include <vector>

#include "ledger/core/BoundBands.h"

namespace ledger {

// "band Year: 3 characters, 4 expected: '204'"
[[nodiscard]] std::wstring LengthRefusal(const std::wstring& band, const std::wstring& text, std::size_t expected);

// A band that shows a field or macro whose value has no code, or is not as long as the band; empty when there is none.
[[nodiscard]] std::wstring WhyValuesAreRefused(const hosts::Rule& rule, const std::vector<BoundBand>& bound);

// The code's length, a fixed band or a part without a value that keeps the rule from taking the code apart; empty when
// there is none.
[[nodiscard]] std::wstring WhyNotTakenApart(const hosts::Rule& rule, const std::vector<hosts::Band>& bands,
                                            const std::vector<BoundBand>& bound, const std::wstring& code);

} // namespace ledger
