#include "engine/RuleCheck.h"

#include "common/Numbers.h"
#include "common/Ports.h"
#include "engine/FittingNumbers.h"
#include "engine/FormatTrials.h"
#include "engine/TextTraits.h"
#include "engine/TreeSurvey.h"

namespace kestrel {

namespace {

// A number band that counts fewer is told of.
constexpr std::uint32_t EnoughNumbers = 100;
constexpr const wchar_t* NumberBegin = L"1"; // what every number band begins with unless it is told otherwise

bool HasAny(const String& text, StringView characters) { return text.find_first_of(characters) != String::npos; }

// Numbers as their texts mean them; nothing when one is none in the user's locale.
bool LiesBelow(const String& left, const String& right) {
    const auto leftNumber = NumericValue(left);
    const auto rightNumber = NumericValue(right);
    return leftNumber && rightNumber && *leftNumber < *rightNumber;
}

bool HasSeparators(const String& text) { return TraitsOf(text).hasSeparators; }

// Of what is stored beside the name of an item.
bool HasSeparatorsBesideItsName(const List& item) {
    const auto& description = item.Description();
    return HasSeparators(item.Value()) || (description && HasSeparators(description->Text()));
}

class Check {
  public:
    explicit Check(const CodeClass& rule) : mvarRule(rule), mvarBands(rule.Bands()) {}

    std::vector<Finding> Run() {
        NumberBands();
        FindLayers();
        SurveyLayers();
        for (const auto& band : mvarBands) {
            mvarFindings.Of(band);
            CheckBand(*band);
        }
        mvarFindings.Of(nullptr);
        CheckWhole();
        return mvarFindings.Take();
    }

  private:
    void NumberBands() {
        mvarPositions.reserve(mvarBands.size());
        for (std::size_t i = 0; i < mvarBands.size(); ++i)
            mvarPositions.emplace(mvarBands[i].Get(), i);
    }

    void FindLayers() {
        for (const auto& layer : mvarRule.LayeredBands().Snapshot()) {
            const auto band = mvarRule.FindBand(layer->Name());
            mvarLayerBands.push_back(band.Get());
            if (band) mvarLayers[band.Get()].push_back(mvarLayerBands.size() - 1);
        }
    }

    void SurveyLayers() {
        const auto& tree = mvarRule.ExistingRelations();
        mvarTree.layers.resize(mvarLayerBands.size());
        if (tree) mvarTree = SurveyTree(*tree, mvarLayerBands);
    }

    // ------------------------------------------------------------------------------------------------------ one band

