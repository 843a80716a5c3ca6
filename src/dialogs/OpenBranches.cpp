#include "dialogs/OpenBranches.h"

#include <algorithm>
#include <utility>

#include "dialogs/Guard.h"

namespace kestrel::dialogs {

namespace {

// Nothing when the tree has none of that key.
Ref<cNode> NodeOf(const cNodes& tree, const String& key) {
    Ref<cNode> node;
    Trapped([&] { node = tree.Node(key); });
    return node;
}

} // namespace

void OpenBranches::Keep(const Ref<cNodes>& tree, const std::vector<String>& keys) {
    static_cast<void>(Take(tree));
    if (!tree || keys.empty()) return;
    if (mvarEntries.size() == MostTrees) mvarEntries.erase(mvarEntries.begin());
    Entry entry{WeakRef<cNodes>(tree.Get()), {}};
    for (const auto& key : keys)
        if (const auto node = NodeOf(*tree, key)) entry.nodes.emplace_back(node.Get());
    mvarEntries.push_back(std::move(entry));
}

std::vector<String> OpenBranches::Take(const Ref<cNodes>& tree) {
    const auto found = std::find_if(mvarEntries.begin(), mvarEntries.end(),
                                    [&tree](const Entry& entry) { return tree && entry.tree.Lock() == tree; });
    if (found == mvarEntries.end()) return {};
    std::vector<String> keys;
    for (const auto& kept : found->nodes)
        if (const auto node = kept.Lock(); node && NodeOf(*tree, node->Key()) == node) keys.push_back(node->Key());
    mvarEntries.erase(found);
    return keys;
}

} // namespace kestrel::dialogs
