#include "relations/TreeIndexes.h"

#include "common/Enumerations.h"
#include "relations/cNodes.h"

namespace kestrel {

namespace {

std::size_t SizeOf(const cNodes& tree) noexcept { return static_cast<std::size_t>(tree.Count()); }

} // namespace

const LayerEnds* TreeIndexes::Ends(const cNodes& tree) {
    return mvarEnds.Get(SizeOf(tree), [&tree] { return std::make_unique<LayerEnds>(tree.View()); });
}

const TextIndex* TreeIndexes::Texts(const cNodes& tree, Side side) {
    return Folded(side).Get(SizeOf(tree),
                            [&] { return std::make_unique<TextIndex>(TextIndex::By::Folding, side, tree.View()); });
}

const TextIndex* TreeIndexes::Alike(const cNodes& tree, Side side, const String& value) {
    const auto* folded = Texts(tree, side);
    if (folded == nullptr || folded->Knows(value)) return folded;
    return Sorted(side).Get(SizeOf(tree),
                            [&] { return std::make_unique<TextIndex>(TextIndex::By::SortKey, side, tree.View()); });
}

void TreeIndexes::WalkedForAlike(Side side, std::size_t nodes) noexcept {
    Folded(side).Walked(nodes);
    Sorted(side).Walked(nodes);
}

void TreeIndexes::Place(const cNode& node, const cNode* parent, int relationship, const cNode* anchor) {
    const bool isLast = relationship == tvwLast || relationship == tvwChild;
    mvarEnds.Update([&](LayerEnds& ends) {
        ends.Add(node, parent, relationship, anchor);
        return true;
    });
    Note(node, parent, &cNode::Text, node.Text(), isLast);
    Note(node, parent, &cNode::Tag, node.Tag(), isLast);
}

void TreeIndexes::Rename(const cNode& node, Side side, const String& text) {
    Note(node, node.Parent().Get(), side, text, false);
}

void TreeIndexes::Note(const cNode& node, const cNode* parent, Side side, const String& text, bool isLast) {
    const auto add = [&](TextIndex& index) { return index.Add(node, parent, text, isLast); };
    Folded(side).Update(add);
    Sorted(side).Update(add);
}

void TreeIndexes::Drop() noexcept {
    mvarEnds.Drop();
    for (auto* pair : {&mvarFolded, &mvarSorted})
        for (auto& index : *pair)
            index.Drop();
}

} // namespace kestrel
