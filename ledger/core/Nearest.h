// What somebody who mistyped a name most likely meant.
#pragma once

#include <string>
#include <vector>

namespace ledger {

// How many characters must be put in, taken out, replaced or swapped with the next one to make one text of the other;
// letter case does not count.
[[nodiscard]] std::size_t EditDistance(const std::wstring& one, const std::wstring& other);

// The candidate that is nearest to the word, the first of several; empty where none is near: more than half of the word
// would be wrong.
[[nodiscard]] std::wstring NearestTo(const std::wstring& word, const std::vector<std::wstring>& candidates);

} // namespace ledger
