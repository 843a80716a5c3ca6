// How a rule meets its host outside code generation: it guards its three lists, passes their changes on, hands its
// definition over for saving, and opens its dialogs.

#include "common/CaseFolding.h"
#include "common/Ports.h"
#include "engine/CodeClass.h"
#include "engine/Dialogs.h"

namespace kestrel {

namespace {

// Refuses the removal of a field or macro that bands are bound to: the text for its name, then the bands' names.
void RefuseBound(const CodeClass& rule, const List& field, Message reason, bool& cancel, String& description) {
    std::vector<String> bound;
    for (const auto& band : rule.Bands())
        if (band->BoundField() == &field) bound.push_back(band->Name());
    if (bound.empty()) return;
    cancel = true;
    description =
        ReplaceStar(TheStrings().Text(reason), L"[" + field.Name() + L"]") + String(TwoLineBreaks) + Join(bound, L" ");
}

} // namespace

void CodeClass::SubscribeToLists() {
    const auto fieldsChanged = [this] {
        const Ref<CodeClass> alive(this);
        FieldsChanged.Raise();
    };
    mvarListSubscriptions.push_back(mvarUsrFields->BeforeRemove.Subscribe(
        [this](String& name, bool& cancel, String& text) { mvarUsrFields_BeforeRemove(name, cancel, text); }));
    mvarListSubscriptions.push_back(mvarUsrFields->CollectionChanged.Subscribe(fieldsChanged));
    mvarListSubscriptions.push_back(mvarUsrMacros->BeforeRemove.Subscribe(
        [this](String& name, bool& cancel, String& text) { mvarUsrMacros_BeforeRemove(name, cancel, text); }));
    mvarListSubscriptions.push_back(mvarUsrMacros->CollectionChanged.Subscribe(fieldsChanged));
    mvarListSubscriptions.push_back(
        mvarLayeredBands->BeforeAdd.Subscribe([this](String& name, bool& cancel, String& text, std::int32_t&) {
            mvarLayeredBands_BeforeAdd(name, cancel, text);
        }));
    mvarListSubscriptions.push_back(mvarLayeredBands->BeforeRemove.Subscribe(
        [this](String& name, bool& cancel, String& text) { mvarLayeredBands_BeforeRemove(name, cancel, text); }));
    mvarListSubscriptions.push_back(
        mvarLayeredBands->CollectionChanged.Subscribe([this] { mvarLayeredBands_CollectionChanged(); }));
}

void CodeClass::mvarUsrFields_BeforeRemove(const String& name, bool& cancel, String& description) const {
    RefuseBound(*this, *mvarUsrFields->Item(name), Message::FieldIsBound, cancel, description);
}

void CodeClass::mvarUsrMacros_BeforeRemove(const String& name, bool& cancel, String& description) const {
    RefuseBound(*this, *mvarUsrMacros->Item(name), Message::MacroIsBound, cancel, description);
}

void CodeClass::mvarLayeredBands_BeforeAdd(const String& name, bool& cancel, String& description) const {
    if (FindBand(name)) return;
    cancel = true;
    description = TheStrings().Text(Message::IncorrectLayer);
}

void CodeClass::mvarLayeredBands_BeforeRemove(const String& name, bool& cancel, String& description) const {
    const auto band = FindBand(name);
    if (!band || band->SwapMode() != smLayersSwap) return;
    cancel = true;
    description = TheStrings().Text(Message::LayerInUse);
}

void CodeClass::mvarLayeredBands_CollectionChanged() {
    const Ref<CodeClass> alive(this);
    LayeredBandsChanged.Raise();
    if (!mvarRelations || mvarRelations->Count() == 0) return;
    mvarRelations->Cls();
    if (!mvarLoading) ThePrompts().Inform(TheStrings().Text(Message::LayersAffected));
}

void CodeClass::Save([[maybe_unused]] int options) {
    const Ref<CodeClass> alive(this);
    String definition = Definition();
    String name = mvarName;
    String held;
    GetSettings.Raise(name, held);
    if (!held.empty() && SameFolded(held, definition)) return;
    if (!ThePrompts().Ask(TheStrings().Text(Message::AskSave))) return;
    bool achieved = false;
    SaveRequested.Raise(definition, achieved);
    if (!achieved) throw Error::Plain(Message::SaveFailure);
}

void CodeClass::ShowDesigner(const String& title, std::optional<bool> allowSetup) {
    const Ref<CodeClass> alive(this);
    mvarAllowSetup = allowSetup.value_or(mvarAllowSetup);
    TheDialogs().ShowDesigner(*this, title);
}

void CodeClass::ShowFieldManage(const String& title) {
    const Ref<CodeClass> alive(this);
    TheDialogs().ShowFieldManage(*this, title);
}

void CodeClass::ShowOptions(const String& title) {
    const Ref<CodeClass> alive(this);
    TheDialogs().ShowOptions(*this, title);
}

void CodeClass::ShowAddBand(const String& relativeName, int position) {
    const Ref<CodeClass> alive(this);
    TheDialogs().ShowAddBand(*this, relativeName, position);
}

void CodeClass::ShowAddRelation(std::int32_t bandIndex, const String& relativeKey, int relationship, bool modify) {
    const Ref<CodeClass> alive(this);
    TheDialogs().ShowAddRelation(*this, bandIndex, relativeKey, relationship, modify);
}

void CodeClass::RaiseAddField(const String& name) {
    const Ref<CodeClass> alive(this);
    String argument = name;
    AddField.Raise(argument);
}

void CodeClass::RaiseDropField(const String& name) {
    const Ref<CodeClass> alive(this);
    String argument = name;
    DropField.Raise(argument);
}

} // namespace kestrel
