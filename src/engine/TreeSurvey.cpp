#include "engine/TreeSurvey.h"

#include <algorithm>

#include "common/Ports.h"
#include "engine/FormatTrials.h"
#include "engine/RepeatedTexts.h"
#include "engine/TextTraits.h"

namespace kestrel {

namespace {

// Offsets into the list of nodes; of a node of the first layer there is no parent.
constexpr std::int32_t NoParent = -1;
constexpr std::int32_t ParentHasLeft = -2;
constexpr std::int32_t Unknown = -1;
constexpr std::int32_t OutsideTheTree = -2;

class Surveyor {
  public:
    Surveyor(const cNodes& tree, const std::vector<const Band*>& bands)
        : mvarNodes(tree.View()), mvarBands(bands), mvarParents(mvarNodes.size(), NoParent),
          mvarDepths(mvarNodes.size(), Unknown), mvarHasChild(mvarNodes.size()), mvarCodes(mvarNodes, &cNode::Text),
          mvarValues(mvarNodes, &cNode::Tag) {
        mvarSurvey.layers.resize(bands.size());
    }

    TreeSurvey Survey() {
        FindParents();
        for (std::size_t offset = 0; offset < mvarNodes.size(); ++offset)
            SurveyNode(offset);
        for (const auto offset : mvarCodes.Found())
            LayerOf(offset).sameCodes.Add(mvarNodes[offset]->Text());
        for (const auto offset : mvarValues.Found())
            LayerOf(offset).sameValues.Add(mvarNodes[offset]->Tag());
        return std::move(mvarSurvey);
    }

  private:
    LayerSurvey& LayerOf(std::size_t offset) { return mvarSurvey.layers[static_cast<std::size_t>(mvarDepths[offset])]; }

    void SurveyNode(std::size_t offset) {
        const auto depth = DepthOf(offset);
        const String& code = mvarNodes[offset]->Text();
        const auto parent = mvarParents[offset];
        const bool comesAfterItsParent =
            parent == NoParent || (parent >= 0 && static_cast<std::size_t>(parent) < offset);
        if (!comesAfterItsParent || mvarSurvey.lost.count > 0) mvarSurvey.lost.Add(code);
        if (depth < 0) return;
        if (static_cast<std::size_t>(depth) >= mvarBands.size()) return SurveyBelow(offset);
        SurveyTexts(offset);
        SurveyCode(LayerOf(offset), code, mvarBands[static_cast<std::size_t>(depth)]);
        const bool isLast = static_cast<std::size_t>(depth) + 1 == mvarBands.size();
        if (!isLast && !mvarHasChild[offset]) LayerOf(offset).childless.Add(code);
    }

    void SurveyBelow(std::size_t offset) {
        const String& code = mvarNodes[offset]->Text();
        mvarSurvey.below.Add(code);
        if (TraitsOf(code).hasSeparators || TraitsOf(mvarNodes[offset]->Tag()).hasSeparators)
            mvarSurvey.belowNotSaved.Add(code);
    }

    void SurveyTexts(std::size_t offset) {
        const String& code = mvarNodes[offset]->Text();
        const auto codeTraits = TraitsOf(code);
        const auto valueTraits = TraitsOf(mvarNodes[offset]->Tag());
        auto& layer = LayerOf(offset);
        ++layer.count;
        if (codeTraits.hasSmallLetters) layer.smallLetters.Add(code);
        if (codeTraits.hasSeparators || valueTraits.hasSeparators) layer.notSaved.Add(code);
        mvarCodes.Note(offset, codeTraits);
        mvarValues.Note(offset, valueTraits);
    }

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

    std::vector<const cNode*> mvarNodes;
    const std::vector<const Band*>& mvarBands;
    std::vector<std::int32_t> mvarParents;
    std::vector<std::int32_t> mvarDepths;
    std::vector<bool> mvarHasChild;
    std::vector<std::size_t> mvarChain;
    RepeatedTexts mvarCodes;
    RepeatedTexts mvarValues;
    TreeSurvey mvarSurvey;
};

} // namespace

TreeSurvey SurveyTree(const cNodes& tree, const std::vector<const Band*>& bands) {
    return Surveyor(tree, bands).Survey();
}

} // namespace kestrel
