#include "engine/TreeSurvey.h"

#include <algorithm>

#include "common/Ports.h"
#include "engine/FormatTrials.h"
#include "engine/TextTraits.h"

namespace kestrel {

namespace {

using Side = const String& (cNode::*)() const noexcept;

// Offsets into the list of nodes; of a node of the first layer there is no parent.
constexpr std::int32_t NoParent = -1;
constexpr std::int32_t ParentHasLeft = -2;
constexpr std::int32_t Unknown = -1;
constexpr std::int32_t OutsideTheTree = -2;

// Whether a sibling seen before has the same text, upper and lower case being the same. What was seen is found by its
// hash, so that a layer of any size takes one pass.
class TextsOfSiblings {
  public:
    TextsOfSiblings(const std::vector<Ref<cNode>>& nodes, Side side) : mvarNodes(nodes), mvarSide(side) {
        std::size_t size = 2;
        while (size < nodes.size() * 2)
            size *= 2;
        mvarPlaces.resize(size);
        mvarHashes.resize(nodes.size());
    }

    // Of each node once.
    bool IsTaken(std::size_t offset, std::uint64_t foldedHash) {
        const cNode& node = *mvarNodes[offset];
        const auto hash = Mixed(foldedHash, node.Parent().Get());
        const std::size_t mask = mvarPlaces.size() - 1;
        auto place = static_cast<std::size_t>(hash) & mask;
        for (; mvarPlaces[place] != 0; place = (place + 1) & mask)
            if (const std::size_t other = mvarPlaces[place] - 1U; mvarHashes[other] == hash && IsSame(other, node))
                return true;
        mvarPlaces[place] = static_cast<std::uint32_t>(offset) + 1;
        mvarHashes[offset] = hash;
        return false;
    }

  private:
    static std::uint64_t Mixed(std::uint64_t hash, const cNode* parent) {
        hash = (hash ^ reinterpret_cast<std::uintptr_t>(parent)) * 0x9E3779B97F4A7C15U;
        return hash ^ (hash >> 32U);
    }

    [[nodiscard]] bool IsSame(std::size_t offset, const cNode& node) const {
        const cNode& other = *mvarNodes[offset];
        return other.Parent() == node.Parent() && TheText().SameText((other.*mvarSide)(), (node.*mvarSide)());
    }

    const std::vector<Ref<cNode>>& mvarNodes;
    Side mvarSide;
    std::vector<std::uint32_t> mvarPlaces; // offsets from 1; 0 where there is none
    std::vector<std::uint64_t> mvarHashes;
};

class Surveyor {
  public:
    Surveyor(const cNodes& tree, const std::vector<const Band*>& bands)
        : mvarNodes(tree.Snapshot()), mvarBands(bands), mvarParents(mvarNodes.size(), NoParent),
          mvarDepths(mvarNodes.size(), Unknown), mvarHasChild(mvarNodes.size()) {
        mvarSurvey.layers.resize(bands.size());
    }

    TreeSurvey Survey() {
        FindParents();
        TextsOfSiblings codes(mvarNodes, &cNode::Text);
        TextsOfSiblings values(mvarNodes, &cNode::Tag);
        for (std::size_t offset = 0; offset < mvarNodes.size(); ++offset) {
            const auto depth = DepthOf(offset);
            const String& code = mvarNodes[offset]->Text();
            const auto parent = mvarParents[offset];
            if (depth < 0 || (parent >= 0 && static_cast<std::size_t>(parent) > offset)) mvarSurvey.lost.Add(code);
            if (depth < 0) continue;
            if (static_cast<std::size_t>(depth) >= mvarBands.size()) {
                mvarSurvey.below.Add(code);
                continue;
            }
            auto& layer = mvarSurvey.layers[static_cast<std::size_t>(depth)];
            const auto codeTraits = TraitsOf(code);
            const auto valueTraits = TraitsOf(mvarNodes[offset]->Tag());
            ++layer.count;
            if (codeTraits.hasSmallLetters) layer.smallLetters.Add(code);
            if (codeTraits.hasSeparators || valueTraits.hasSeparators) layer.notSaved.Add(code);
            SurveyCode(layer, code, mvarBands[static_cast<std::size_t>(depth)]);
            if (codes.IsTaken(offset, codeTraits.foldedHash)) layer.sameCodes.Add(code);
            if (values.IsTaken(offset, valueTraits.foldedHash)) layer.sameValues.Add(mvarNodes[offset]->Tag());
            const bool isLast = static_cast<std::size_t>(depth) + 1 == mvarBands.size();
            if (!isLast && !mvarHasChild[offset]) layer.childless.Add(code);
        }
        return std::move(mvarSurvey);
    }

