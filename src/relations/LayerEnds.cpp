#include "relations/LayerEnds.h"

#include "common/Enumerations.h"

namespace kestrel {

LayerEnds::LayerEnds(const std::vector<const cNode*>& nodes) {
    for (const cNode* node : nodes) {
        Ends& ends = mvarLayers[node->Parent().Get()];
        if (ends.first == nullptr) ends.first = node;
        ends.last = node;
    }
}

const cNode* LayerEnds::First(const cNode* parent) const {
    const auto layer = mvarLayers.find(parent);
    return layer != mvarLayers.end() ? layer->second.first : nullptr;
}

const cNode* LayerEnds::Last(const cNode* parent) const {
    const auto layer = mvarLayers.find(parent);
    return layer != mvarLayers.end() ? layer->second.last : nullptr;
}

void LayerEnds::Add(const cNode& node, const cNode* parent, int relationship, const cNode* anchor) {
    Ends& ends = mvarLayers[parent];
    const bool isBefore = relationship == tvwFirst || (relationship == tvwPrevious && ends.first == anchor);
    const bool isBehind =
        relationship == tvwLast || relationship == tvwChild || (relationship == tvwNext && ends.last == anchor);
    if (isBefore || ends.first == nullptr) ends.first = &node;
    if (isBehind || ends.last == nullptr) ends.last = &node;
}

} // namespace kestrel
