#include "lists/Names.h"

namespace kestrel {

String Names::Add(const String& value) {
    const Ref<Names> alive(this);
    bool cancel = false;
    String description;
    BeforeAdd.Raise(value, cancel, description);
    if (cancel) throw Error(Message::AddFailed, description);
    mvarItems.Append(value, value);
    return value;
}

void Names::ImportNames(const String& definitions) {
    mvarItems.Clear();
    if (definitions.empty()) return;
    Splitter pieces(definitions, L';');
    while (const auto piece = pieces.Next())
        mvarItems.AppendWithoutKey(String(*piece));
}

} // namespace kestrel
