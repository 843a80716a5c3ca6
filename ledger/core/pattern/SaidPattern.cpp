#include "ledger/core/pattern/SaidPattern.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

#include "hosts/common/Text.h"
#include "ledger/core/definition/DefinitionText.h"
#include "ledger/core/formulas/Formula.h"
#include "ledger/core/pattern/CompletePattern.h"
#include "ledger/core/pattern/PatternText.h"
#include "ledger/core/pattern/PatternWriter.h"

namespace ledger {

namespace {

using hosts::HostError;

using hosts::Split;

std::size_t NumberIn(const std::wstring& text) {
    const bool isNumber =
        !text.empty() && text.size() < 10 && text.find_first_not_of(L"0123456789") == std::wstring::npos;
    return isNumber ? std::stoul(text) : 0;
}

// ----------------------------------------------------------------------------------------------------------- trees

// The nodes of a tree's text, each behind the one that it lies below.
class Tree {
  public:
    Tree(const std::wstring& text, std::size_t layers) {
        const std::vector<std::wstring> pieces = Split(text, L';');
        for (std::size_t piece = 1; piece < pieces.size(); ++piece)
            Add(Split(pieces[piece], L','), layers);
    }

    [[nodiscard]] std::vector<Relation> Relations() const { return Below(mvarTop); }

  private:
    struct Node {
        std::wstring code;
        std::wstring value;
        std::size_t layer = 0; // from 1
        std::vector<std::size_t> below;
    };

    void Add(const std::vector<std::wstring>& fields, std::size_t layers) {
        constexpr std::size_t count = 4;
        if (fields.size() != count) throw HostError(L"a relation is not written with four fields");
        std::size_t layer = 1;
        std::vector<std::size_t>* siblings = &mvarTop;
        if (!fields[0].empty()) {
            const auto above = mvarPlaces.find(fields[0]);
            if (above == mvarPlaces.end()) throw HostError(L"relation \"" + fields[3] + L"\" lies below none");
            layer = mvarNodes[above->second].layer + 1;
            siblings = &mvarNodes[above->second].below;
        }
        if (layer > layers) throw HostError(L"relation \"" + fields[3] + L"\" lies below the last layer");
        siblings->push_back(mvarNodes.size());
        mvarPlaces.emplace(fields[1], mvarNodes.size());
        mvarNodes.push_back({fields[2], fields[3], layer, {}});
    }

    // As deep as there are layers.
    [[nodiscard]] std::vector<Relation> Below(const std::vector<std::size_t>& places) const {
        std::vector<Relation> relations;
        relations.reserve(places.size());
        for (const std::size_t place : places)
            relations.push_back({mvarNodes[place].code, mvarNodes[place].value, Below(mvarNodes[place].below)});
        return relations;
    }

    std::vector<Node> mvarNodes;
    std::vector<std::size_t> mvarTop;
    std::unordered_map<std::wstring, std::size_t> mvarPlaces; // by the nodes' numbers
};

// The same for trees that convert alike, whatever the numbers and places of their nodes.
std::wstring TreeMeaning(const std::wstring& text, std::size_t layers) {
    const std::vector<Relation> relations = Tree(text, layers).Relations();
    return relations.empty() ? std::wstring() : WriteCodeTable(relations, std::vector<std::wstring>(layers, L"x"));
}

// ------------------------------------------------------------------------------------------------------ definitions

// What a definition holds, by entry, band and key.
class Held {
  public:
    explicit Held(const std::wstring& definition) : mvarText(ReadDefinitionText(definition)) {
        for (const DefinitionItem& item : mvarText.items)
            mvarItems[{item.entry, item.band, item.key}] = &item;
    }

    [[nodiscard]] std::size_t Bands() const { return mvarText.bands.size(); }
    [[nodiscard]] std::wstring Entry(int entry) const { return At({entry, 0, 0}); }
    [[nodiscard]] std::wstring Key(std::size_t band, int key) const { return At({entries::Band, band, key}); }
    [[nodiscard]] std::vector<std::wstring> Layers() const {
        std::vector<std::wstring> names;
        if (Entry(entries::Layers).empty()) return names;
        for (const std::wstring& record : Split(Entry(entries::Layers), L';'))
            names.push_back(Split(record, L',').front());
        return names;
    }

    // The first thing that is not the same and is not to be passed over.
    [[nodiscard]] std::wstring DifferenceTo(const Held& other,
                                            bool (*passesOver)(const DefinitionItem&, const Held&)) const {
        for (const auto& [place, item] : mvarItems)
            if (!passesOver(*item, *this) && Meaning(*item) != other.MeaningAt(place))
                return NameOfItem(mvarText, *item) + L": the rule has \"" + item->value + L"\"";
        return {};
    }

    [[nodiscard]] std::vector<std::wstring> NamesOfDifferences(const Held& other) const {
        std::vector<std::wstring> names;
        for (const auto& [place, item] : mvarItems)
            if (!item->value.empty() && Meaning(*item) != other.MeaningAt(place))
                names.push_back(NameOfItem(mvarText, *item) + L" " + item->value);
        return names;
    }

