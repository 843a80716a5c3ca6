// Finds the relations that have a certain code, or a certain value, in a layer of any size without walking it.
//
// It says what one pass in the order of the list would say. Texts are noted under a hash of what is compared, those
// under one hash in the order of the list; each that a search comes upon is compared itself, so that what was noted of
// a text that has changed since does no harm. The tree throws the index away where the order would be lost, and before
// a node leaves: the nodes are not held.
#pragma once

#include <cstdint>
#include <vector>

#include "common/KeyHash.h"
#include "relations/NodeChains.h"
#include "relations/cNode.h"

namespace kestrel {

class TextIndex {
  public:
    using Side = const String& (cNode::*)() const noexcept;

    // What texts that are to be found together have in common. Folding is quick and knows printable ASCII only; the
    // sort key of the user's locale knows every text.
    enum class By { Folding, SortKey };

    // Of one side, codes or values, of all the nodes of a tree in their order.
    TextIndex(By by, Side side, const std::vector<const cNode*>& nodes);

    // Whether FindSame is right about the value: by folding, only where it and all texts are printable ASCII.
    [[nodiscard]] bool Knows(const String& value) const noexcept;

    // The first node with that parent (null: of the first layer) whose text the user takes for the same; null when
    // there is none.
    [[nodiscard]] const cNode* FindSame(const cNode* parent, const String& value) const;
    // A node with that parent that has exactly this text and is not `except`; null when there is none.
    [[nodiscard]] const cNode* FindEqual(const cNode* parent, const String& text, const cNode* except) const;

    // Notes the text that a node of the layer gets. False when the index is no good any more: the node is not the last
    // of its layer and the user takes the text of another one for the same, or too much of what was noted has changed.
    [[nodiscard]] bool Add(const cNode& node, const cNode* parent, const String& text, bool isLast);

  private:
    [[nodiscard]] std::uint32_t HashOf(const cNode* parent, const String& text) const;
    // Whether a node has a text of that hash.
    [[nodiscard]] bool HasAny(std::uint32_t hash);

    By mvarBy;
    Side mvarSide;
    KeyHash mvarHash;
    NodeChains mvarChains;
    std::size_t mvarNodes = 0; // entries but those of texts that changed
    bool mvarAllPlain = true;
};

} // namespace kestrel
