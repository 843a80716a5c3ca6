// A code rule: the ordered bands that make up a code, the rule's settings, the lists of user fields and macros that
// values come from, the layers, and the rule's own relation tree. It issues codes, takes them apart, and writes itself
// to a definition string and back.
//
// Invariants: band names are unique without regard to case; each name in LayeredBands was a band's name when it was
// added; UsedFields holds the distinct fields and macros that bands are bound to, in band order. Positions are 1-based.
// Events are raised while the rule is whole; a handler may change, clear or release it. What a handler changed counts:
// an operation goes on with what is left, and a band that a handler removed is not removed again. Errors: an operation
// stops where it fails and what it did before stays, except where a member says otherwise.
#pragma once

#include <optional>

#include "bands/Band.h"
#include "engine/BandKeys.h"
#include "engine/UsedFields.h"

namespace kestrel {

// What a new band is made of; what is left out keeps the band's own initial value.
struct NewBand {
    String name{};
    int style = bsFixed;
    std::optional<int> swapMode{};
    std::optional<String> defaultValue{};
    Ref<List> dataField{};
    std::optional<std::int32_t> length{};
    std::optional<String> formate{};
    IndexKey before{};
    IndexKey after{};
};

class CodeClass final : public Rule {
  public:
    CodeClass();

    // --- Bands ---

    // Makes a band and puts it before or after the band named, or at the end. Both places, an empty name, a macro or
    // field band without DataField and any other band without Default fail with 2003; a name already used with 2019; an
    // unknown place with 2018 and the place; a value that the band refuses as the band's setter does. Nothing is added
    // then.
    Ref<kestrel::Band> Add(const NewBand& definition);
    // An unknown name fails with 5, a position outside 1 to Count() with 9.
    [[nodiscard]] Ref<kestrel::Band> Band(const IndexKey& indexKey) const { return mvarBands.At(indexKey); }
    // At a position from 1 to Count(); valid until bands come or go.
    [[nodiscard]] kestrel::Band& BandAt(std::int32_t position) const { return *mvarBands[position]; }
    [[nodiscard]] std::int32_t Count() const noexcept { return mvarBands.Count(); }
    // Asks the host (BeforeDropBand), whose Cancel ends it silently. A band that triggers others fails with 2009 and
    // their names; one that others track is removed only when the user agrees, else 2011. Then its name leaves what the
    // others track, the band leaves the collection, and its name leaves LayeredBands: a host that keeps the layer gets
    // the band back to its place, and the error of that list. Fails as Band on an unknown band. The band keeps knowing
    // the rule.
    void Remove(const IndexKey& indexKey);
    // Moves a band just before or just after another one; nothing in a rule of fewer than two bands. Neither or both
    // places, or an unknown place, fail with 2003; a move that changes nothing with 2008.
    void Drag(const IndexKey& indexKey, const IndexKey& before, const IndexKey& after);
    // Removes all bands, all relations and all layers; the settings, UsrFields and UsrMacros stay.
    void Cls();
    [[nodiscard]] std::vector<Ref<kestrel::Band>> Bands() const override { return mvarBands.Snapshot(); }
    // The number of characters of a code, 0 in the simple style; fails with 6 where 32 bits cannot hold it.
    [[nodiscard]] std::int32_t Length() const;

    // --- Lists and tree, owned by the rule ---

    [[nodiscard]] Lists& UsrFields() const noexcept override { return *mvarUsrFields; }
    [[nodiscard]] Lists& UsrMacros() const noexcept override { return *mvarUsrMacros; }
    [[nodiscard]] Lists& LayeredBands() const noexcept override { return *mvarLayeredBands; }
    [[nodiscard]] Lists& UsedFields() const noexcept { return mvarUsedFields.Items(); }
    [[nodiscard]] cNodes& Relations() override;
    // Null as long as the tree was not used.
    [[nodiscard]] const Ref<cNodes>& ExistingRelations() const noexcept { return mvarRelations; }

    // --- Settings; a value outside the range named fails with 2003 ---

