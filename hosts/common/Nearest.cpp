#include "hosts/common/Nearest.h"

#include <algorithm>
#include <utility>

namespace hosts {

namespace {

wchar_t Folded(wchar_t letter) noexcept {
    return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool Same(wchar_t left, wchar_t right) noexcept { return Folded(left) == Folded(right); }

std::size_t Apart(std::size_t left, std::size_t right) noexcept { return left > right ? left - right : right - left; }

} // namespace

std::size_t EditDistance(std::wstring_view left, std::wstring_view right) {
    std::vector<std::size_t> older(right.size() + 1);
    std::vector<std::size_t> old(right.size() + 1);
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t at = 0; at <= right.size(); ++at)
        row[at] = at;
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::swap(older, old);
        std::swap(old, row);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t change = old[j - 1] + (Same(left[i - 1], right[j - 1]) ? 0 : 1);
            row[j] = std::min({old[j] + 1, row[j - 1] + 1, change});
            if (i > 1 && j > 1 && Same(left[i - 1], right[j - 2]) && Same(left[i - 2], right[j - 1]))
                row[j] = std::min(row[j], older[j - 2] + 1);
        }
    }
    return row[right.size()];
}

std::optional<std::wstring> NearestOf(std::wstring_view text, const std::vector<std::wstring>& candidates) {
    std::optional<std::wstring> nearest;
    std::size_t limit = std::max<std::size_t>(text.size() / 3, 1);
    for (const std::wstring& candidate : candidates) {
        if (candidate.empty() || Apart(candidate.size(), text.size()) > limit) continue;
        const std::size_t distance = EditDistance(text, candidate);
        if (distance > limit || distance >= candidate.size()) continue;
        nearest = candidate;
        if (distance == 0) break;
        limit = distance - 1;
    }
    return nearest;
}

std::wstring NearestHint(std::wstring_view text, const std::vector<std::wstring>& candidates) {
    const auto nearest = NearestOf(text, candidates);
    return nearest ? L"; nearest: '" + *nearest + L"'" : std::wstring();
}

} // namespace hosts