  private:
    using Place = std::tuple<int, std::size_t, int>;

    [[nodiscard]] std::wstring At(const Place& place) const {
        const auto found = mvarItems.find(place);
        return found == mvarItems.end() ? std::wstring() : found->second->value;
    }
    [[nodiscard]] std::wstring Meaning(const DefinitionItem& item) const {
        if (item.entry == entries::Relations) return TreeMeaning(item.value, Layers().size());
        if (item.entry == entries::Band && item.key == keys::Relations)
            return TreeMeaning(item.value, Key(item.band, 2) == L"1" ? 1 : Layers().size());
        return item.value;
    }
    [[nodiscard]] std::wstring MeaningAt(const Place& place) const {
        const auto found = mvarItems.find(place);
        return found == mvarItems.end() ? std::wstring() : Meaning(*found->second);
    }

    DefinitionText mvarText;
    std::map<Place, const DefinitionItem*> mvarItems;
};

// What codes are not made of: rights, the apply mode, raise modes and triggers, dates, and last values but a letter's.
bool IsNoneOfCodes(const DefinitionItem& item, const Held& held) {
    if (item.entry >= 2 && item.entry <= 7) return true;
    if (item.entry != entries::Band) return false;
    if (item.key == keys::Value) return held.Key(item.band, 1) != L"4";
    return item.key == 7 || item.key == keys::Triggered || item.key == keys::Updated || item.key >= 15;
}

// --------------------------------------------------------------------------------------------------------- patterns

class Speaker {
  public:
    explicit Speaker(const std::wstring& definition) : mvarHeld(definition), mvarLayers(mvarHeld.Layers()) {}

    SaidPattern Say() {
        for (std::size_t band = 1; band <= mvarHeld.Bands(); ++band)
            mvarPattern.push_back(PartOf(band));
        if (!mvarLayers.empty()) AddFile(LayersFile, mvarHeld.Entry(entries::Relations), FieldsOfLayers());
        ReadSettings();
        LeaveOut();
        mvarSaid.text = WritePattern(mvarPattern);
        return std::move(mvarSaid);
    }

    [[nodiscard]] const Held& Definition() const { return mvarHeld; }

  private:
    static constexpr const wchar_t* LayersFile = L"layers.csv";

    PatternPart PartOf(std::size_t band) {
        PatternPart part;
        part.name = mvarHeld.Key(band, keys::Name);
        part.length = NumberIn(mvarHeld.Key(band, 5));
        const std::size_t style = NumberIn(mvarHeld.Key(band, 1));
        if (style == 0)
            part.text = mvarHeld.Key(band, 3);
        else if (style == 3)
            SayNumber(part, band);
        else if (style == 4)
            SayLetter(part, band);
        else
            SayBound(part, band, style == 2 ? PartKind::Field : PartKind::Macro);
        return part;
    }

    void SayTracked(PatternPart& part, std::size_t band) const {
        part.tracked.emplace();
        const std::wstring names = mvarHeld.Key(band, keys::Tracked);
        if (names.empty()) return;
        for (const std::wstring& name : Split(names, L','))
            part.tracked->push_back({name, 0});
    }

    void SayNumber(PatternPart& part, std::size_t band) const {
        part.kind = PartKind::Number;
        if (mvarHeld.Key(band, 4) != std::wstring(part.length, L'0'))
            throw HostError(L"the number of band " + part.name + L" is written with the format \"" +
                            mvarHeld.Key(band, 4) + L"\", and not with " + std::to_wstring(part.length) + L" digits");
        part.first = mvarHeld.Key(band, 3).empty() ? mvarHeld.Key(band, 8) : mvarHeld.Key(band, 3);
        part.last = mvarHeld.Key(band, 9);
        SayTracked(part, band);
    }

    void SayLetter(PatternPart& part, std::size_t band) const {
        part.kind = PartKind::Letter;
        part.first = mvarHeld.Key(band, 8);
        part.last = mvarHeld.Key(band, 9);
        part.text = mvarHeld.Key(band, keys::Value);
        SayTracked(part, band);
        if (part.tracked->empty()) part.tracked.reset();
    }

    void SayBound(PatternPart& part, std::size_t band, PartKind kind) {
        part.kind = kind;
        part.text = mvarHeld.Key(band, 6);
        part.format = mvarHeld.Key(band, 4);
        if (kind == PartKind::Macro) part.formula = FormulaOf(part.text);
        if (!part.formula.empty()) part.kind = PartKind::Formula;
        const std::wstring swap = mvarHeld.Key(band, 2);
        if (swap == L"1") {
            part.file = FileFor(part.name);
            AddFile(part.file, mvarHeld.Key(band, keys::Relations), {part.text});
        } else if (swap == L"2") {
            const auto layer = std::ranges::find(mvarLayers, part.name);
            if (layer == mvarLayers.end()) throw HostError(L"band " + part.name + L" is not among the layers");
            part.file = LayersFile;
            part.layer = static_cast<std::size_t>(layer - mvarLayers.begin()) + 1;
        }
        if (!part.file.empty() && part.format.empty()) part.length = 0; // as long as the codes are
    }

