// One segment of a code rule: its style, how long it is, where its value comes from and how it is converted, and the
// value itself. The code of the rule is the values of its bands, one after the other.
//
// Every setter checks against the band's style, and a refused value leaves the band as it was. Style comes first: until
// it is set, each setter that depends on it fails with 2002. Style and Name are set once. A change of IncrMode clears
// TrigerBand. A band does not keep its rule alive; when the rule has ended, it answers as a band without one.
// A band that left its rule still knows it; only Index tells.
// Texts are compared exactly where nothing else is said; "between A and Z" compares the whole text.
#pragma once

#include "bands/Rule.h"
#include "common/Enumerations.h"
#include "common/TextPort.h"
#include "lists/Names.h"

namespace kestrel {

class Band final : public Exposed {
  public:
    [[nodiscard]] BandStyles Style() const noexcept { return mvarStyle; }
    // A second set fails with 2001, a value outside 0 to 4 with 5. A number or letter band gets the mode imIncrAuto.
    void SetStyle(int style);

    [[nodiscard]] const String& Formate() const noexcept { return mvarFormate; }
    // Not for fixed and letter bands: 2004. Any text is accepted. A number band counts by the digits at the beginning
    // of its value: a format that puts text before them (such as \N000) makes every next number the first one.
    void SetFormate(const String& formate);

    // A fixed band's Default; otherwise what was last set, empty at first.
    [[nodiscard]] const String& Value() const noexcept;
    // A fixed band refuses with 2004. A macro, field or number band formats the value first where Formate is not empty;
    // a number band takes only what is numeric (2003); both take only Length characters (2036 with the band's name). A
    // letter band takes Length characters within its range (2003).
    void SetValue(String value);

    // Number of characters, 1 at first.
    [[nodiscard]] std::int32_t Length() const noexcept { return mvarLength; }
    // Not for fixed and letter bands: 2004. Not positive: 2003 with the caption "Length".
    void SetLength(std::int32_t length);

    // Empty until set.
    [[nodiscard]] const String& Name() const noexcept { return mvarName; }
    // Stores the text without blanks at its ends; empty fails with 2003, a second set with 2004.
    void SetName(const String& name);

    [[nodiscard]] const String& Default() const noexcept { return mvarDefault; }
    // Fixed: any text, whose length becomes Length. Number: numeric (else 2003), stored in canonical form. Letter:
    // between A and Z and Length long (else 2003), lower case is raised. Macro and field: 2004.
    void SetDefault(const String& value);

    [[nodiscard]] IncrModes IncrMode() const noexcept { return mvarIncrMode; }
    // Number and letter bands only (2004); imIncrAuto or imTrigered (else 5). A change brings the range into the
    // style's domain and clears TrigerBand; the same mode again does nothing.
    void SetIncrMode(int mode);

    // As the host records it; day 0 at first.
    [[nodiscard]] Date DateUpdated() const noexcept { return mvarDateUpdated; }
    void SetDateUpdated(Date date) noexcept { mvarDateUpdated = date; }

    [[nodiscard]] SwapModes SwapMode() const noexcept { return mvarSwapMode; }
    // Macro and field bands only (2004); 0 to 2 (else 5). To and from smLayersSwap the band's name enters and leaves
    // the rule's LayeredBands, whose errors pass through after the mode is stored.
    void SetSwapMode(int mode);

    [[nodiscard]] const String& InitStart() const noexcept { return mvarInitStart; }
    // As SetDefault for number and letter bands; any other style fails with 2004.
    void SetInitStart(const String& value);

    // Empty: no upper bound.
    [[nodiscard]] const String& InitEnd() const noexcept { return mvarInitEnd; }
    // Number bands take an empty or a numeric text (else 2003) and keep it as given; letter bands as SetInitStart. A
    // band that never increases, or of any other style, fails with 2004.
    void SetInitEnd(const String& value) { CheckRangeValue(mvarInitEnd, value, true); }

    // The names of the bands that this one tracks, made on first use; nothing unless a number or letter band. A name
    // that is the band's own or no band of the rule is refused with 2022, and so is any name without a rule.
    [[nodiscard]] Ref<Names> TrackBands();
    // The conversion tree: the rule's for layer-style, the band's own for simple conversion (made on first use),
    // nothing otherwise or for layer-style without a rule.
    [[nodiscard]] Ref<cNodes> Relations();
    // The list that DataField is chosen from: the rule's macros or fields; nothing for other styles or without a rule.
    [[nodiscard]] Ref<Lists> DataFields() const;

