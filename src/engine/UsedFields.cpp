#include "engine/UsedFields.h"

namespace kestrel {

void UsedFields::Rebuild(const std::vector<Ref<Band>>& bands) {
    mvarItems->Assign({});
    mvarKnown.clear();
    for (const auto& band : bands)
        Append(*band);
}

void UsedFields::Append(const Band& band) {
    const auto& field = band.BoundField();
    if (field && !field->Name().empty() && mvarKnown.insert(field.Get()).second) mvarItems->AppendQuietly(field);
}

} // namespace kestrel
