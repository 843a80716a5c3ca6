// Finds the texts that an earlier sibling has, as conversion compares them, in one pass over a tree of any size.
//
// Texts are noted by a hash of what is compared: letter case aside while all of them are printable ASCII, which every
// locale compares alike; else of the keys that the user's locale compares, of which the platform is asked. A text whose
// hash shares its place in a small table of bits with no other one is alone; only the few that are left are compared.
// The table stays in the processor's cache where one with every text would not.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/TextTraits.h"
#include "relations/cNode.h"

namespace kestrel {

class RepeatedTexts {
  public:
    using Side = const String& (cNode::*)() const noexcept;

    // Of one side, codes or values, of the nodes; `nodes` outlive this.
    RepeatedTexts(const std::vector<const cNode*>& nodes, Side side);

    // Once for each node that counts, with the traits of its text.
    void Note(std::size_t offset, const TextTraits& traits);

    // The offsets of those noted whose text an earlier sibling that was noted has, in their order. Once, at the end.
    [[nodiscard]] std::vector<std::size_t> Found();

  private:
    void NoteHash(std::size_t offset, std::uint64_t textHash);
    void NoteSortKeys();
    [[nodiscard]] std::vector<std::size_t> Candidates() const;
    [[nodiscard]] bool IsSame(std::size_t offset, std::size_t other) const;

    const std::vector<const cNode*>& mvarNodes;
    Side mvarSide;
    std::vector<std::uint64_t> mvarHashes; // by offset; 0 where nothing was noted
    std::vector<bool> mvarSeen;            // by a part of the hash: some text has it
    std::vector<bool> mvarShared;          // more than one has it
    std::size_t mvarMask;
    bool mvarPlain = true; // every text noted
};

} // namespace kestrel
