// The definition string of a rule: writer and reader.
//
//   definition = "#####" lines            lines are separated by one carriage return, none at the end
//   lines      = pairs of a number line and a value line
//                 0 Name   1 Style   2 ApplyMode   3 AllowAddBand   4 AllowDropBand   5 AllowSetup   6 AllowSimpleStyle
//                 7 AllowFieldManage   8 CodeUCased   10 SeparaOfDay "HH:MM"   11 SeparaOfWeek   12 SeparaOfMonth
//                 13 SeparaOfYear   14 UsrFields   15 UsrMacros   16 a band   17 LayeredBands   9 Relations
//   a band     = "16", then lines of key "=" value (the value is the rest of the line), then "17"
//                 0 Name (begins the band)   1 Style   2 SwapMode   3 Default   4 Formate   5 Length   6 DataField
//                 7 IncrMode   8 InitStart   9 InitEnd   10 TrigerBand   11 DateUpdated   12 Value   13 TrackBands
//                 14 Relations   15 AllowDroped   16 AllowModified
//
// Entries are written in the order above. Numbers, booleans ("1", "0") and dates read alike in every locale. Nothing is
// escaped. Three peculiarities are part of the format, for stored definitions have them: the first line is the digit of
// the rule's style glued to the entry number that follows, so the rule's Name and Style do not come back; entry 11 is
// read into SeparaOfMonth, which entry 12 then overwrites; a layer-style band writes the rule's tree, and only entry 9
// brings it back.
//
// The reader goes on past everything that is refused: one value that a property does not take loses nothing else.

#include <utility>

#include "common/CaseFolding.h"
#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Ports.h"
#include "engine/CodeClass.h"

namespace kestrel {

namespace {

constexpr StringView Header = L"#####";

enum Entry : int {
    EntryName = 0,
    EntryStyle = 1,
    EntryApplyMode = 2,
    EntryAllowAddBand = 3,
    EntryAllowDropBand = 4,
    EntryAllowSetup = 5,
    EntryAllowSimpleStyle = 6,
    EntryAllowFieldManage = 7,
    EntryCodeUCased = 8,
    EntryRelations = 9,
    EntrySeparaOfDay = 10,
    EntrySeparaOfWeek = 11,
    EntrySeparaOfMonth = 12,
    EntrySeparaOfYear = 13,
    EntryUsrFields = 14,
    EntryUsrMacros = 15,
    EntryBand = 16,
    EntryLayeredBands = 17
};

// Higher numbers are passed over, this one with its value.
constexpr double LastNumber = 18;

enum BandKey : int {
    KeyName = 0,
    KeyStyle = 1,
    KeySwapMode = 2,
    KeyDefault = 3,
    KeyFormate = 4,
    KeyLength = 5,
    KeyDataField = 6,
    KeyIncrMode = 7,
    KeyInitStart = 8,
    KeyInitEnd = 9,
    KeyTrigerBand = 10,
    KeyDateUpdated = 11,
    KeyValue = 12,
    KeyTrackBands = 13,
    KeyRelations = 14,
    KeyAllowDroped = 15,
    KeyAllowModified = 16,
    KeyEnd = 17
};

String BooleanText(bool value) { return value ? L"1" : L"0"; }

// ---------------------------------------------------------------------------------------------------------- writer

class Writer {
  public:
    explicit Writer(const CodeClass& rule) : mvarRule(rule) {}

    [[nodiscard]] String Text() {
        WriteStyle();
        WriteSettings();
        WriteLists();
        mvarText.pop_back(); // the carriage return of the last line
        return String(Header) + mvarText;
    }

  private:
    void Line(StringView text) {
        mvarText += text;
        mvarText += CarriageReturn;
    }
    void Pair(Entry entry, StringView value) {
        Line(ToText(entry));
        Line(value);
    }
    void PairUnlessEmpty(Entry entry, const Lists& list) {
        if (list.Count() > 0) Pair(entry, list.ListsText());
    }
    void KeyLine(BandKey key, StringView value) {
        mvarText += ToText(key);
        mvarText += L'=';
        Line(value);
    }

    void WriteStyle() {
        mvarText = ToText(mvarRule.Style());
        if (mvarRule.Style() != csNormal) {
            Line(L"1");
            Line(mvarRule.Name());
        }
    }

    void WriteSettings() {
        Pair(EntryApplyMode, ToText(mvarRule.ApplyMode()));
        Pair(EntryAllowAddBand, BooleanText(mvarRule.AllowAddBand()));
        Pair(EntryAllowDropBand, BooleanText(mvarRule.AllowDropBand()));
        Pair(EntryAllowSetup, BooleanText(mvarRule.AllowSetup()));
        Pair(EntryAllowSimpleStyle, BooleanText(mvarRule.AllowSimpleStyle()));
        Pair(EntryAllowFieldManage, BooleanText(mvarRule.AllowFieldManage()));
        Pair(EntryCodeUCased, BooleanText(mvarRule.CodeUCased()));
        const auto time = TimeText(mvarRule.SeparaOfDay());
        if (time != L"00:00") Pair(EntrySeparaOfDay, time);
        Pair(EntrySeparaOfWeek, ToText(mvarRule.SeparaOfWeek()));
        Pair(EntrySeparaOfMonth, ToText(mvarRule.SeparaOfMonth()));
        Pair(EntrySeparaOfYear, ToText(mvarRule.SeparaOfYear()));
    }

