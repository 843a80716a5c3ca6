#include "engine/CodeClass.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/CaseFolding.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

template <class Enumeration>
Enumeration InRange(int value, int first, int last) {
    if (value < first || value > last) throw Error(Message::InvalidParameter);
    return static_cast<Enumeration>(value);
}

// Values copied from another band are not set again where the new band holds them already: its style may not allow it.
void Give(Band& band, const NewBand& definition) {
    if (definition.swapMode && *definition.swapMode != band.SwapMode()) band.SetSwapMode(*definition.swapMode);
    if (definition.defaultValue && *definition.defaultValue != band.Default())
        band.SetDefault(*definition.defaultValue);
    if (definition.length && *definition.length != band.Length()) band.SetLength(*definition.length);
    if (definition.formate && *definition.formate != band.Formate()) band.SetFormate(*definition.formate);
}

bool HasSource(const Band& band, const NewBand& definition) {
    return band.IsBound() ? static_cast<bool>(definition.dataField)
                          : !definition.defaultValue.value_or(String()).empty();
}

} // namespace

CodeClass::CodeClass() {
    mvarUsrFields->SetListStyle(lsFields);
    mvarUsrMacros->SetListStyle(lsMacros);
    mvarLayeredBands->SetListStyle(lsLayers);
    SubscribeToLists();
}

Ref<Band> CodeClass::Add(const NewBand& definition) {
    const Ref<CodeClass> alive(this);
    if (!definition.before.IsMissing() && !definition.after.IsMissing()) throw Error(Message::InvalidParameter);
    auto band = Make<kestrel::Band>();
    band->SetName(definition.name);
    band->SetStyle(definition.style);
    if (!HasSource(*band, definition)) throw Error(Message::InvalidParameter);
    Give(*band, definition);
    AppendBand(band, definition.before, definition.after, definition.dataField);
    return band;
}

void CodeClass::AppendBand(const Ref<kestrel::Band>& band, const IndexKey& before, const IndexKey& after,
                           const Ref<List>& dataField) {
    const Ref<CodeClass> alive(this);
    if (!band || band->Name().empty()) throw Error(Message::InvalidParameter);
    TieAndInsert(band, before, after, dataField);
    FollowInsertion(*band);
    BandsChanged.Raise();
    EnterLayers(*band);
}

void CodeClass::TieAndInsert(const Ref<kestrel::Band>& band, const IndexKey& before, const IndexKey& after,
                             const Ref<List>& dataField) {
    band->SetParentRule(this);
    try {
        if (dataField) band->SetDataField(dataField);
        if (mvarBands.HasKey(band->Name())) throw Error(Message::BandNameExists);
        mvarBands.Insert(band, band->Name(), AppendPosition(before, after));
    } catch (...) {
        band->SetParentRule(nullptr); // a band that did not come in is no band of this rule
        throw;
    }
}

std::int32_t CodeClass::AppendPosition(const IndexKey& before, const IndexKey& after) const {
    const auto& place = before.IsMissing() ? after : before;
    if (place.IsMissing()) return Count() + 1;
    if (place.IsUnusable()) throw Error(place.Refusal());
    if (!mvarBands.Knows(place)) throw Error::WithDetail(Message::IncorrectReferBand, place.Text());
    return mvarBands.PositionOf(place) + (before.IsMissing() ? 1 : 0);
}

void CodeClass::EnterLayers(const kestrel::Band& band) {
    if (band.SwapMode() != smLayersSwap || mvarLayeredBands->HasKey(band.Name())) return;
    try {
        mvarLayeredBands->Add(band.Name());
    } catch (const Error&) {
        // The band is in the rule by now; a layer refused, by the host or because a handler removed the band meanwhile,
        // does not take it out again.
    }
}

Ref<Band> CodeClass::FindBand(const String& name) const {
    const auto* band = mvarBands.FindByKey(name);
    return band != nullptr ? *band : nullptr;
}

void CodeClass::Remove(const IndexKey& indexKey) {
    const Ref<CodeClass> alive(this);
    const auto band = Band(indexKey);
    String name = band->Name();
    bool cancel = false;
    String description;
    BeforeDropBand.Raise(name, cancel, description);
    if (cancel || !Holds(*band)) return;
    RefuseTrigger(*band);
    AskAboutTrackers(*band);
    if (!Holds(*band)) return; // the host's code may run while the question is open
    RemoveFromTrackers(band->Name());
    TakeOut(band);
    BandsChanged.Raise();
}

// Its layer can be kept by the host; then the band comes back, unless another has taken its name meanwhile.
void CodeClass::TakeOut(const Ref<kestrel::Band>& band) {
    const auto position = mvarBands.PositionOf(band->Name());
    mvarBands.Remove(position);
    RefreshUsedFields();
    try {
        RemoveFromLayers(band->Name());
    } catch (...) {
        if (!mvarBands.HasKey(band->Name())) {
            mvarBands.Insert(band, band->Name(), std::min(position, Count() + 1));
            RefreshUsedFields();
        }
        throw;
    }
}

