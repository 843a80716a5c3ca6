// The nodes of a tree in their order, found by position and by key.
//
// Invariants: positions run from 1 to Count(); no two nodes have the same key, and a node keeps its key while it is in
// the list. A lookup takes constant time; a place in the middle is filled, and one left is closed, in one pass.
#pragma once

#include <utility>
#include <vector>

#include "common/IndexKey.h"
#include "common/KeyHash.h"
#include "relations/NodeChains.h"
#include "relations/cNode.h"

namespace kestrel {

class NodeList {
  public:
    [[nodiscard]] std::int32_t Count() const noexcept { return static_cast<std::int32_t>(mvarNodes.size()); }
    [[nodiscard]] const Ref<cNode>& operator[](std::int32_t position) const {
        return mvarNodes[static_cast<std::size_t>(position) - 1];
    }
    [[nodiscard]] const std::vector<Ref<cNode>>& All() const noexcept { return mvarNodes; }
    // An unknown key or no key at all fails with 5, a position outside 1 to Count() with 9, what names nothing with its
    // own refusal.
    [[nodiscard]] Ref<cNode> At(const IndexKey& indexKey) const;
    // Whether it names a node of the list.
    [[nodiscard]] bool Knows(const IndexKey& indexKey) const;
    // Null when no node has the key.
    [[nodiscard]] const cNode* Find(const String& key) const;

    // The node takes the position 1 to Count() + 1; those from there on move up. A key already used fails with 457.
    void Insert(const Ref<cNode>& node, std::int32_t position);
    void Remove(std::int32_t position);
    // Removes in one pass the nodes at the offsets that are marked.
    void Remove(const std::vector<bool>& leaves);
    // The nodes are let go only after the list is empty.
    void Clear();
    void Reserve(std::size_t count);

  private:
    [[nodiscard]] std::uint32_t HashOf(const String& key) const { return static_cast<std::uint32_t>(mvarHash(key)); }
    [[nodiscard]] bool IsPosition(std::int64_t position) const noexcept { return position >= 1 && position <= Count(); }

    std::vector<Ref<cNode>> mvarNodes;
    NodeChains mvarByKey;
    KeyHash mvarHash;
};

} // namespace kestrel
