#include "relations/TextIndex.h"

#include "common/PlainText.h"
#include "common/Ports.h"
#include "relations/SiblingHash.h"

namespace kestrel {

TextIndex::TextIndex(By by, Side side, const std::vector<const cNode*>& nodes)
    : mvarBy(by), mvarSide(side), mvarNodes(nodes.size()) {
    mvarChains.Reserve(nodes.size());
    for (const cNode* node : nodes) {
        const String& text = (node->*side)();
        mvarAllPlain = mvarAllPlain && LookAt(text).isPlain;
        mvarChains.Append(HashOf(node->Parent().Get(), text), *node);
    }
}

bool TextIndex::Knows(const String& value) const noexcept {
    return mvarBy == By::SortKey || (mvarAllPlain && LookAt(value).isPlain);
}

const cNode* TextIndex::FindSame(const cNode* parent, const String& value) const {
    const auto& port = TheText();
    return mvarChains.Find(HashOf(parent, value), [&](const cNode& node) {
        return node.Parent() == parent && port.SameText((node.*mvarSide)(), value);
    });
}

const cNode* TextIndex::FindEqual(const cNode* parent, const String& text, const cNode* except) const {
    return mvarChains.Find(HashOf(parent, text), [&](const cNode& node) {
        return &node != except && node.Parent() == parent && (node.*mvarSide)() == text;
    });
}

bool TextIndex::Add(const cNode& node, const cNode* parent, const String& text, bool isLast) {
    mvarAllPlain = mvarAllPlain && LookAt(text).isPlain;
    const auto hash = HashOf(parent, text);
    if (isLast)
        ++mvarNodes;
    else if (const cNode* same = HasAny(hash) ? FindSame(parent, text) : nullptr)
        return same == &node;
    mvarChains.Append(hash, node);
    return mvarChains.Count() / 2 <= mvarNodes;
}

// What was noted first of texts that have changed since is forgotten.
bool TextIndex::HasAny(std::uint32_t hash) {
    for (;;) {
        const cNode* first = mvarChains.Find(hash, [](const cNode&) { return true; });
        if (first == nullptr) return false;
        if (HashOf(first->Parent().Get(), (first->*mvarSide)()) == hash) return true;
        mvarChains.Remove(hash, *first);
    }
}

std::uint32_t TextIndex::HashOf(const cNode* parent, const String& text) const {
    const std::uint64_t hash =
        mvarBy == By::Folding ? LookAt(text).foldedHash : std::uint64_t{mvarHash(TheText().SortKey(text))};
    return static_cast<std::uint32_t>(SiblingHash(parent, hash));
}

} // namespace kestrel
