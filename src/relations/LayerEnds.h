// The first and the last node of each layer of a tree, for trees whose layers lie scattered over a long list. The tree
// throws them away before a node leaves: the nodes are not held.
#pragma once

#include <unordered_map>
#include <vector>

#include "relations/cNode.h"

namespace kestrel {

class LayerEnds {
  public:
    // Of all the nodes of a tree in their order.
    explicit LayerEnds(const std::vector<const cNode*>& nodes);

    // Of the nodes with that parent (null: of the first layer); null when there is none.
    [[nodiscard]] const cNode* First(const cNode* parent) const;
    [[nodiscard]] const cNode* Last(const cNode* parent) const;

    // A node gets its place in the layer: the first, the last (as tvwChild too), or beside the node that is the anchor.
    void Add(const cNode& node, const cNode* parent, int relationship, const cNode* anchor);

  private:
    struct Ends {
        const cNode* first = nullptr;
        const cNode* last = nullptr;
    };

    std::unordered_map<const cNode*, Ends> mvarLayers;
};

} // namespace kestrel
