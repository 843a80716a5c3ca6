#include "ledger/core/Nearest.h"

#include <algorithm>
#include <array>
#include <cwctype>

namespace ledger {

namespace {

// Longer texts are names of nothing, and the table grows with both of them.
constexpr std::size_t LongestWord = 200;

std::wstring Folded(std::wstring text) {
    text.resize(std::min(text.size(), LongestWord));
    std::ranges::transform(text, text.begin(),
                           [](wchar_t letter) { return static_cast<wchar_t>(std::towlower(letter)); });
    return text;
}

} // namespace

std::size_t EditDistance(const std::wstring& one, const std::wstring& other) {
    const std::wstring down = Folded(one);
    const std::wstring across = Folded(other);
    std::array<std::vector<std::size_t>, 3> rows; // of the table: this one, the one before, the one before that
    for (std::vector<std::size_t>& row : rows)
        row.assign(across.size() + 1, 0);
    for (std::size_t x = 0; x <= across.size(); ++x)
        rows[0][x] = x;
    for (std::size_t y = 1; y <= down.size(); ++y) {
        std::ranges::rotate(rows, rows.begin() + 2);
        rows[0][0] = y;
        for (std::size_t x = 1; x <= across.size(); ++x) {
            const std::size_t replaced = rows[1][x - 1] + (down[y - 1] == across[x - 1] ? 0 : 1);
            rows[0][x] = std::min({replaced, rows[1][x] + 1, rows[0][x - 1] + 1});
            const bool swapped = x > 1 && y > 1 && down[y - 1] == across[x - 2] && down[y - 2] == across[x - 1];
            if (swapped) rows[0][x] = std::min(rows[0][x], rows[2][x - 2] + 1);
        }
    }
    return rows[0][across.size()];
}

std::wstring NearestTo(const std::wstring& word, const std::vector<std::wstring>& candidates) {
    std::wstring nearest;
    std::size_t least = word.size() / 2 + 1;
    for (const std::wstring& candidate : candidates) {
        const std::size_t distance = EditDistance(word, candidate);
        if (distance >= least) continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}

} // namespace ledger
