#include "ledger/core/definition/RuleReview.h"

#include <algorithm>
#include <cwchar>

#include "hosts/common/Rule.h"
#include "hosts/common/Text.h"
#include "ledger/core/CodeMaker.h"
#include "ledger/core/pattern/FormatLength.h"

namespace ledger {

namespace {

using hosts::BandStyle;
using hosts::Dispatch;
using hosts::Variant;

using hosts::LayersSwap;
using hosts::SimpleSwap;

std::vector<std::wstring> NamesIn(const Dispatch& items, const wchar_t* property) {
    std::vector<std::wstring> names;
    for (long position = 1; position <= items.Get(L"Count").Number(); ++position)
        names.push_back(items.Item(Variant(position)).Get(property).Text());
    return names;
}

// ------------------------------------------------------------------------------------------------------- findings

// Room for more numbers than anybody is warned of.
constexpr std::size_t AmpleDigits = 9;

// A ledger keeps to the end of a number, which whoever wrote it meant; the component would tell how many numbers its
// digits could show.
void ForgetEnd(const Dispatch& band) {
    if (band.Get(L"InitEnd").Text().empty()) return;
    band.Put(L"InitEnd", Variant(std::wstring_view()));
    try {
        band.Put(L"Length", Variant(static_cast<long>(AmpleDigits)));
        band.Put(L"Formate", Variant(std::wstring(AmpleDigits, L'0')));
    } catch (const hosts::DispatchError&) { // what does not fit is told as it is
    }
}

// A ledger counts a number that tracks nothing over the whole rule, which is what tracking a fixed text means. A copy
// of the rule is told so before it is asked.
void SetUpForLedger(const hosts::Rule& copy) {
    const std::wstring anchor = L"\x2020";
    bool hasAnchor = false;
    for (const hosts::Band& band : copy.Bands()) {
        if (band.style != BandStyle::Number) continue;
        const Dispatch object = copy.Component().Item(Variant(band.name), L"Band");
        ForgetEnd(object);
        if (!band.tracked.empty()) continue;
        const Variant name(anchor);
        const Variant fixed(static_cast<long>(BandStyle::Fixed));
        const Variant none(0L);
        const Variant text(std::wstring_view(L"1"));
        if (!hasAnchor) copy.Component().Call(L"Add", {&name, &fixed, &none, &text});
        hasAnchor = true;
        object.Object(L"TrackBands").Call(L"Add", {&name});
    }
}

std::vector<std::wstring> FindingsOf(const std::wstring& definition) {
    hosts::Rule copy;
    copy.Load(definition);
    SetUpForLedger(copy);
    const Dispatch sentences(copy.Component().Call(L"Check").Object());
    std::vector<std::wstring> findings;
    const long count = sentences.Get(L"Count").Number();
    for (long position = 1; position <= count; ++position) {
        const Variant index(position);
        findings.push_back(hosts::OneLine(sentences.Get(L"Item", {&index}).Text()));
    }
    return findings;
}

// ------------------------------------------------------------------------------------------------------ obstacles

class Obstacles {
  public:
    Obstacles(const hosts::Rule& rule, bool isSound) : mvarRule(rule), mvarIsSound(isSound) {}

    std::vector<std::wstring> Find() {
        mvarLayers = NamesIn(mvarRule.Component().Object(L"LayeredBands"), L"Name");
        for (const hosts::Band& band : mvarRule.Bands()) {
            mvarBand = band;
            mvarObject = mvarRule.Component().Item(Variant(band.name), L"Band");
            FindOfBand();
        }
        return std::move(mvarFound);
    }

  private:
    void Add(const std::wstring& cause) { mvarFound.push_back(L"band " + mvarBand.name + L": " + cause); }
    [[nodiscard]] std::wstring Text(const wchar_t* property) const { return mvarObject.Get(property).Text(); }

    void FindOfBand() {
        switch (mvarBand.style) {
        case BandStyle::Fixed: return FindOfFixed();
        case BandStyle::Macro:
        case BandStyle::Field: return FindOfBound();
        case BandStyle::Number: return FindOfNumber();
        case BandStyle::Letter:
            if (Text(L"Value").empty()) Add(L"no letter is set");
            return;
        }
        Add(L"it has no style");
    }

    void FindOfFixed() {
        if (Text(L"Default").size() != mvarBand.length) Add(L"the fixed text is missing");
    }

