#include "engine/BoundItem.h"

#include "common/Error.h"

namespace kestrel {

Ref<List> BoundItem(Band& band) {
    const auto field = band.DataField();
    const auto fields = band.DataFields();
    if (!field || !fields) throw Error(Message::ObjectNotSet);
    return fields->Item(field->Name());
}

} // namespace kestrel
