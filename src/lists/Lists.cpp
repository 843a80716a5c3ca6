#include "lists/Lists.h"

#include <array>

#include "common/CaseFolding.h"

namespace kestrel {

namespace {

constexpr wchar_t RecordSeparator = L';';
constexpr wchar_t FieldSeparator = L',';

// Name, ForeignName, Value, Description; what the record does not have is empty.
std::array<String, 4> RecordFields(StringView record) {
    std::array<String, 4> fields;
    Splitter splitter(record, FieldSeparator);
    for (auto& field : fields) {
        const auto piece = splitter.Next();
        if (!piece) break;
        field = *piece;
    }
    return fields;
}

void AppendRecord(String& text, const List& item) {
    const bool sameName = SameFolded(item.ForeignName(), item.Name());
    text += item.Name();
    text += FieldSeparator;
    if (!sameName) text += item.ForeignName();
    text += FieldSeparator;
    text += item.Value();
    const String description = item.Description() ? item.Description()->Text() : String();
    if (!description.empty()) text += FieldSeparator + description;
}

} // namespace

Ref<List> Lists::Add(const String& name, const String& foreignName, const String& value, const String& description) {
    if (mvarStyle == lsMulriple) throw Error(Message::NotSupported);
    if (name.empty()) throw Error(Message::InvalidParameter);
    auto item = Make<List>();
    item->SetName(name);
    if (!foreignName.empty()) item->SetForeignName(foreignName);
    item->SetValue(value);
    item->SetDescription(Make<TextValue>(description));
    item->SetListStyle(mvarStyle);
    InsertItem(item);
    return item;
}

void Lists::InsertItem(const Ref<List>& item, const IndexKey& before, const IndexKey& after) {
    const Ref<Lists> alive(this);
    if (!item) throw Error(Message::InvalidParameter);
    String name = item->Name();
    bool cancel = false;
    String description;
    std::int32_t index = InsertPosition(before, after);
    BeforeAdd.Raise(name, cancel, description, index);
    if (cancel) throw Error(Message::AddFailed, description);
    Place(item, InsertPosition(before, after));
    CollectionChanged.Raise();
}

std::int32_t Lists::InsertPosition(const IndexKey& before, const IndexKey& after) const {
    if (!before.IsMissing()) return mvarItems.PositionOf(before);
    if (!after.IsMissing()) return mvarItems.PositionOf(after) + 1;
    return Count() + 1;
}

void Lists::Place(const Ref<List>& item, std::int32_t position) {
    if (item->Name().empty())
        mvarItems.InsertWithoutKey(item, position);
    else
        mvarItems.Insert(item, item->Name(), position);
}

void Lists::Remove(const IndexKey& indexKey) {
    const Ref<Lists> alive(this);
    const Ref<List> item = Item(indexKey);
    String name = item->Name();
    bool cancel = false;
    String description;
    BeforeRemove.Raise(name, cancel, description);
    if (cancel) throw Error(Message::DropFailed, description);
    const auto position = mvarItems.Find(item);
    if (position == 0) return; // a handler has removed it already
    mvarItems.Remove(position);
    CollectionChanged.Raise();
}

void Lists::MoveItem(const IndexKey& indexKey, const IndexKey& before, const IndexKey& after) {
    const Ref<Lists> alive(this);
    if (!mvarItems.Knows(indexKey)) throw Error(Message::InvalidParameter);
    const auto from = mvarItems.PositionOf(indexKey);
    const auto to = mvarItems.MovedPosition(from, before, after);
    Place(mvarItems.Remove(from), to);
    CollectionChanged.Raise();
}

Ref<List> Lists::Find(const String& name) const {
    const auto* item = mvarItems.FindByKey(name);
    return item != nullptr ? *item : nullptr;
}

std::int32_t Lists::FindItemPosition(const String& name) const {
    for (std::int32_t position = 1; position <= Count(); ++position)
        if (mvarItems[position]->Name() == name) return position;
    return 0;
}

void Lists::ClearItems() {
    const Ref<Lists> alive(this);
    for (auto position = Count(); position >= 1; --position)
        if (position <= Count()) Remove(position);
}

void Lists::Empty() {
    const Ref<Lists> alive(this);
    if (Count() == 0) return;
    mvarItems.Clear();
    CollectionChanged.Raise();
}

void Lists::Assign(const std::vector<Ref<List>>& items) {
    mvarItems.Clear();
    for (const auto& item : items)
        AppendQuietly(item);
}

void Lists::AppendQuietly(const Ref<List>& item) {
    if (mvarItems.HasKey(item->Name()))
        mvarItems.AppendWithoutKey(item);
    else
        Place(item, Count() + 1);
}

bool Lists::Holds(const Ref<List>& item) const {
    const auto* named = mvarItems.FindByKey(item->Name());
    return (named != nullptr && *named == item) || mvarItems.Find(item) != 0;
}

String Lists::ListsText() const {
    String text;
    for (std::int32_t position = 1; position <= Count(); ++position) {
        if (position > 1) text += RecordSeparator;
        AppendRecord(text, *mvarItems[position]);
    }
    return text;
}

void Lists::SetListsText(const String& text) {
    const Ref<Lists> alive(this);
    if (text.empty()) return;
    mvarItems.Clear();
    Splitter records(text, RecordSeparator);
    while (const auto record = records.Next()) {
        const auto fields = RecordFields(*record);
        Add(fields[0], fields[1], fields[2], fields[3]);
    }
}

} // namespace kestrel