    // The band whose change triggers this one's increase, while it lives; nothing when there is none.
    [[nodiscard]] Ref<Band> TrigerBand() const noexcept { return mvarTrigerBand.Lock(); }
    // Nothing or a band without a name: none. Otherwise the rule's own band of that name is stored. This band's name
    // fails with 2038, a name that is no band of the rule with 2003 and the caption "Trigger Band", no rule with 2003.
    void SetTrigerBand(const Ref<Band>& band);

    // The field or macro the band is bound to: for macro and field bands an empty item, which is made on first use,
    // until one is set; nothing for other styles.
    [[nodiscard]] Ref<List> DataField();
    // Must be an item of DataFields, by identity (else 2003 with the caption "Field/Macro"); 2004 without DataFields.
    void SetDataField(const Ref<List>& field);

    // The band's position in its rule, 1-based; -1 without a rule or when the rule does not hold it.
    [[nodiscard]] std::int32_t Index() const;

    [[nodiscard]] bool AllowDroped() const noexcept { return mvarAllowDroped; }
    void SetAllowDroped(bool allow) noexcept { mvarAllowDroped = allow; }
    [[nodiscard]] bool AllowModified() const noexcept { return mvarAllowModified; }
    void SetAllowModified(bool allow) noexcept { mvarAllowModified = allow; }

    // Index; for hosts, raised by nothing here.
    Event<std::int32_t&> RelationsChanged;

    // For the rule and the dialogs.
    void SetParentRule(Rule* rule) { mvarParentRule = WeakRef<Rule>(rule); }
    // Nothing when the band has none or it has ended.
    [[nodiscard]] Ref<Rule> ParentRule() const noexcept { return mvarParentRule.Lock(); }
    // What the band is bound to without making anything; nothing when nothing was set.
    [[nodiscard]] const Ref<List>& BoundField() const noexcept { return mvarDataField; }
    // What TrackBands and Relations have made so far, without making anything: nothing when that was not used. Of the
    // trees only the band's own.
    [[nodiscard]] const Ref<Names>& TrackedNames() const noexcept { return mvarTrackBands; }
    [[nodiscard]] Ref<cNodes> OwnRelations() const noexcept {
        return IsBound() && mvarSwapMode == smSimpleSwap ? mvarRelations : nullptr;
    }
    // Whether any name is tracked: not where there are none, or one without text.
    [[nodiscard]] bool TracksAnything() const noexcept { return mvarTrackBands && !mvarTrackBands->IsBlank(); }
    // Whether the band takes its value from a user macro or a user field.
    [[nodiscard]] bool IsBound() const noexcept { return mvarStyle == bsUsrMacro || mvarStyle == bsUsrField; }
    // Whether the band is an increased number or letter.
    [[nodiscard]] bool IsIncreased() const noexcept {
        return mvarStyle == bsIncreaseNumber || mvarStyle == bsIncreaseAlpha;
    }

  private:
    void RequireStyle() const;
    // The letters to store: those given, raised, unless they differ from those stored and are refused.
    [[nodiscard]] String CheckedLetters(const String& stored, const String& value) const;
    void CheckRangeValue(String& target, const String& newValue, bool allowEmpty);
    void RepairRange();
    void EnterOrLeaveLayers(SwapModes before);
    [[nodiscard]] String CheckedTextValue(String value) const;
    [[nodiscard]] String CheckedLetterValue(const String& value) const;
    void mvarTrackBands_BeforeAdd(const String& name, bool& cancel, String& description) const;

    String mvarName;
    std::int32_t mvarLength = 1;
    String mvarValue;
    String mvarFormate;
    BandStyles mvarStyle = bsUndefined;
    String mvarDefault;
    Date mvarDateUpdated = 0;
    SwapModes mvarSwapMode = smNoneSwap;
    IncrModes mvarIncrMode = imNever;
    String mvarInitStart;
    String mvarInitEnd;
    Ref<List> mvarDataField;
    WeakRef<Band> mvarTrigerBand;
    bool mvarAllowDroped = true;
    bool mvarAllowModified = true;
    WeakRef<Rule> mvarParentRule;
    Ref<cNodes> mvarRelations;
    Ref<Names> mvarTrackBands;
    Subscription mvarTrackBandsBeforeAdd;
};

} // namespace kestrel