    void CheckBand(const Band& band) {
        if (HasAny(band.Name(), L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1501)});
        if (HasAny(band.Formate(), L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1504)});
        if (HasAny(band.Value(), L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1503)});
        switch (band.Style()) {
        case bsFixed: CheckFixed(band); break;
        case bsUsrMacro:
        case bsUsrField: CheckBound(band); break;
        case bsIncreaseNumber: CheckNumber(band); break;
        case bsIncreaseAlpha: CheckLetter(band); break;
        default: mvarFindings.Add(FindingKind::NoStyle); break;
        }
        CheckTrigger(band);
        CheckLayer(band);
    }

    void CheckFixed(const Band& band) {
        const String& text = band.Default();
        if (text.size() != static_cast<std::size_t>(band.Length())) mvarFindings.Add(FindingKind::FixedTextMissing);
        if (mvarRule.CodeUCased() && TraitsOf(text).hasSmallLetters)
            mvarFindings.Add(FindingKind::SmallLetters, {text});
    }

    void CheckTrigger(const Band& band) {
        const auto trigger = band.TrigerBand();
        if (!trigger && band.IncrMode() != imTrigered) return;
        mvarFindings.Add(
            FindingKind::TriggerUnused,
            {Caption(1621 + band.IncrMode()), trigger ? trigger->Name() : TheStrings().Text(Message::CaptionNone)});
    }

    static String Caption(int number) { return TheStrings().Text(number); }

    // ------------------------------------------------------------------------------------------- numbers and letters

    void CheckNumber(const Band& band) {
        CheckFirstNumber(band);
        CheckNumberFormat(band);
        CheckRange(band);
        CheckTracked(band);
    }

    void CheckFirstNumber(const Band& band) {
        const String& start = band.Default().empty() ? band.InitStart() : band.Default();
        const String text = FormattedWith(band.Formate(), start);
        if (!HasLengthOf(band, text))
            mvarFindings.Add(FindingKind::FirstNumberLength, {start, text, ToText(band.Length())});
        else
            CountNumbers(band, start);
    }

    static bool HasLengthOf(const Band& band, const String& text) {
        return text.size() == static_cast<std::size_t>(band.Length());
    }

    void CountNumbers(const Band& band, const String& start) {
        const auto count = FittingNumbers(band, start, EnoughNumbers);
        if (count < EnoughNumbers)
            mvarFindings.Add(FindingKind::FewNumbers, {ToText(count), start, Increased(start, count - 1)});
    }

    void CheckNumberFormat(const Band& band) {
        if (band.Formate().empty()) return;
        const auto& trial = mvarTrials.OfNumbers(band.Formate(), band.Length());
        ReportTrial(band, trial);
        if (trial.unread)
            mvarFindings.Add(FindingKind::NumberUnreadable, {band.Formate(), trial.unread->value, trial.unread->text});
        if (trial.noNumber)
            mvarFindings.Add(FindingKind::NumberNotNumeric,
                             {band.Formate(), trial.noNumber->value, trial.noNumber->text});
    }

    void ReportTrial(const Band& band, const FormatTrial& trial) {
        if (!trial.fits) mvarFindings.Add(FindingKind::FormatNeverFits, {band.Formate(), ToText(band.Length())});
        if (trial.unstable)
            mvarFindings.Add(FindingKind::FormatUnstable,
                             {band.Formate(), trial.unstable->value, trial.unstable->text});
    }

    void CheckRange(const Band& band) {
        const bool beginsElsewhere = !band.Default().empty() && band.InitStart() != band.Default();
        if (beginsElsewhere && band.InitStart() != NumberBegin)
            mvarFindings.Add(FindingKind::BeginUnused, {band.Default(), band.InitStart()});
        const String& end = band.InitEnd();
        if (end.empty()) return;
        mvarFindings.Add(FindingKind::EndUnused, {end});
        const String text = FormattedWith(band.Formate(), end);
        if (text.size() > static_cast<std::size_t>(band.Length()))
            mvarFindings.Add(FindingKind::EndLength, {end, text, ToText(band.Length())});
        const String& start = band.Default().empty() ? band.InitStart() : band.Default();
        if (LiesBelow(end, start)) mvarFindings.Add(FindingKind::EndBelowBegin, {end, start});
    }

    void CheckLetter(const Band& band) {
        if (band.Value().empty())
            mvarFindings.Add(FindingKind::LetterEmpty);
        else
            mvarFindings.Add(FindingKind::LetterStays, {band.Value()});
        if (band.InitEnd() < band.InitStart())
            mvarFindings.Add(FindingKind::EndBelowBegin, {band.InitEnd(), band.InitStart()});
        CheckTrackedNames(band);
    }

    // -------------------------------------------------------------------------------------------------- tracked bands

    void CheckTracked(const Band& band) {
        if (band.TracksAnything()) {
            mvarCounts = true;
        } else if (band.Value().empty()) {
            mvarFindings.Add(FindingKind::TracksNothingEmpty);
        } else {
            mvarFindings.Add(FindingKind::TracksNothing, {band.Value()});
        }
        CheckTrackedNames(band);
    }

    void CheckTrackedNames(const Band& band) {
        const auto& names = band.TrackedNames();
        for (std::int32_t position = 1; names && position <= names->Count(); ++position)
            CheckTrackedName(band, names->Item(position));
    }

    void CheckTrackedName(const Band& band, const String& name) {
        const auto tracked = mvarRule.FindBand(name);
        if (!tracked) return mvarFindings.Add(FindingKind::TracksNoBand, {name});
        if (tracked == &band) return mvarFindings.Add(FindingKind::TracksItself);
        if (HasAny(name, L",")) mvarFindings.Add(FindingKind::TrackedNameNotSaved, {name});
        if (band.Style() == bsIncreaseNumber) CheckIssuedWith(band, name, *tracked);
    }

    // Only a number is issued by what it tracks; a fixed text is known to it anyway, and what does not count is known
    // wherever it stands.
    void CheckIssuedWith(const Band& number, const String& name, const Band& tracked) {
        if (HasAny(name, L";") && tracked.Style() != bsFixed) mvarFindings.Add(FindingKind::TrackedNameSplit, {name});
        const bool isLater = mvarPositions.at(&tracked) > mvarPositions.at(&number);
        if (isLater && tracked.Style() == bsIncreaseNumber && tracked.TracksAnything())
            mvarFindings.Add(FindingKind::TracksLater, {name});
    }

    // ---------------------------------------------------------------------------------------------- fields and macros

    void CheckBound(const Band& band) {
        CheckBinding(band);
        if (band.SwapMode() == smSimpleSwap)
            CheckSimple(band);
        else if (band.SwapMode() == smNoneSwap && !band.Formate().empty())
            ReportTrial(band, mvarTrials.OfAnything(band.Formate(), band.Length()));
    }

    // A band that is converted in layers but is none of them is passed over by issuing.
    void CheckBinding(const Band& band) {
        const bool isUsed = band.SwapMode() != smLayersSwap || mvarLayers.contains(&band);
        const auto& item = band.BoundField();
        const auto items = band.DataFields();
        if (!item || item->Name().empty())
            mvarFindings.Add(isUsed ? FindingKind::BoundToNothing : FindingKind::BoundToNothingUnused);
        else if (!items || !items->HasKey(item->Name()))
            mvarFindings.Add(isUsed ? FindingKind::ItemGone : FindingKind::ItemGoneUnused, {item->Name()});
    }

    void CheckSimple(const Band& band) {
        const auto tree = band.OwnRelations();
        if (!tree || tree->Count() == 0) return mvarFindings.Add(FindingKind::NoRelations);
        const auto survey = SurveyTree(*tree, {&band});
        ReportLayer(band, survey.layers.front());
        ReportBeyond(survey);
    }

    void ReportLayer(const Band& band, const LayerSurvey& layer) {
        Report(FindingKind::CodeLength, layer.wrongLength, {ToText(band.Length())});
        Report(FindingKind::CodeReformatted, layer.reformatted, {band.Formate()});
        ReportTexts(layer);
    }

    // What is found whatever band the layer belongs to.
    void ReportTexts(const LayerSurvey& layer) {
        Report(FindingKind::SameCodes, layer.sameCodes);
        Report(FindingKind::SameValues, layer.sameValues);
        Report(FindingKind::RelationNotSaved, layer.notSaved);
        Report(FindingKind::BranchEmpty, layer.childless);
        if (mvarRule.CodeUCased()) Report(FindingKind::CodeSmallLetters, layer.smallLetters);
    }

    void ReportBeyond(const TreeSurvey& survey) {
        Report(FindingKind::RelationNotSaved, survey.belowNotSaved);
        Report(FindingKind::RelationsBelow, survey.below);
        Report(FindingKind::RelationsLost, survey.lost);
    }

    void Report(FindingKind kind, const Tally& tally, std::vector<String> further = {}) {
        if (tally.count == 0) return;
        std::vector<String> arguments{ToText(tally.count), tally.first};
        arguments.insert(arguments.end(), further.begin(), further.end());
        mvarFindings.Add(kind, std::move(arguments));
    }

    // --------------------------------------------------------------------------------------------------------- layers

    void CheckLayer(const Band& band) {
        const auto found = mvarLayers.find(&band);
        const bool converts = band.SwapMode() == smLayersSwap;
        if (found == mvarLayers.end()) {
            if (converts) mvarFindings.Add(FindingKind::LayerMissing);
            return;
        }
        if (!band.IsBound())
            mvarFindings.Add(FindingKind::LayerNotBound);
        else if (!converts)
            mvarFindings.Add(FindingKind::NotLayered);
        const auto& layers = found->second;
        if (layers.size() > 1) mvarFindings.Add(FindingKind::LayerTwice);
        if (HasAny(band.Name(), L",;")) mvarFindings.Add(FindingKind::LayerNameNotSaved);
        const auto& tree = mvarRule.ExistingRelations();
        if (!tree || tree->Count() == 0) return mvarFindings.Add(FindingKind::NoRelations);
        for (const auto layer : layers)
            CheckRelationsOfLayer(band, layer);
    }

    void CheckRelationsOfLayer(const Band& band, std::size_t layer) {
        if (mvarTree.layers[layer].count == 0)
            mvarFindings.Add(FindingKind::LayerEmpty, {ToText(static_cast<std::int64_t>(layer) + 1)});
        ReportLayer(band, mvarTree.layers[layer]);
    }

    // ------------------------------------------------------------------------------------------------- the whole rule

    void CheckWhole() {
        const auto layers = mvarRule.LayeredBands().Snapshot();
        for (std::size_t i = 0; i < layers.size(); ++i)
            CheckLayerItem(*layers[i], i);
        ReportBeyond(mvarTree);
        CheckItems(mvarRule.UsrFields());
        CheckItems(mvarRule.UsrMacros());
        if (!mvarCounts && !mvarBands.empty()) mvarFindings.Add(FindingKind::NothingCounts);
        if (mvarRule.Style() != csSimple) return;
        mvarFindings.Add(FindingKind::SimpleStyle);
        if (HasAny(mvarRule.Name(), L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1501)});
    }

    void CheckLayerItem(const List& item, std::size_t layer) {
        if (mvarLayerBands[layer] == nullptr) {
            mvarFindings.Add(FindingKind::LayerOfNoBand, {item.Name()});
            ReportTexts(mvarTree.layers[layer]);
        }
        if (HasSeparators(item.ForeignName()) || HasSeparatorsBesideItsName(item))
            mvarFindings.Add(FindingKind::LayerTextNotSaved, {item.Name()});
    }

    void CheckItems(const Lists& items) {
        for (const auto& item : items.Snapshot()) {
            if (HasSeparators(item->Name()) || HasSeparators(item->ForeignName()))
                mvarFindings.Add(FindingKind::ItemNameNotSaved, {item->Name()});
            if (HasSeparatorsBesideItsName(*item)) mvarFindings.Add(FindingKind::ItemTextNotSaved, {item->Name()});
        }
    }

    const CodeClass& mvarRule;
    std::vector<Ref<Band>> mvarBands;
    std::unordered_map<const Band*, std::size_t> mvarPositions;
    std::vector<const Band*> mvarLayerBands; // one for each layer; null where the layer's name is no band's
    std::unordered_map<const Band*, std::vector<std::size_t>> mvarLayers; // places in mvarLayerBands
    TreeSurvey mvarTree;
    FormatTrials mvarTrials;
    Findings mvarFindings;
    bool mvarCounts = false; // whether a number goes up with each code
};

} // namespace

std::vector<Finding> CheckRule(const CodeClass& rule) { return Check(rule).Run(); }

Ref<Names> CodeClass::Check() const {
    auto names = Make<Names>();
    for (const auto& finding : CheckRule(*this))
        names->Append(finding.sentence);
    return names;
}

} // namespace kestrel