    void FindOfBound() {
        if (mvarObject.Object(L"DataField").Get(L"Name").Text().empty()) Add(L"it is bound to no field or macro");
        const long swap = mvarObject.Get(L"SwapMode").Number();
        if (swap == LayersSwap && std::ranges::find(mvarLayers, mvarBand.name) == mvarLayers.end())
            return Add(L"it is converted in layers, but is not among the layers");
        const bool isConverted = swap == SimpleSwap || swap == LayersSwap;
        if (isConverted && mvarObject.Object(L"Relations").Get(L"Count").Number() == 0)
            Add(L"it is converted, but there are no codes and values");
        if (!isConverted) FindOtherLength();
    }

    // What is written at the same length for every value, and that length is not the band's.
    void FindOtherLength() {
        const std::wstring format = Text(L"Formate");
        const std::wstring formula = mvarObject.Object(L"DataField").Get(L"Description").Text();
        const bool isComputed = mvarBand.style == BandStyle::Macro && !formula.empty() && format.empty();
        if (isComputed && !mvarIsSound) return;
        const auto length = isComputed ? FormulaLengthOf(formula) : FixedLengthOf(format);
        if (!length || *length == 0 || *length == mvarBand.length) return;
        Add((isComputed ? L"the formula " + formula + L" gives " : L"the format \"" + format + L"\" writes ") +
            hosts::Counted(*length, L"character") + L", and the band has " + std::to_wstring(mvarBand.length));
    }

    void FindOfNumber() {
        const std::wstring begin = Text(L"Default").empty() ? Text(L"InitStart") : Text(L"Default");
        const std::wstring end = Text(L"InitEnd");
        if (!end.empty() && std::wcstod(end.c_str(), nullptr) < std::wcstod(begin.c_str(), nullptr))
            Add(L"the end " + end + L" lies below the first number, " + begin);
        try {
            mvarObject.Put(L"Value", Variant(begin));
        } catch (const hosts::DispatchError& error) {
            Add(L"the first number \"" + begin + L"\" does not fit " + hosts::Counted(mvarBand.length, L"character") +
                L" with the format \"" + Text(L"Formate") + L"\": " + hosts::OneLine(error.Message()));
        }
    }

    const hosts::Rule& mvarRule;
    bool mvarIsSound; // its formulas
    std::vector<std::wstring> mvarLayers;
    hosts::Band mvarBand;
    Dispatch mvarObject;
    std::vector<std::wstring> mvarFound;
};

// Whether a band shows the field's value.
bool Shows(const hosts::Rule& rule, const std::wstring& field) {
    return std::ranges::any_of(rule.Bands(), [&](const hosts::Band& band) {
        if (band.style != BandStyle::Field && band.style != BandStyle::Macro) return false;
        return rule.Component().Item(Variant(band.name), L"Band").Object(L"DataField").Get(L"Name").Text() == field;
    });
}

// Why the rule's formulas make no sense; empty when they do.
std::wstring WhyUnsound(const std::wstring& definition) {
    bool isRead = false;
    try {
        const CodeMaker maker(definition);
        isRead = true;
        maker.RefuseUnsound();
    } catch (const hosts::HostError& error) {
        if (isRead) return error.Message();
    }
    return {}; // what else a ledger does not take is told where it is stored
}

} // namespace

std::vector<std::wstring> RuleReview::Lines() const {
    std::vector<std::wstring> lines;
    for (const Untaken& one : untaken)
        lines.push_back(LineOf(one));
    for (const std::wstring& finding : findings)
        lines.push_back(hosts::Shown(finding));
    for (const std::wstring& cause : NoCode())
        lines.push_back(L"no code can be issued: " + hosts::Shown(cause));
    return lines;
}

std::vector<std::wstring> RuleReview::NoCode() const {
    std::vector<std::wstring> causes = obstacles;
    if (!unsound.empty()) causes.push_back(unsound);
    return causes;
}

RuleReview ReviewDefinition(const std::wstring& definition, const RuleSettings& settings) {
    hosts::Rule rule;
    rule.Load(definition);
    RuleReview review;
    review.untaken = FindUntaken(definition, rule.Definition());
    review.findings = FindingsOf(definition);
    if (!settings.series.empty() && !Shows(rule, settings.series))
        review.findings.push_back(L"Codes of different values of " + settings.series +
                                  L" can be the same, for they are counted separately and the code does not show them; "
                                  L"the second of two equal codes is refused.");
    review.unsound = WhyUnsound(definition);
    review.obstacles = Obstacles(rule, review.unsound.empty()).Find();
    return review;
}

} // namespace ledger