    [[nodiscard]] std::wstring FormulaOf(const std::wstring& macro) const {
        for (const std::wstring& record : Split(mvarHeld.Entry(entries::Macros), L';')) {
            const std::vector<std::wstring> fields = Split(record, L',');
            constexpr std::size_t description = 3;
            if (fields.front() == macro && fields.size() > description && IsFormula(fields[description]))
                return fields[description];
        }
        return {};
    }

    [[nodiscard]] std::vector<std::wstring> FieldsOfLayers() const {
        std::vector<std::wstring> fields;
        for (const std::wstring& layer : mvarLayers) {
            const auto part = std::ranges::find(mvarPattern, layer, &PatternPart::name);
            if (part == mvarPattern.end()) throw HostError(L"layer \"" + layer + L"\" is no band");
            fields.push_back(part->text);
        }
        return fields;
    }

    // A name that any system takes, which no other file has.
    [[nodiscard]] std::wstring FileFor(std::wstring name) const {
        std::ranges::replace_if(
            name,
            [](wchar_t character) {
                return std::wstring_view(L"<>:\"/\\|?*{}()").find(character) != std::wstring::npos;
            },
            L'_');
        std::wstring file = name + L".csv";
        for (std::size_t count = 2; mvarSaid.files.contains(file) || file == LayersFile; ++count)
            file = name + L" " + std::to_wstring(count) + L".csv";
        return file;
    }

    void AddFile(const std::wstring& file, const std::wstring& tree, const std::vector<std::wstring>& fields) {
        mvarSaid.files[file] = WriteCodeTable(Tree(tree, fields.size()).Relations(), fields);
    }

    void ReadSettings() {
        mvarSaid.settings.capitals = mvarHeld.Entry(8) == L"1";
        mvarSaid.settings.dayBegins = mvarHeld.Entry(entries::DayBegins);
        mvarSaid.settings.weekBegins = static_cast<long>(NumberIn(mvarHeld.Entry(11)));
        mvarSaid.settings.monthBegins = static_cast<long>(NumberIn(mvarHeld.Entry(12)));
        mvarSaid.settings.yearBegins = static_cast<long>(NumberIn(mvarHeld.Entry(13)));
    }

    // Names and tracked bands that a pattern has anyway.
    void LeaveOut() {
        Pattern shorter = mvarPattern;
        for (PatternPart& part : shorter) {
            part.name.clear();
            if (part.kind == PartKind::Number) part.tracked.reset();
            if (part.kind == PartKind::Formula && IsFunctionOf(part.text, part.formula)) part.text.clear();
        }
        Pattern usual = shorter;
        CompletePattern(usual);
        for (std::size_t place = 0; place < usual.size(); ++place) {
            const PatternPart& part = mvarPattern[place];
            if (usual[place].text != part.text) shorter[place].text = part.text;
            if (usual[place].name != part.name) shorter[place].name = part.name;
            shorter[place].tracked = part.tracked;
        }
        Pattern again = shorter;
        CompletePattern(again);
        const auto isSame = [](const PatternPart& one, const PatternPart& other) {
            return one.name == other.name && one.text == other.text;
        };
        if (std::ranges::equal(again, mvarPattern, isSame)) mvarPattern = std::move(shorter);
        LeaveOutTracks(mvarPattern);
    }

    static bool IsFunctionOf(const std::wstring& name, const std::wstring& formula) {
        return formula.substr(0, formula.find(L'(')) == name;
    }

    static void LeaveOutTracks(Pattern& pattern) {
        for (PatternPart& part : pattern) {
            if (part.kind != PartKind::Number) continue;
            Pattern usual = pattern;
            PatternPart& tried = usual[static_cast<std::size_t>(&part - pattern.data())];
            tried.tracked.reset();
            CompletePattern(usual);
            if (std::ranges::equal(*tried.tracked, *part.tracked, {}, &PatternName::name, &PatternName::name))
                part.tracked.reset();
        }
    }

    Held mvarHeld;
    std::vector<std::wstring> mvarLayers;
    Pattern mvarPattern;
    SaidPattern mvarSaid;
};

} // namespace

SaidPattern SayPattern(const std::wstring& definition) {
    try {
        Speaker speaker(definition);
        SaidPattern said = speaker.Say();
        const CodeFiles files = [&said](const std::wstring& file) { return hosts::ParseCsv(said.files.at(file)); };
        const Held made(BuildDefinition(ParsePattern(said.text), said.settings, files));
        const Held& held = speaker.Definition();
        std::wstring difference = held.DifferenceTo(made, IsNoneOfCodes);
        if (difference.empty()) difference = made.DifferenceTo(held, IsNoneOfCodes);
        if (!difference.empty()) throw HostError(difference);
        said.besides = held.NamesOfDifferences(made);
        return said;
    } catch (const HostError& error) {
        SaidPattern none;
        none.why = error.Message();
        return none;
    }
}

} // namespace ledger