    [[nodiscard]] const String& Name() const noexcept { return mvarName; }
    void SetName(const String& name) { mvarName = Trim(name); }
    [[nodiscard]] const String& Value() const noexcept { return mvarValue; }
    void SetValue(const String& value) { mvarValue = value; }
    [[nodiscard]] CodeStyles Style() const noexcept { return mvarStyle; }
    void SetStyle(int style); // 0 or 1
    [[nodiscard]] ApplyModes ApplyMode() const noexcept { return mvarApplyMode; }
    void SetApplyMode(int mode); // 0 or 1
    [[nodiscard]] bool CodeUCased() const noexcept { return mvarCodeUCased; }
    // Puts every code of the rule's tree in upper case first, whatever the flag; one that then equals a sibling's fails
    // with 2029 and leaves the flag.
    void SetCodeUCased(bool upperCased);
    [[nodiscard]] std::int32_t SeparaOfYear() const noexcept { return mvarSeparaOfYear; }
    void SetSeparaOfYear(std::int32_t month); // 1 to 12
    [[nodiscard]] std::int32_t SeparaOfMonth() const noexcept { return mvarSeparaOfMonth; }
    void SetSeparaOfMonth(std::int32_t day); // 1 to 28
    [[nodiscard]] WeekDays SeparaOfWeek() const noexcept { return mvarSeparaOfWeek; }
    void SetSeparaOfWeek(int weekDay); // 0 to 7
    [[nodiscard]] Date SeparaOfDay() const noexcept { return mvarSeparaOfDay; }
    void SetSeparaOfDay(Date time); // hours and minutes are kept
    [[nodiscard]] bool AllowAddBand() const noexcept { return mvarAllowAddBand; }
    void SetAllowAddBand(bool allow) noexcept { mvarAllowAddBand = allow; }
    [[nodiscard]] bool AllowDropBand() const noexcept { return mvarAllowDropBand; }
    void SetAllowDropBand(bool allow) noexcept { mvarAllowDropBand = allow; }
    [[nodiscard]] bool AllowFieldManage() const noexcept { return mvarAllowFieldManage; }
    void SetAllowFieldManage(bool allow) noexcept { mvarAllowFieldManage = allow; }
    [[nodiscard]] bool AllowSimpleStyle() const noexcept { return mvarAllowSimpleStyle; }
    void SetAllowSimpleStyle(bool allow) noexcept { mvarAllowSimpleStyle = allow; }
    [[nodiscard]] bool AllowSetup() const noexcept { return mvarAllowSetup; } // the dialogs read it, hosts only set it
    void SetAllowSetup(bool allow) noexcept { mvarAllowSetup = allow; }

    // --- Definition, codes (each in a file of its own) ---

    // The whole rule as text, see Definition.cpp for the format.
    [[nodiscard]] String Definition() const;
    // Empties the rule and reads the text as far as it can be read; fails on nothing.
    void Load(const String& definition);
    // A code: gsCurrent the last one issued, gsNewCode the next one; any other style fails with 2003. Lengths that
    // together are beyond LongestText fail with std::bad_alloc. The next number counts on from the numeric value of the
    // band's part of the last code, which is 0 for a part that does not begin with a number: under a Formate that puts
    // text before the digits (such as \N000) every next number is the first one.
    [[nodiscard]] String GetCode(int style = gsCurrent);
    // Spreads a code over the bands and their fields and macros. A wrong length fails with 2040, a fixed band whose
    // text differs with 2041; bands before it keep their part. Fails as Length where there is none.
    void ExpCode(const String& code);

    // What is wrong with the rule, or not as it looks, in a new collection: a sentence for each finding, see
    // RuleCheck.h. Changes nothing and raises no event.
    [[nodiscard]] Ref<Names> Check() const;

    // --- The host ---

    // Hands the definition to the host when it differs from the host's own and the user agrees; a host that does not
    // confirm makes it fail with plain 2005. The options change nothing.
    void Save(int options = soDefault);
    // An empty title keeps the dialog's own caption; allowSetup is remembered, left out it keeps what it was.
    void ShowDesigner(const String& title = {}, std::optional<bool> allowSetup = {});
    void ShowFieldManage(const String& title = {});
    void ShowOptions(const String& title = {});