void CodeClass::RefuseTrigger(const kestrel::Band& band) const {
    std::vector<String> triggered;
    for (const auto& other : Bands())
        if (other->TrigerBand() == &band) triggered.push_back(other->Name());
    if (!triggered.empty()) throw Error::WithDetail(Message::UsedAsTrigger, Join(triggered, L" "));
}

void CodeClass::AskAboutTrackers(const kestrel::Band& band) const {
    const auto tracks = [&band](const Ref<Names>& names) {
        for (std::int32_t position = 1; names && position <= names->Count(); ++position)
            if (SameFolded(names->Item(position), band.Name())) return true;
        return false;
    };
    std::vector<String> trackers;
    for (const auto& other : Bands())
        if (tracks(other->TrackBands())) trackers.push_back(other->Name());
    if (trackers.empty()) return;
    const String question = TheStrings().Text(Message::AskTrackedBand) + String(TwoLineBreaks) + Join(trackers, L" ");
    if (!ThePrompts().Ask(question)) throw Error(Message::TrackedByOthers);
}

void CodeClass::RemoveFromTrackers(const String& name) const {
    for (const auto& band : Bands()) {
        const auto names = band->TrackBands();
        for (auto position = names ? names->Count() : 0; position >= 1; --position)
            if (SameFolded(names->Item(position), name)) names->Remove(position);
    }
}

void CodeClass::RemoveFromLayers(const String& name) {
    for (auto position = mvarLayeredBands->Count(); position >= 1; --position)
        if (position <= mvarLayeredBands->Count() && SameFolded(mvarLayeredBands->Item(position)->Name(), name))
            mvarLayeredBands->Remove(position);
}

void CodeClass::Drag(const IndexKey& indexKey, const IndexKey& before, const IndexKey& after) {
    if (Count() < 2) return;
    const auto band = Band(indexKey);
    const auto from = mvarBands.PositionOf(indexKey);
    const auto to = mvarBands.MovedPosition(from, before, after);
    mvarBands.Remove(from);
    RefreshUsedFields();
    if (to > Count())
        AppendBand(band);
    else
        AppendBand(band, to);
}

void CodeClass::Cls() {
    const Ref<CodeClass> alive(this);
    mvarBands.Clear();
    RefreshUsedFields();
    if (mvarRelations) mvarRelations->Cls();
    mvarLayeredBands->Empty();
    BandsChanged.Raise();
}

std::int32_t CodeClass::Length() const {
    if (mvarStyle == csSimple) return 0;
    std::int64_t length = 0;
    for (std::int32_t position = 1; position <= Count(); ++position)
        length += mvarBands[position]->Length();
    if (length > std::numeric_limits<std::int32_t>::max()) throw Error(Message::Overflow);
    return static_cast<std::int32_t>(length);
}

cNodes& CodeClass::Relations() {
    if (!mvarRelations) {
        mvarRelations = Make<cNodes>();
        mvarRelations->SetStyle(tsNormal);
        mvarRelationsChanged = mvarRelations->NodesChanged.Subscribe([this](const String&, const String&) {
            const Ref<CodeClass> alive(this);
            RelationsChanged.Raise();
        });
    }
    return *mvarRelations;
}

void CodeClass::FollowDataField(const kestrel::Band& band) {
    if (Holds(band)) RefreshUsedFields();
}

void CodeClass::FollowInsertion(const kestrel::Band& band) {
    if (mvarUsedFields.IsWhole() && mvarBands[Count()] == &band)
        mvarUsedFields.Append(band);
    else
        RefreshUsedFields();
}

void CodeClass::SetStyle(int style) { mvarStyle = InRange<CodeStyles>(style, csNormal, csSimple); }

void CodeClass::SetApplyMode(int mode) { mvarApplyMode = InRange<ApplyModes>(mode, amOverAgain, amSuccessive); }

void CodeClass::SetCodeUCased(bool upperCased) {
    const Ref<CodeClass> alive(this);
    for (std::int32_t position = 1; mvarRelations && position <= mvarRelations->Count(); ++position) {
        const auto node = mvarRelations->Node(position);
        node->SetText(TheText().Upper(node->Text()));
    }
    mvarCodeUCased = upperCased;
}

void CodeClass::SetSeparaOfYear(std::int32_t month) { mvarSeparaOfYear = InRange<std::int32_t>(month, 1, 12); }

void CodeClass::SetSeparaOfMonth(std::int32_t day) { mvarSeparaOfMonth = InRange<std::int32_t>(day, 1, 28); }

void CodeClass::SetSeparaOfWeek(int weekDay) { mvarSeparaOfWeek = InRange<WeekDays>(weekDay, 0, wdSaturday); }

void CodeClass::SetSeparaOfDay(Date time) {
    constexpr double minutesOfDay = 24.0 * 60;
    // The fraction of a day is the time whatever the sign of the day; whole seconds first, for a minute's fraction of a
    // day may lie just below it.
    const double seconds = std::round(std::abs(time - std::trunc(time)) * minutesOfDay * 60);
    mvarSeparaOfDay = std::isfinite(time) ? std::fmod(std::floor(seconds / 60), minutesOfDay) / minutesOfDay : 0;
}

} // namespace kestrel
