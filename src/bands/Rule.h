// What a band needs of the code rule that it belongs to.
#pragma once

#include <vector>

#include "lists/Lists.h"
#include "relations/cNodes.h"

namespace kestrel {

class Band;

class Rule : public Exposed {
  public:
    [[nodiscard]] virtual Lists& UsrFields() const noexcept = 0;
    [[nodiscard]] virtual Lists& UsrMacros() const noexcept = 0;
    // The names of the bands that convert in layers, in the order of the layers.
    [[nodiscard]] virtual Lists& LayeredBands() const noexcept = 0;
    // The tree shared by all layer-style bands; made on first use.
    [[nodiscard]] virtual cNodes& Relations() = 0;
    // The bands in order, as they are now.
    [[nodiscard]] virtual std::vector<Ref<Band>> Bands() const = 0;
    // The band of that name without regard to case; nothing when there is none.
    [[nodiscard]] virtual Ref<Band> FindBand(const String& name) const = 0;
    // Follows a change of the band's DataField, whether it is in the rule or not.
    virtual void FollowDataField(const Band& band) = 0;
};

} // namespace kestrel
