// What one pass over a relation tree finds, layer by layer.
//
// Of each kind a layer counts the relations and keeps the first of them in the order of the list, so that a large tree
// with the same fault everywhere makes one finding.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "bands/Band.h"

namespace kestrel {

struct Tally {
    std::int32_t count = 0;
    String first;

    void Add(const String& text) {
        if (count++ == 0) first = text;
    }
};

struct LayerSurvey {
    std::int32_t count = 0; // of all relations of the layer
    Tally wrongLength;      // codes that, formatted as their band does, do not have its length
    Tally reformatted;      // codes that the band's format makes another text of
    Tally sameCodes;        // codes that an earlier sibling has, upper and lower case being the same
    Tally sameValues;       // values of that kind
    Tally smallLetters;     // codes
    Tally notSaved;         // codes and values that hold what separates them in the tree's text
    Tally childless;        // codes without one in the next layer, where there is one
};

struct TreeSurvey {
    std::vector<LayerSurvey> layers; // as many as bands were given
    Tally below;                     // codes of deeper layers
    Tally belowNotSaved;             // those of them that hold, or whose values hold, what separates them
    // Codes that reading the tree's text does not bring back: from the first on that stands before its parent, or whose
    // parent has left the tree.
    Tally lost;
};

// `bands` are those that the layers' codes become values of, in the order of the layers; null where there is none.
[[nodiscard]] TreeSurvey SurveyTree(const cNodes& tree, const std::vector<const Band*>& bands);

} // namespace kestrel