    void WriteLists() {
        PairUnlessEmpty(EntryUsrFields, mvarRule.UsrFields());
        PairUnlessEmpty(EntryUsrMacros, mvarRule.UsrMacros());
        for (const auto& band : mvarRule.Bands())
            WriteBand(*band);
        PairUnlessEmpty(EntryLayeredBands, mvarRule.LayeredBands());
        const auto& relations = mvarRule.ExistingRelations();
        if (relations && relations->Count() > 0) Pair(EntryRelations, relations->ExportNodes());
    }

    void WriteBand(Band& band) {
        Line(ToText(EntryBand));
        KeyLine(KeyName, band.Name());
        KeyLine(KeyStyle, ToText(band.Style()));
        KeyLine(KeySwapMode, ToText(band.SwapMode()));
        KeyLine(KeyDefault, band.Default());
        KeyLine(KeyFormate, band.Formate());
        KeyLine(KeyLength, ToText(band.Length()));
        KeyLine(KeyDataField, band.BoundField() ? band.BoundField()->Name() : String());
        KeyLine(KeyIncrMode, ToText(band.IncrMode()));
        KeyLine(KeyInitStart, band.InitStart());
        KeyLine(KeyInitEnd, band.InitEnd());
        const auto trigger = band.TrigerBand();
        KeyLine(KeyTrigerBand, trigger ? trigger->Name() : String());
        KeyLine(KeyDateUpdated, DateText(band.DateUpdated()));
        KeyLine(KeyValue, band.Value());
        const auto tracked = band.TrackBands();
        KeyLine(KeyTrackBands, tracked ? tracked->NamesText() : String());
        const auto relations = band.Relations();
        KeyLine(KeyRelations, relations ? relations->ExportNodes() : String());
        KeyLine(KeyAllowDroped, BooleanText(band.AllowDroped()));
        KeyLine(KeyAllowModified, BooleanText(band.AllowModified()));
        Line(ToText(KeyEnd));
    }

    const CodeClass& mvarRule;
    String mvarText;
};

// ---------------------------------------------------------------------------------------------------------- reader

// What a property refuses is left out.
template <class Assignment>
void Try(Assignment assign) {
    try {
        assign();
    } catch (const Error&) {
        // The property keeps what it held; reading goes on with the next line.
    }
}

std::int32_t IntegerOf(StringView value) {
    const auto number = WholeNumber(value);
    const auto integer = number ? ToInteger(*number) : std::nullopt;
    if (!integer) throw Error(Message::InvalidParameter);
    return *integer;
}

bool BooleanOf(StringView value) { return LeadingNumber(value).value_or(0) != 0 || SameFolded(Trim(value), L"True"); }

Date DateOf(StringView value) {
    const auto date = TheText().ParseDate(String(value));
    if (!date) throw Error(Message::InvalidParameter);
    return *date;
}

class Reader {
  public:
    explicit Reader(CodeClass& rule) : mvarRule(rule) {}

    void Read(StringView text) {
        Splitter lines(text, CarriageReturn);
        while (const auto line = lines.Next()) {
            if (mvarEntry < 0)
                ReadNumber(*line);
            else
                ReadValue(*line);
        }
        SetTriggers();
        SetTracks();
    }

  private:
    static constexpr int AwaitingNumber = -1;

    // Bands refer to others that may come later in the text.
    struct Deferred {
        String band;
        String value;
    };

    void ReadNumber(StringView line) {
        const double number = LeadingNumber(line).value_or(0);
        if (number >= 0 && number <= LastNumber) mvarEntry = static_cast<int>(number);
    }

    void ReadValue(StringView line) {
        if (mvarEntry == EntryBand) return ReadBandLine(line);
        const int entry = std::exchange(mvarEntry, AwaitingNumber);
        Try([&] { Assign(entry, line); });
    }

