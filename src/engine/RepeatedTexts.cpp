#include "engine/RepeatedTexts.h"

#include <algorithm>
#include <functional>

#include "common/Ports.h"
#include "relations/SiblingHash.h"

namespace kestrel {

namespace {

// So many that of texts that are all different only a few share their bit.
constexpr std::size_t BitsPerText = 16;

std::size_t PowerOfTwo(std::size_t least) {
    std::size_t size = 2;
    while (size < least)
        size *= 2;
    return size;
}

// Never 0.
std::uint64_t HashOf(std::uint64_t textHash, const cNode* parent) noexcept {
    return SiblingHash(parent, textHash) | (std::uint64_t{1} << 63U);
}

} // namespace

RepeatedTexts::RepeatedTexts(const std::vector<const cNode*>& nodes, Side side)
    : mvarNodes(nodes), mvarSide(side), mvarHashes(nodes.size()), mvarSeen(PowerOfTwo(nodes.size() * BitsPerText)),
      mvarShared(mvarSeen.size()), mvarMask(mvarSeen.size() - 1) {}

void RepeatedTexts::Note(std::size_t offset, const TextTraits& traits) {
    mvarPlain = mvarPlain && traits.isPlain;
    NoteHash(offset, traits.foldedHash);
}

// A text in full-width letters may be the same as one in ASCII: from here on all are noted alike.
void RepeatedTexts::NoteSortKeys() {
    std::fill(mvarSeen.begin(), mvarSeen.end(), false);
    std::fill(mvarShared.begin(), mvarShared.end(), false);
    for (std::size_t offset = 0; offset < mvarHashes.size(); ++offset)
        if (mvarHashes[offset] != 0)
            NoteHash(offset, std::hash<String>()(TheText().SortKey((mvarNodes[offset]->*mvarSide)())));
}

void RepeatedTexts::NoteHash(std::size_t offset, std::uint64_t textHash) {
    const auto hash = HashOf(textHash, mvarNodes[offset]->Parent().Get());
    const auto bit = static_cast<std::size_t>(hash) & mvarMask;
    mvarHashes[offset] = hash;
    if (mvarSeen[bit])
        mvarShared[bit] = true;
    else
        mvarSeen[bit] = true;
}

std::vector<std::size_t> RepeatedTexts::Found() {
    if (!mvarPlain) NoteSortKeys();
    const auto candidates = Candidates();
    std::vector<std::size_t> places(
        PowerOfTwo(candidates.size() * 2)); // in `candidates`, from 1; 0 where there is none
    std::vector<std::size_t> found;
    const std::size_t mask = places.size() - 1;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        auto place = static_cast<std::size_t>(mvarHashes[candidates[i]]) & mask;
        while (places[place] != 0 && !IsSame(candidates[places[place] - 1], candidates[i]))
            place = (place + 1) & mask;
        if (places[place] != 0)
            found.push_back(candidates[i]);
        else
            places[place] = i + 1;
    }
    return found;
}

std::vector<std::size_t> RepeatedTexts::Candidates() const {
    std::vector<std::size_t> candidates;
    for (std::size_t offset = 0; offset < mvarHashes.size(); ++offset)
        if (const auto hash = mvarHashes[offset]; hash != 0 && mvarShared[static_cast<std::size_t>(hash) & mvarMask])
            candidates.push_back(offset);
    return candidates;
}

bool RepeatedTexts::IsSame(std::size_t offset, std::size_t other) const {
    const cNode& node = *mvarNodes[offset];
    const cNode& otherNode = *mvarNodes[other];
    return mvarHashes[offset] == mvarHashes[other] && node.Parent() == otherNode.Parent() &&
           TheText().SameText((node.*mvarSide)(), (otherNode.*mvarSide)());
}

} // namespace kestrel