  private:
    // A node mostly stands where it was last found. Where one does not, every node notes where it stands, so that no
    // parent takes a search.
    void FindParents() {
        if (AllParentsStand()) return;
        for (std::size_t offset = 0; offset < mvarNodes.size(); ++offset)
            mvarNodes[offset]->SetLastPosition(static_cast<std::int32_t>(offset) + 1);
        static_cast<void>(AllParentsStand());
    }

    bool AllParentsStand() {
        bool all = true;
        for (std::size_t offset = 0; offset < mvarNodes.size(); ++offset) {
            const cNode* parent = mvarNodes[offset]->Parent().Get();
            if (parent == nullptr) continue;
            const auto place = parent->LastPosition() - 1;
            const bool stands = place >= 0 && static_cast<std::size_t>(place) < mvarNodes.size() &&
                                mvarNodes[static_cast<std::size_t>(place)] == parent;
            mvarParents[offset] = stands ? place : ParentHasLeft;
            if (stands) mvarHasChild[static_cast<std::size_t>(place)] = true;
            all = all && stands;
        }
        return all;
    }

    // How many parents stand above; each node of a chain is looked at once.
    std::int32_t DepthOf(std::size_t offset) {
        if (mvarParents[offset] == NoParent) return mvarDepths[offset] = 0;
        mvarChain.clear();
        std::int32_t depth = NoParent;
        for (auto place = static_cast<std::int32_t>(offset); place >= 0;) {
            const auto known = mvarDepths[static_cast<std::size_t>(place)];
            depth = known;
            if (known != Unknown) break;
            mvarChain.push_back(static_cast<std::size_t>(place));
            place = mvarParents[static_cast<std::size_t>(place)];
            depth = place == ParentHasLeft ? OutsideTheTree : Unknown;
        }
        std::for_each(mvarChain.rbegin(), mvarChain.rend(), [&](std::size_t node) {
            mvarDepths[node] = depth = depth == OutsideTheTree ? OutsideTheTree : depth + 1;
        });
        return mvarDepths[offset];
    }

    static void SurveyCode(LayerSurvey& layer, const String& code, const Band* band) {
        if (band == nullptr) return;
        const auto length = static_cast<std::size_t>(band->Length());
        if (band->Formate().empty()) {
            if (code.size() != length) layer.wrongLength.Add(code);
            return;
        }
        const String text = TheText().Format(code, band->Formate());
        if (text.size() != length)
            layer.wrongLength.Add(code);
        else if (!TheText().SameText(text, code) || TheText().Format(text, band->Formate()) != text)
            layer.reformatted.Add(code);
    }

    std::vector<Ref<cNode>> mvarNodes;
    const std::vector<const Band*>& mvarBands;
    std::vector<std::int32_t> mvarParents;
    std::vector<std::int32_t> mvarDepths;
    std::vector<bool> mvarHasChild;
    std::vector<std::size_t> mvarChain;
    TreeSurvey mvarSurvey;
};

} // namespace

TreeSurvey SurveyTree(const cNodes& tree, const std::vector<const Band*>& bands) {
    return Surveyor(tree, bands).Survey();
}

} // namespace kestrel