    void Assign(int entry, StringView value) {
        switch (entry) {
        case EntryName: return mvarRule.SetName(String(value));
        case EntryStyle: return mvarRule.SetStyle(IntegerOf(value));
        case EntryApplyMode: return mvarRule.SetApplyMode(IntegerOf(value));
        case EntryAllowAddBand: return mvarRule.SetAllowAddBand(BooleanOf(value));
        case EntryAllowDropBand: return mvarRule.SetAllowDropBand(BooleanOf(value));
        case EntryAllowSetup: return mvarRule.SetAllowSetup(BooleanOf(value));
        case EntryAllowSimpleStyle: return mvarRule.SetAllowSimpleStyle(BooleanOf(value));
        case EntryAllowFieldManage: return mvarRule.SetAllowFieldManage(BooleanOf(value));
        case EntryCodeUCased: return mvarRule.SetCodeUCased(BooleanOf(value));
        case EntryRelations: return mvarRule.Relations().ImportNodes(value);
        case EntrySeparaOfDay: return mvarRule.SetSeparaOfDay(DateOf(value));
        case EntrySeparaOfWeek:
        case EntrySeparaOfMonth: return mvarRule.SetSeparaOfMonth(IntegerOf(value));
        case EntrySeparaOfYear: return mvarRule.SetSeparaOfYear(IntegerOf(value));
        case EntryUsrFields: return mvarRule.UsrFields().SetListsText(String(value));
        case EntryUsrMacros: return mvarRule.UsrMacros().SetListsText(String(value));
        case EntryLayeredBands: return mvarRule.LayeredBands().SetListsText(String(value));
        default: return;
        }
    }

    void ReadBandLine(StringView line) {
        const auto separator = line.find(L'=');
        const double number = LeadingNumber(line.substr(0, separator)).value_or(-1);
        if (number < 0 || number > LastNumber) return;
        const auto key = static_cast<int>(number);
        if (key == KeyEnd)
            EndBand();
        else if (separator != StringView::npos)
            ReadBandValue(key, line.substr(separator + 1));
    }

    void ReadBandValue(int key, StringView value) {
        if (key == KeyName) mvarBand = Make<Band>();
        if (!mvarBand) return;
        if (key == KeyName) mvarBand->SetParentRule(&mvarRule);
        if (key == KeyTrigerBand) mvarTriggers.push_back({mvarBand->Name(), String(value)});
        if (key == KeyTrackBands) mvarTracks.push_back({mvarBand->Name(), String(value)});
        Try([&] { Assign(*mvarBand, key, String(value)); });
    }

    static void Assign(Band& band, int key, const String& value) {
        switch (key) {
        case KeyName: return band.SetName(value);
        case KeyStyle: return band.SetStyle(IntegerOf(value));
        case KeySwapMode: return band.SetSwapMode(IntegerOf(value));
        case KeyDefault: return band.SetDefault(value);
        case KeyFormate: return band.SetFormate(value);
        case KeyLength: return band.SetLength(IntegerOf(value));
        case KeyDataField:
            if (const auto fields = band.DataFields()) band.SetDataField(fields->Item(value));
            return;
        case KeyIncrMode: return band.SetIncrMode(IntegerOf(value));
        case KeyInitStart: return band.SetInitStart(value);
        case KeyInitEnd: return band.SetInitEnd(value);
        case KeyDateUpdated: return band.SetDateUpdated(DateOf(value));
        case KeyValue: return band.SetValue(value);
        case KeyRelations:
            // A layer-style band's tree is the rule's own, which has its own entry.
            if (band.SwapMode() == smSimpleSwap && band.IsBound()) band.Relations()->ImportNodes(value);
            return;
        case KeyAllowDroped: return band.SetAllowDroped(BooleanOf(value));
        case KeyAllowModified: return band.SetAllowModified(BooleanOf(value));
        default: return;
        }
    }

    void EndBand() {
        mvarEntry = AwaitingNumber;
        const auto band = std::exchange(mvarBand, nullptr);
        Try([&] { mvarRule.AppendBand(band); });
    }

    void SetTriggers() {
        for (const auto& [name, value] : mvarTriggers)
            Try([this, &name = name, &value = value] { mvarRule.Band(name)->SetTrigerBand(mvarRule.Band(value)); });
    }

    void SetTracks() {
        for (const auto& [name, value] : mvarTracks) {
            const auto band = mvarRule.FindBand(name);
            const auto names = band ? band->TrackBands() : nullptr;
            if (!names || value.empty()) continue;
            for (const auto tracked : Split(value, L','))
                Try([&] { names->Add(String(tracked)); });
        }
    }

    CodeClass& mvarRule;
    int mvarEntry = AwaitingNumber;
    Ref<Band> mvarBand;
    std::vector<Deferred> mvarTriggers;
    std::vector<Deferred> mvarTracks;
};

// A handler may load again while a definition is read: the flag goes back to what it was.
class LoadingScope {
  public:
    explicit LoadingScope(bool& flag) noexcept : mvarFlag(flag), mvarBefore(std::exchange(flag, true)) {}
    ~LoadingScope() { mvarFlag = mvarBefore; }
    // One scope restores once.
    LoadingScope(const LoadingScope&) = delete;
    LoadingScope& operator=(const LoadingScope&) = delete;

  private:
    bool& mvarFlag;
    bool mvarBefore;
};

} // namespace

String CodeClass::Definition() const { return Writer(*this).Text(); }

void CodeClass::Load(const String& definition) {
    const Ref<CodeClass> alive(this);
    Cls();
    if (definition.size() <= Header.size()) return;
    const LoadingScope loading(mvarLoading);
    Reader(*this).Read(StringView(definition).substr(Header.size()));
}

} // namespace kestrel
