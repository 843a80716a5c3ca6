#include "lists/List.h"

#include "common/Error.h"

namespace kestrel {

namespace {

String TrimmedName(const String& text) {
    String name = Trim(text);
    if (name.empty()) throw Error(Message::InvalidParameter);
    return name;
}

} // namespace

void List::SetName(const String& name) {
    if (!mvarName.empty()) throw Error(Message::CantBeChanged);
    mvarName = TrimmedName(name);
    if (mvarForeignName.empty()) mvarForeignName = mvarName;
}

void List::SetForeignName(const String& foreignName) { mvarForeignName = TrimmedName(foreignName); }

} // namespace kestrel
