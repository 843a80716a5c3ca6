// One entry of a relation tree: a code (Text) and what it stands for (Tag) in one layer of a layered code. The nodes
// whose Parent is this one are the relations of the next layer under its code.
//
// A node knows its parent (held) and its tree (not held). Order and kinship exist only through the tree's flat list,
// where positions are 1-based; siblings are the nodes with the identical Parent, so all nodes without one are siblings.
// Every navigation is computed from that list in one pass at most. A node without a tree, or whose tree has ended,
// answers with the neutral result named at each member. A node that has left its tree still belongs to it: its Index is
// Count + 1, it is its own last sibling, and what is set on it is not announced.
#pragma once

#include <cstdint>

#include "common/Exposed.h"
#include "common/Messages.h"
#include "common/String.h"

namespace kestrel {

class cNodes;

class cNode final : public Exposed {
  public:
    ~cNode() override;

    [[nodiscard]] Ref<cNode> LastSibling() const;  // without tree: this node
    [[nodiscard]] Ref<cNode> FirstSibling() const; // without tree: this node
    [[nodiscard]] Ref<cNode> Child() const;        // the first node of the next layer; nothing when there is none
    [[nodiscard]] Ref<cNode> Root() const;         // up the parents to the one without parent, possibly this node
    [[nodiscard]] const Ref<cNode>& Parent() const noexcept { return mvarParent; } // nothing in the first layer
    // 0 for every node, see the definition; Descendants() counts.
    [[nodiscard]] std::int32_t Children() const noexcept;
    [[nodiscard]] const String& Key() const noexcept { return mvarKey; } // "N" and a number; empty without tree
    // Nothing, except for a node that is its own first sibling or directly follows it: there it fails with 438, or with
    // 91 when one of the two parents compared is none. PreviousSibling() is the member to use.
    [[nodiscard]] Ref<cNode> Previous() const;
    [[nodiscard]] Ref<cNode> Nexts() const;   // the next sibling; nothing when there is none
    [[nodiscard]] std::int32_t Index() const; // position in the tree's list; without tree 0
    [[nodiscard]] std::int32_t Layer() const; // number of parents above; without tree 0
    [[nodiscard]] const String& Text() const noexcept { return mvarText; }
    [[nodiscard]] const String& Tag() const noexcept { return mvarTag; }
    // A sibling with exactly this text fails with 2029, one with exactly this tag with 2030, and nothing changes. The
    // same text again does nothing; a change is announced by the tree.
    void SetText(const String& text);
    void SetTag(const String& tag);
    // Fails as SetText and then SetTag would, for a caller that sets both or neither.
    void RefuseTaken(const String& text, const String& tag) const;
    [[nodiscard]] Ref<cNode> PreviousSibling() const; // the nearest earlier sibling; nothing when there is none
    [[nodiscard]] std::int32_t Descendants() const;   // number of nodes below, all levels; without tree 0

    // For the tree.
    // Text and Tag of a node that has no tree yet, which has nobody to ask and nobody to tell.
    void Fill(StringView text, StringView tag) {
        mvarText = text;
        mvarTag = tag;
    }
    void SetOwner(cNodes* tree);
    [[nodiscard]] Ref<cNodes> GetOwner() const noexcept; // nothing without tree or when that has ended
    void SetParent(Ref<cNode> parent) noexcept { mvarParent = std::move(parent); }
    void SetKey(String key) noexcept { mvarKey = std::move(key); }
    // Where the tree last found the node, to be verified before use; 0 when never.
    [[nodiscard]] std::int32_t LastPosition() const noexcept { return mvarLastPosition; }
    void SetLastPosition(std::int32_t position) const noexcept { mvarLastPosition = position; }

  private:
    using Side = const String& (cNode::*)() const noexcept;
    void RefuseSibling(Side side, const String& text, Message message) const;
    void Change(String cNode::*field, Side side, String text);
    void Announce();

    String mvarText;
    String mvarTag;
    Ref<cNode> mvarParent;
    WeakRef<cNodes> mvarOwner;
    String mvarKey;
    mutable std::int32_t mvarLastPosition = 0;
};

} // namespace kestrel
