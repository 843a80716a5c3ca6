#include "dialogs/OpenBranches.h"

#include <algorithm>
#include <utility>

namespace kestrel::dialogs {

void OpenBranches::Keep(const Ref<cNodes>& tree, std::vector<String> keys) {
    static_cast<void>(Take(tree));
    if (!tree || keys.empty()) return;
    if (mvarEntries.size() == MostTrees) mvarEntries.erase(mvarEntries.begin());
    mvarEntries.push_back({WeakRef<cNodes>(tree.Get()), std::move(keys)});
}

std::vector<String> OpenBranches::Take(const Ref<cNodes>& tree) {
    const auto found = std::find_if(mvarEntries.begin(), mvarEntries.end(),
                                    [&tree](const Entry& entry) { return tree && entry.tree.Lock() == tree; });
    if (found == mvarEntries.end()) return {};
    auto keys = std::move(found->keys);
    mvarEntries.erase(found);
    return keys;
}

} // namespace kestrel::dialogs