    Event<String&, bool&> SaveRequested; // Value, bChieved
    Event<String&, bool&> LoadRequested; // Value, bChieved; for hosts, raised by nothing here
    Event<> FieldsChanged;
    Event<> BandsChanged;
    Event<String&> AddField;                        // Name
    Event<String&> DropField;                       // Name
    Event<String&, bool&, String&> BeforeDropField; // Name, Cancel, Description; raised by nothing here
    Event<String&, bool&, String&> BeforeDropBand;  // Name, Cancel, Description
    Event<> LayeredBandsChanged;
    Event<> RelationsChanged;
    Event<String&, String&> GetLastCode; // Filter, Value
    Event<String&, String&> GetSettings; // Name, Value

    // --- For the dialogs ---

    void ShowAddBand(const String& relativeName, int position);
    void ShowAddRelation(std::int32_t bandIndex, const String& relativeKey, int relationship, bool modify);
    void RaiseAddField(const String& name);
    void RaiseDropField(const String& name);

    // --- For bands and the rule's own parts ---

    void FollowDataField(const kestrel::Band& band) override;
    // The one place where a band enters the collection; Add, Drag and Load come through here. No band or one without a
    // name fails with 2003, otherwise as Add. Raises BandsChanged, then puts a layer-style band into LayeredBands.
    void AppendBand(const Ref<kestrel::Band>& band, const IndexKey& before = {}, const IndexKey& after = {},
                    const Ref<List>& dataField = {});
    [[nodiscard]] Ref<kestrel::Band> FindBand(const String& name) const override;
    // Whether the rule holds this very band.
    [[nodiscard]] bool Holds(const kestrel::Band& band) const { return FindBand(band.Name()) == &band; }

  private:
    using BandCollection = KeyedCollection<Ref<kestrel::Band>, BandKeys>;

    void SubscribeToLists();
    void mvarUsrFields_BeforeRemove(const String& name, bool& cancel, String& description) const;
    void mvarUsrMacros_BeforeRemove(const String& name, bool& cancel, String& description) const;
    void mvarLayeredBands_BeforeAdd(const String& name, bool& cancel, String& description) const;
    void mvarLayeredBands_BeforeRemove(const String& name, bool& cancel, String& description) const;
    void mvarLayeredBands_CollectionChanged();

    [[nodiscard]] std::int32_t AppendPosition(const IndexKey& before, const IndexKey& after) const;
    void TieAndInsert(const Ref<kestrel::Band>& band, const IndexKey& before, const IndexKey& after,
                      const Ref<List>& dataField);
    void EnterLayers(const kestrel::Band& band);
    void RefuseTrigger(const kestrel::Band& band) const;
    void AskAboutTrackers(const kestrel::Band& band) const;
    void TakeOut(const Ref<kestrel::Band>& band);
    void RefreshUsedFields() { mvarUsedFields.Rebuild(Bands()); }
    void FollowInsertion(const kestrel::Band& band);
    void RemoveFromTrackers(const String& name) const;
    void RemoveFromLayers(const String& name);

    BandCollection mvarBands;
    Ref<Lists> mvarUsrFields = Make<Lists>();
    Ref<Lists> mvarUsrMacros = Make<Lists>();
    Ref<Lists> mvarLayeredBands = Make<Lists>();
    kestrel::UsedFields mvarUsedFields;
    Ref<cNodes> mvarRelations;
    String mvarName;
    String mvarValue;
    CodeStyles mvarStyle = csNormal;
    ApplyModes mvarApplyMode = amOverAgain;
    bool mvarCodeUCased = true;
    std::int32_t mvarSeparaOfYear = 1;
    std::int32_t mvarSeparaOfMonth = 1;
    WeekDays mvarSeparaOfWeek = wdMonday;
    Date mvarSeparaOfDay = 0;
    bool mvarAllowAddBand = false;
    bool mvarAllowDropBand = false;
    bool mvarAllowFieldManage = false;
    bool mvarAllowSimpleStyle = false;
    bool mvarAllowSetup = false;
    bool mvarLoading = false; // while a definition is read the user is told nothing
    std::vector<Subscription> mvarListSubscriptions;
    Subscription mvarRelationsChanged;
};

} // namespace kestrel
