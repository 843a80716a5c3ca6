// Which properties of a band can be edited. No table holds it: a property is editable when the band takes the value
// back that it holds.
#pragma once

#include "bands/Band.h"

namespace kestrel::dialogs {

// The properties as the panels number them.
enum PropertyId : int {
    idName = 0,
    idStyle = 1,
    idSwapMode = 2,
    idDefault = 3,
    idFormate = 4,
    idLength = 5,
    idBound = 6,
    idFieldButtons = 7,
    idIncrMode = 8,
    idInitStart = 9,
    idInitEnd = 10,
    idTrigerBand = 11,
    idRange = 12,
    idTracks = 13,
    idRelations = 14
};

// Whether the band accepts the property's own value; for the properties that are objects, whether it has one.
[[nodiscard]] bool IsEditable(Band& band, PropertyId property);

// Whether a triggering band means anything to the band: a number or letter that is raised when triggered, or one that a
// triggering band was given.
[[nodiscard]] bool TriggerApplies(const Band& band);

} // namespace kestrel::dialogs
