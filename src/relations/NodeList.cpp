#include "relations/NodeList.h"

#include <algorithm>

#include "common/Error.h"

namespace kestrel {

Ref<cNode> NodeList::At(const IndexKey& indexKey) const {
    if (const auto* position = indexKey.Position()) {
        if (!IsPosition(*position)) throw Error(Message::OutOfRange);
        return mvarNodes[static_cast<std::size_t>(*position) - 1];
    }
    const cNode* node = indexKey.Key() != nullptr ? Find(*indexKey.Key()) : nullptr;
    if (node == nullptr) throw Error(indexKey.Refusal());
    return Ref<cNode>(const_cast<cNode*>(node));
}

bool NodeList::Knows(const IndexKey& indexKey) const {
    if (const auto* position = indexKey.Position()) return IsPosition(*position);
    return indexKey.Key() != nullptr && Find(*indexKey.Key()) != nullptr;
}

const cNode* NodeList::Find(const String& key) const {
    return mvarByKey.Find(HashOf(key), [&key](const cNode& node) { return node.Key() == key; });
}

void NodeList::Insert(const Ref<cNode>& node, std::int32_t position) {
    if (Find(node->Key()) != nullptr) throw Error(Message::DuplicateKey);
    // Room first: what stands under its key must come into the list.
    if (mvarNodes.size() == mvarNodes.capacity()) mvarNodes.reserve(std::max<std::size_t>(16, mvarNodes.size() * 2));
    mvarByKey.Append(HashOf(node->Key()), *node);
    mvarNodes.insert(mvarNodes.begin() + (position - 1), node);
}

void NodeList::Remove(std::int32_t position) {
    const auto place = mvarNodes.begin() + (position - 1);
    const Ref<cNode> node = *place; // lives until it has left both
    mvarByKey.Remove(HashOf(node->Key()), *node);
    mvarNodes.erase(place);
}

void NodeList::Remove(const std::vector<bool>& leaves) {
    std::vector<Ref<cNode>> leaving; // let go when the list is whole again
    leaving.reserve(static_cast<std::size_t>(std::count(leaves.begin(), leaves.end(), true)));
    std::size_t kept = 0;
    for (std::size_t offset = 0; offset < mvarNodes.size(); ++offset) {
        auto& node = mvarNodes[offset];
        if (leaves[offset]) {
            mvarByKey.Remove(HashOf(node->Key()), *node);
            leaving.push_back(std::move(node));
        } else if (kept++ != offset) {
            mvarNodes[kept - 1] = std::move(node);
        }
    }
    mvarNodes.resize(kept);
}

void NodeList::Clear() {
    const auto nodes = std::exchange(mvarNodes, {});
    mvarByKey.Clear();
}

void NodeList::Reserve(std::size_t count) {
    mvarNodes.reserve(count);
    mvarByKey.Reserve(count);
}

} // namespace kestrel
