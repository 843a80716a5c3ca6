#include "engine/BoundItem.h"

#include "common/Error.h"

namespace kestrel {

Ref<List> BoundItem(Band& band) {
    const auto field = band.DataField();
    const auto fields = band.DataFields();
    if (!field || !fields) throw Error(Message::ObjectNotSet);
    auto item = fields->Find(field->Name());
    if (!item) throw Error(Message::InvalidCall);
    return item;
}

} // namespace kestrel
