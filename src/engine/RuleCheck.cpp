#include "engine/RuleCheck.h"

#include "common/Numbers.h"
#include "common/Ports.h"
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

// A band's place among the layers.
struct LayerPlace {
    std::int32_t layer = 0; // from 1
    bool twice = false;
};

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
            if (!band) continue;
            const auto [place, isNew] = mvarLayers.try_emplace(band.Get());
            if (isNew)
                place->second.layer = static_cast<std::int32_t>(mvarLayerBands.size());
            else
                place->second.twice = true;
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
        if (HasAny(text, L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1503)});
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

    // The longer a number grows, the longer its text: the last one that fits is found by halving.
    void CountNumbers(const Band& band, const String& start) {
        const auto fits = [&](std::uint32_t step) {
            return HasLengthOf(band, FormattedWith(band.Formate(), Increased(start, step)));
        };
        if (fits(EnoughNumbers - 1)) return;
        std::uint32_t last = 0;
        for (std::uint32_t tooFar = EnoughNumbers - 1; tooFar - last > 1;) {
            const auto middle = (last + tooFar) / 2;
            (fits(middle) ? last : tooFar) = middle;
        }
        mvarFindings.Add(FindingKind::FewNumbers, {start, Increased(start, last), ToText(last + 1)});
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
        const auto& names = band.TrackedNames();
        // Issuing joins the names before it looks whether there are any.
        const bool none = !names || names->Count() == 0 || (names->Count() == 1 && names->Item(1).empty());
        if (!none) {
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
        if (HasAny(name, L";")) mvarFindings.Add(FindingKind::TrackedNameSplit, {name});
        const bool isLater = mvarPositions.at(tracked.Get()) > mvarPositions.at(&band);
        if (isLater && tracked->Style() == bsIncreaseNumber) mvarFindings.Add(FindingKind::TracksLater, {name});
    }

    // ---------------------------------------------------------------------------------------------- fields and macros

    void CheckBound(const Band& band) {
        const auto& item = band.BoundField();
        const auto items = band.DataFields();
        if (!item || item->Name().empty())
            mvarFindings.Add(FindingKind::BoundToNothing);
        else if (!items || !items->HasKey(item->Name()))
            mvarFindings.Add(FindingKind::ItemGone, {item->Name()});
        if (band.SwapMode() == smSimpleSwap)
            CheckSimple(band);
        else if (band.SwapMode() == smNoneSwap && !band.Formate().empty())
            ReportTrial(band, mvarTrials.OfAnything(band.Formate(), band.Length()));
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
        Report(FindingKind::SameCodes, layer.sameCodes);
        Report(FindingKind::SameValues, layer.sameValues);
        Report(FindingKind::RelationNotSaved, layer.notSaved);
        Report(FindingKind::BranchEmpty, layer.childless);
        if (mvarRule.CodeUCased()) Report(FindingKind::CodeSmallLetters, layer.smallLetters);
    }

    void ReportBeyond(const TreeSurvey& survey) {
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
        if (!converts) return mvarFindings.Add(FindingKind::NotLayered);
        const auto& place = found->second;
        if (place.twice) mvarFindings.Add(FindingKind::LayerTwice);
        if (HasAny(band.Name(), L",;")) mvarFindings.Add(FindingKind::LayerNameNotSaved);
        const auto& tree = mvarRule.ExistingRelations();
        const auto& layer = mvarTree.layers[static_cast<std::size_t>(place.layer) - 1];
        if (!tree || tree->Count() == 0)
            mvarFindings.Add(FindingKind::NoRelations);
        else if (layer.count == 0)
            mvarFindings.Add(FindingKind::LayerEmpty, {ToText(place.layer)});
        ReportLayer(band, layer);
    }

    // ------------------------------------------------------------------------------------------------- the whole rule

    void CheckWhole() {
        for (std::size_t i = 0; i < mvarLayerBands.size(); ++i)
            if (mvarLayerBands[i] == nullptr)
                mvarFindings.Add(FindingKind::LayerOfNoBand,
                                 {mvarRule.LayeredBands().Item(static_cast<std::int64_t>(i) + 1)->Name()});
        ReportBeyond(mvarTree);
        CheckItems(mvarRule.UsrFields());
        CheckItems(mvarRule.UsrMacros());
        if (!mvarCounts && !mvarBands.empty()) mvarFindings.Add(FindingKind::NothingCounts);
        if (mvarRule.Style() != csSimple) return;
        mvarFindings.Add(FindingKind::SimpleStyle);
        if (HasAny(mvarRule.Name(), L"\r")) mvarFindings.Add(FindingKind::LineBreak, {Caption(1501)});
    }

    void CheckItems(const Lists& items) {
        for (const auto& item : items.Snapshot())
            if (TraitsOf(item->Name()).hasSeparators || TraitsOf(item->ForeignName()).hasSeparators)
                mvarFindings.Add(FindingKind::ItemNameNotSaved, {item->Name()});
    }

    const CodeClass& mvarRule;
    std::vector<Ref<Band>> mvarBands;
    std::unordered_map<const Band*, std::size_t> mvarPositions;
    std::vector<const Band*> mvarLayerBands; // one for each layer; null where the layer's name is no band's
    std::unordered_map<const Band*, LayerPlace> mvarLayers;
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
