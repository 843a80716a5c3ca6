#include "relations/TextIndex.h"

#include "common/PlainText.h"
#include "common/Ports.h"
#include "relations/SiblingHash.h"

namespace kestrel {

TextIndex::TextIndex(By by, Side side, const std::vector<const cNode*>& nodes)
    : mvarBy(by), mvarSide(side), mvarNodes(nodes.size()) {
    mvarEntries.reserve(nodes.size());
    mvarChains.reserve(nodes.size());
    for (const cNode* node : nodes) {
        const String& text = (node->*side)();
        mvarAllPlain = mvarAllPlain && LookAt(text).isPlain;
        Append(mvarChains[HashOf(node->Parent().Get(), text)], *node);
    }
}

bool TextIndex::Knows(const String& value) const noexcept {
    return mvarBy == By::SortKey || (mvarAllPlain && LookAt(value).isPlain);
}

const cNode* TextIndex::FindSame(const cNode* parent, const String& value) const {
    const auto& port = TheText();
    return Find(parent, value, [&](const cNode& node) { return port.SameText((node.*mvarSide)(), value); });
}

const cNode* TextIndex::FindEqual(const cNode* parent, const String& text, const cNode* except) const {
    return Find(parent, text, [&](const cNode& node) { return &node != except && (node.*mvarSide)() == text; });
}

bool TextIndex::Add(const cNode& node, const cNode* parent, const String& text, bool isLast) {
    Chain& chain = mvarChains[HashOf(parent, text)];
    if (!isLast && chain.first != 0) return false;
    mvarAllPlain = mvarAllPlain && LookAt(text).isPlain;
    if (isLast) ++mvarNodes;
    Append(chain, node);
    return mvarEntries.size() / 2 <= mvarNodes;
}

std::uint64_t TextIndex::HashOf(const cNode* parent, const String& text) const {
    const std::uint64_t hash =
        mvarBy == By::Folding ? LookAt(text).foldedHash : std::uint64_t{mvarHash(TheText().SortKey(text))};
    return SiblingHash(parent, hash);
}

void TextIndex::Append(Chain& chain, const cNode& node) {
    mvarEntries.push_back({&node, 0});
    const auto place = static_cast<Place>(mvarEntries.size());
    if (chain.first == 0)
        chain.first = place;
    else
        mvarEntries[chain.last - 1].next = place;
    chain.last = place;
}

template <class Predicate>
const cNode* TextIndex::Find(const cNode* parent, const String& text, Predicate matches) const {
    const auto chain = mvarChains.find(HashOf(parent, text));
    if (chain == mvarChains.end()) return nullptr;
    for (Place place = chain->second.first; place != 0;) {
        const Entry& entry = mvarEntries[place - 1];
        if (entry.node->Parent().Get() == parent && matches(*entry.node)) return entry.node;
        place = entry.next;
    }
    return nullptr;
}

} // namespace kestrel
