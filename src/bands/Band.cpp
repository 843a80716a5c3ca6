#include "bands/Band.h"

#include <utility>

#include "common/CaseFolding.h"
#include "common/Error.h"
#include "common/Numbers.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

// Whether the whole text sorts between the two, both included.
bool SortsBetween(const String& text, StringView first, StringView last) { return text >= first && text <= last; }

bool IsUpperLetters(const String& text) { return SortsBetween(text, L"A", L"Z"); }

String LettersRaised(const String& text) { return SortsBetween(text, L"a", L"z") ? TheText().Upper(text) : text; }

bool IsNumeric(const String& text) { return NumericValue(text).has_value(); }

String CanonicalNumber(const String& text) {
    const auto number = NumericValue(text);
    if (!number) throw Error(Message::InvalidParameter);
    return CanonicalText(*number);
}

std::int32_t LengthOf(const String& text) { return static_cast<std::int32_t>(text.size()); }

Error WithCaption(Message caption) { return Error::WithDetail(Message::InvalidParameter, TheStrings().Text(caption)); }

} // namespace

void Band::RequireStyle() const {
    if (mvarStyle == bsUndefined) throw Error(Message::StyleNotDefined);
}

void Band::SetStyle(int style) {
    if (mvarStyle != bsUndefined) throw Error(Message::CantBeChanged);
    if (style < bsFixed || style >= bsUbound) throw Error(Message::InvalidCall);
    mvarStyle = static_cast<BandStyles>(style);
    if (IsIncreased()) SetIncrMode(imIncrAuto);
}

void Band::SetFormate(const String& formate) {
    RequireStyle();
    if (mvarStyle == bsFixed || mvarStyle == bsIncreaseAlpha) throw Error(Message::ReadOnly);
    mvarFormate = formate;
}

void Band::SetLength(std::int32_t length) {
    RequireStyle();
    if (mvarStyle == bsFixed || mvarStyle == bsIncreaseAlpha) throw Error(Message::ReadOnly);
    if (length <= 0) throw WithCaption(Message::CaptionLength);
    mvarLength = length;
}

void Band::SetName(const String& name) {
    if (!mvarName.empty()) throw Error(Message::ReadOnly);
    String trimmed = Trim(name);
    if (trimmed.empty()) throw Error(Message::InvalidParameter);
    mvarName = std::move(trimmed);
}

void Band::SetDefault(const String& value) {
    RequireStyle();
    if (IsBound()) throw Error(Message::ReadOnly);
    if (mvarStyle == bsIncreaseAlpha) {
        mvarDefault = CheckedLetters(mvarDefault, value);
    } else if (value != mvarDefault) {
        if (mvarStyle == bsFixed) mvarLength = LengthOf(value);
        mvarDefault = mvarStyle == bsFixed ? value : CanonicalNumber(value);
    }
}

String Band::CheckedLetters(const String& stored, const String& value) const {
    String letters = LettersRaised(value);
    if (letters != stored && !(IsUpperLetters(letters) && LengthOf(letters) == mvarLength))
        throw Error(Message::InvalidParameter);
    return letters;
}

void Band::SetInitStart(const String& value) {
    RequireStyle();
    if (!IsIncreased()) throw Error(Message::ReadOnly);
    if (mvarStyle == bsIncreaseAlpha)
        mvarInitStart = CheckedLetters(mvarInitStart, value);
    else if (value != mvarInitStart)
        mvarInitStart = CanonicalNumber(value);
}

void Band::CheckRangeValue(String& target, const String& newValue, bool allowEmpty) {
    RequireStyle();
    if (!IsIncreased() || mvarIncrMode == imNever) throw Error(Message::ReadOnly);
    if (mvarStyle == bsIncreaseAlpha) {
        target = CheckedLetters(target, newValue);
        return;
    }
    const bool accepted = newValue == target || (newValue.empty() && allowEmpty) || IsNumeric(newValue);
    if (!accepted) throw Error(Message::InvalidParameter);
    target = newValue; // as given, unlike InitStart: people read the upper bound as they typed it
}

void Band::SetIncrMode(int mode) {
    RequireStyle();
    if (!IsIncreased()) throw Error(Message::ReadOnly);
    if (mode != imIncrAuto && mode != imTrigered) throw Error(Message::InvalidCall);
    if (mode == mvarIncrMode) return;
    mvarIncrMode = static_cast<IncrModes>(mode);
    RepairRange();
    mvarTrigerBand = {};
}

void Band::RepairRange() {
    if (mvarStyle == bsIncreaseAlpha) {
        if (!IsUpperLetters(mvarInitStart)) mvarInitStart = L"A";
        if (!IsUpperLetters(mvarInitEnd)) mvarInitEnd = L"Z";
    } else {
        if (!IsNumeric(mvarInitStart)) mvarInitStart = L"1";
        if (!IsNumeric(mvarInitEnd)) mvarInitEnd.clear();
    }
}

