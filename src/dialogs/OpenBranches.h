// Which branches of a relation tree stood open when it was left, so that they are opened when it is shown again.
//
// Invariants: of the last few trees only, and of those only the ones with an open branch; no tree and no node is kept
// alive by it. A tree that was emptied meanwhile gives its keys to other nodes: what is kept is the node, not its key.
#pragma once

#include <vector>

#include "relations/cNodes.h"

namespace kestrel::dialogs {

class OpenBranches {
  public:
    static constexpr std::size_t MostTrees = 8;

    // The keys of the open branches, as they are in the tree, in place of what was kept of that tree before; the tree
    // left longest ago goes when there are too many.
    void Keep(const Ref<cNodes>& tree, const std::vector<String>& keys);
    // The keys of what was kept of that tree and is still in it, which is then forgotten; empty when there is nothing,
    // or no tree.
    [[nodiscard]] std::vector<String> Take(const Ref<cNodes>& tree);

  private:
    struct Entry {
        WeakRef<cNodes> tree;
        std::vector<WeakRef<cNode>> nodes;
    };
    std::vector<Entry> mvarEntries; // the tree left last at the end
};

} // namespace kestrel::dialogs
