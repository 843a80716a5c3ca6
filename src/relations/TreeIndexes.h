// What a tree knows of its layers beside its list, so that nothing that is asked of a large tree again and again walks
// it each time. Each index is made on demand and holds as much as the tree has nodes, twice at most; the list stays the
// truth, and an index that a change could make wrong is thrown away.
#pragma once

#include <array>

#include "common/OnDemand.h"
#include "relations/LayerEnds.h"
#include "relations/TextIndex.h"

namespace kestrel {

class cNodes;

class TreeIndexes {
  public:
    using Side = TextIndex::Side;

    // Each is null as long as walking costs less; what was walked instead is to be told.
    [[nodiscard]] const LayerEnds* Ends(const cNodes& tree);
    void WalkedForEnds(std::size_t nodes) noexcept { mvarEnds.Walked(nodes); }
    // The index that knows texts of that side exactly.
    [[nodiscard]] const TextIndex* Texts(const cNodes& tree, Side side);
    void WalkedForTexts(Side side, std::size_t nodes) noexcept { Folded(side).Walked(nodes); }
    // The index that is right about what the user takes for the same as the value.
    [[nodiscard]] const TextIndex* Alike(const cNodes& tree, Side side, const String& value);
    void WalkedForAlike(Side side, std::size_t nodes) noexcept;

    // A change that the indexes are told of before it is made. Unless it was made when this ends, they are dropped.
    class Change {
      public:
        explicit Change(TreeIndexes& indexes) noexcept : mvarIndexes(&indexes) {}
        // One change, made once.
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;
        ~Change() {
            if (mvarIndexes != nullptr) mvarIndexes->Drop();
        }
        void Made() noexcept { mvarIndexes = nullptr; }

      private:
        TreeIndexes* mvarIndexes;
    };

    // A node gets its place in a layer; within a Change.
    void Place(const cNode& node, const cNode* parent, int relationship, const cNode* anchor);
    // A node of the tree gets another text; within a Change.
    void Rename(const cNode& node, Side side, const String& text);
    // To be told before a node leaves.
    void Drop() noexcept;

  private:
    using Pair = std::array<OnDemand<TextIndex>, 2>; // codes, values

    [[nodiscard]] static std::size_t Offset(Side side) noexcept { return side == Side{&cNode::Text} ? 0 : 1; }
    [[nodiscard]] OnDemand<TextIndex>& Folded(Side side) noexcept { return mvarFolded[Offset(side)]; }
    [[nodiscard]] OnDemand<TextIndex>& Sorted(Side side) noexcept { return mvarSorted[Offset(side)]; }
    void Note(const cNode& node, const cNode* parent, Side side, const String& text, bool isLast);

    OnDemand<LayerEnds> mvarEnds;
    Pair mvarFolded;
    Pair mvarSorted;
};

} // namespace kestrel