void Band::SetSwapMode(int mode) {
    RequireStyle();
    if (!IsBound()) throw Error(Message::ReadOnly);
    if (mode < smNoneSwap || mode >= smUbound) throw Error(Message::InvalidCall);
    if (mode == mvarSwapMode) return;
    const auto before = mvarSwapMode;
    // The rule's tree, the only one that is not simplified, must not become the band's own.
    if (mvarRelations && mvarRelations->Style() != tsSimplified) mvarRelations = nullptr;
    mvarSwapMode = static_cast<SwapModes>(mode);
    EnterOrLeaveLayers(before);
}

void Band::EnterOrLeaveLayers(SwapModes before) {
    const auto rule = ParentRule();
    if (!rule) return;
    if (mvarSwapMode == smLayersSwap)
        rule->LayeredBands().Add(mvarName);
    else if (before == smLayersSwap)
        rule->LayeredBands().Remove(mvarName);
}

const String& Band::Value() const noexcept { return mvarStyle == bsFixed ? mvarDefault : mvarValue; }

void Band::SetValue(String value) {
    RequireStyle();
    if (mvarStyle == bsFixed) throw Error(Message::ReadOnly);
    mvarValue = mvarStyle == bsIncreaseAlpha ? CheckedLetterValue(value) : CheckedTextValue(std::move(value));
}

String Band::CheckedTextValue(String value) const {
    if (mvarStyle == bsIncreaseNumber && !IsNumeric(value)) throw Error(Message::InvalidParameter);
    if (!mvarFormate.empty()) value = TheText().Format(value, mvarFormate);
    if (LengthOf(value) != mvarLength) throw Error::WithDetail(Message::IncorrectValueLength, mvarName);
    return value;
}

String Band::CheckedLetterValue(const String& value) const {
    String letters = LettersRaised(value);
    const bool belowRange = !mvarInitStart.empty() && letters < mvarInitStart;
    const bool aboveRange = (!mvarInitEnd.empty() && letters > mvarInitEnd) || letters > L"Z";
    if (LengthOf(letters) != mvarLength || belowRange || aboveRange) throw Error(Message::InvalidParameter);
    return letters;
}

void Band::SetTrigerBand(const Ref<Band>& band) {
    const auto rule = ParentRule();
    if (!rule) throw Error(Message::InvalidParameter);
    if (!band || band->Name().empty()) {
        mvarTrigerBand = {};
        return;
    }
    if (band->Name() == mvarName) throw Error(Message::TriggersItself);
    const auto trigger = rule->FindBand(band->Name());
    if (!trigger || trigger->Name() != band->Name()) throw WithCaption(Message::CaptionTriggerBand);
    mvarTrigerBand = WeakRef<Band>(trigger);
}

Ref<List> Band::DataField() {
    if (!IsBound()) return nullptr;
    if (!mvarDataField) mvarDataField = Make<List>();
    return mvarDataField;
}

void Band::SetDataField(const Ref<List>& field) {
    const auto fields = DataFields();
    if (!fields) throw Error(Message::ReadOnly);
    if (!field || !fields->Holds(field)) throw WithCaption(Message::CaptionFieldOrMacro);
    mvarDataField = field;
    if (const auto rule = ParentRule()) rule->FollowDataField(*this);
}

Ref<Lists> Band::DataFields() const {
    const auto rule = ParentRule();
    if (!rule || !IsBound()) return nullptr;
    return Ref<Lists>(mvarStyle == bsUsrMacro ? &rule->UsrMacros() : &rule->UsrFields());
}

Ref<Names> Band::TrackBands() {
    if (!IsIncreased()) return nullptr;
    if (!mvarTrackBands) {
        mvarTrackBands = Make<Names>();
        const WeakRef<Band> self(this); // a host may keep the names longer than the band
        mvarTrackBandsBeforeAdd =
            mvarTrackBands->BeforeAdd.Subscribe([self](const String& name, bool& cancel, String& description) {
                if (const auto band = self.Lock()) band->mvarTrackBands_BeforeAdd(name, cancel, description);
            });
    }
    return mvarTrackBands;
}

void Band::mvarTrackBands_BeforeAdd(const String& name, bool& cancel, String& description) const {
    const auto refuse = [&](Message reason) {
        cancel = true;
        description = TheStrings().Text(reason);
    };
    if (SameFolded(name, mvarName)) return refuse(Message::TracksItself);
    const auto rule = ParentRule();
    if (!rule || !rule->FindBand(name)) refuse(Message::InvalidParameter);
}

Ref<cNodes> Band::Relations() {
    if (mvarSwapMode == smLayersSwap) {
        const auto rule = ParentRule();
        mvarRelations = rule ? Ref<cNodes>(&rule->Relations()) : nullptr;
    } else if (!IsBound() || mvarSwapMode != smSimpleSwap) {
        mvarRelations = nullptr;
    } else if (!mvarRelations) {
        mvarRelations = Make<cNodes>();
        mvarRelations->SetStyle(tsSimplified);
    }
    return mvarRelations;
}

std::int32_t Band::Index() const {
    const auto rule = ParentRule();
    if (!rule) return -1;
    const auto bands = rule->Bands();
    for (std::size_t i = 0; i < bands.size(); ++i)
        if (bands[i] == this) return static_cast<std::int32_t>(i) + 1;
    return -1;
}

} // namespace kestrel
