// The name that somebody meant who wrote another one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hosts {

// How many letters must be added, left out, changed or swapped with their neighbour to make one text of the other;
// capital and small ASCII letters are the same.
[[nodiscard]] std::size_t EditDistance(std::wstring_view left, std::wstring_view right);

// The candidate nearest to the text, the first of several; nothing when none is near: at most a third of the text's
// letters away, and always one.
[[nodiscard]] std::optional<std::wstring> NearestOf(std::wstring_view text,
                                                    const std::vector<std::wstring>& candidates);

// "; nearest: 'North'", or nothing: what stands behind a message that tells of an unknown name.
[[nodiscard]] std::wstring NearestHint(std::wstring_view text, const std::vector<std::wstring>& candidates);

} // namespace hosts
