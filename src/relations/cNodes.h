// A relation tree: an ordered list of nodes whose Parent references give it its shape, one lookup per layer from code
// to value or from value to code, and a text form.
//
// Invariants: keys are unique, "N" and a number that is not used again while the tree holds nodes; positions are
// 1-based and run over the whole list, whatever the layers. Among siblings Add and Drag keep codes unique and values
// unique. While NodesChanged is raised the tree is whole, and a handler may change or release it.
//
// Text form: the key counter, then for each node in order ";" and parent number, own number, Text, Tag, separated by
// ",". Numbers are keys without their "N"; a first-layer node has an empty parent number. Nothing is escaped: a code or
// value that holds "," or ";" does not survive.
#pragma once

#include <vector>

#include "common/Enumerations.h"
#include "common/Event.h"
#include "relations/NodeList.h"
#include "relations/TreeIndexes.h"
#include "relations/cNode.h"

namespace kestrel {

class cNodes final : public Exposed {
  public:
    // Makes a node, gives it the next key and places it: at the end of the first layer when Relative is left out,
    // otherwise by Relationship to the node that Relative names. Fails with 2029 or 2030 when a sibling has the same
    // Text or Tag, with 2003 on an unknown Relationship or tvwChild in a simplified tree, with 5 or 9 on an unknown
    // Relative, with 6 when no key number is left. A failed Add has used its key number.
    Ref<cNode> Add(const IndexKey& relative = {}, int relationship = tvwFirst, const String& text = {},
                   const String& tag = {});
    // An unknown key fails with 5, a position outside 1 to Count() with 9.
    [[nodiscard]] Ref<cNode> Node(const IndexKey& indexKey) const { return mvarNodes.At(indexKey); }
    [[nodiscard]] std::int32_t Count() const noexcept { return mvarNodes.Count(); }
    // Removes the node with all its descendants, then raises NodesChanged with the parent's key twice. Fails as Node.
    void Remove(const IndexKey& indexKey);
    // The nodes in order, as they are now.
    [[nodiscard]] std::vector<Ref<cNode>> Snapshot() const { return mvarNodes.All(); }
    // The nodes in order without holding them, for a pass during which nothing of the host runs.
    [[nodiscard]] std::vector<const cNode*> View() const;
    // Takes the node out and places it anew, as Add does; Relative as a position counts without the node. A missing
    // node or a tree of fewer than two nodes moves nothing. A new parent that is the node or one of its descendants
    // fails with 2003 before anything moves; any other failure of the placement leaves the node out of the tree.
    void Drag(const IndexKey& relative, int relationship, const IndexKey& indexKey);
    // Removes every node and starts the keys anew; raises NodesChanged with two empty keys.
    void Cls();
    [[nodiscard]] tvwStyles Style() const noexcept { return mvarStyle; }
    // Looks Value up among the children of the node named, or in the first layer when none is named, without regard to
    // case: csCodeToValue finds it as Text, csValueToCode as Tag. Value becomes the other side; returns the node's key.
    // Fails with 2003 on any other ConvStyle or an empty Value, with 2033 in an empty tree, with 2034 when nothing
    // matches, as Node on an unknown key; then Value is unchanged.
    String Conversion(int convStyle, String& value, const IndexKey& indexKey = {}) const;
    // The node that Conversion finds: the value's other side, without a copy of either. Fails as that does.
    [[nodiscard]] const cNode& Converting(int convStyle, const String& value, const IndexKey& indexKey = {}) const;
    // Removes the node with all its descendants; raises nothing and keeps the key counter. Fails as Node.
    void RemoveItem(const IndexKey& indexKey);

    // vParentKey (empty for the first layer), vHotKey
    Event<const String&, const String&> NodesChanged;

    // For the owner of the tree. A tree that holds nodes fails with 2001, a style outside 0 to 2 with 2003.
    void SetStyle(int style);
    // Raises NodesChanged for the node with that key; nothing when the tree holds none.
    void NotifyChanged(const String& key);
    [[nodiscard]] String ExportNodes() const;
    // An empty text changes nothing. Otherwise all nodes are replaced, without any event or check of duplicates. A
    // record of fewer than four fields fails with 9, an unknown parent number with 5, a number used twice with 457, and
    // the nodes before it stay; a key counter beyond 32 bits fails with 6 before anything changes.
    void ImportNodes(StringView text);

    // The steps of a node's navigation; each is one pass at most.
    [[nodiscard]] std::int32_t IndexOf(const cNode& node) const;
    [[nodiscard]] Ref<cNode> FirstSiblingOf(const cNode& node) const;
    [[nodiscard]] Ref<cNode> LastSiblingOf(const cNode& node) const;
    [[nodiscard]] Ref<cNode> NextSiblingOf(const cNode& node) const;
    [[nodiscard]] Ref<cNode> PreviousSiblingOf(const cNode& node) const;
    [[nodiscard]] Ref<cNode> FirstWithParent(const cNode* parent) const;
    [[nodiscard]] std::int32_t CountDescendants(const cNode& node) const;
    // Whether a node with that parent (null: of the first layer) other than `except` has exactly this text on that
    // side.
    [[nodiscard]] bool IsTaken(TreeIndexes::Side side, const cNode* parent, const String& text,
                               const cNode* except) const;
    // A node of the tree is about to get another text on that side.
    void NoteText(const cNode& node, TreeIndexes::Side side, const String& text);

  private:
    struct Placement {
        const cNode* parent = nullptr; // of the first layer: null
        int relationship = tvwLast;
        const cNode* anchor = nullptr; // what the relationship is to
        std::int32_t position = 0;
    };

    // The first node with that parent for which matches(node) holds; null when none does. `walked` counts the nodes
    // looked at.
    template <class Predicate>
    [[nodiscard]] const cNode* FindInLayer(const cNode* parent, std::size_t& walked, Predicate matches) const {
        for (std::int32_t position = 1; position <= Count(); ++position) {
            const cNode& node = *mvarNodes[position];
            ++walked;
            if (node.Parent().Get() == parent && matches(node)) return &node;
        }
        return nullptr;
    }
    [[nodiscard]] const cNode* FindAlike(TreeIndexes::Side side, const cNode* parent, const String& value) const;
    void PlaceNode(const IndexKey& relative, int relationship, const Ref<cNode>& node);
    void PlaceAt(const Ref<cNode>& node, const Placement& placement);
    void RefuseDuplicate(const cNode* parent, const cNode& node) const;
    void RefuseCycle(const IndexKey& relative, int relationship, const cNode& node) const;
    [[nodiscard]] Ref<cNode> AnchorBeside(const IndexKey& relative, const cNode& node) const;
    [[nodiscard]] bool StandsAt(const cNode& node, std::int32_t position) const;
    [[nodiscard]] std::vector<bool> MarkSubtree(const cNode& root) const;
    [[nodiscard]] std::size_t ExpectedLength() const;
    void ImportRecord(StringView record);

    NodeList mvarNodes;
    mutable TreeIndexes mvarIndexes;
    std::int32_t mvarKeyCounter = 0;
    tvwStyles mvarStyle = tsNormal;
};

} // namespace kestrel
