// Any definition as a rule to check: what is found never changes the rule, what is called impossible fails, and a rule
// without findings issues a code, takes it apart and issues it again.
#include <algorithm>

#include "engine/FormatTrials.h"
#include "fuzz/Fuzz.h"
#include "support/CheckedRules.h"
#include "support/Checks.h"

namespace kestrel::test {

namespace {

// Longer codes show nothing more and cost the run its time.
constexpr std::int32_t LongestBand = 64;

bool HasOnlyShortBands(const CodeClass& rule) {
    const auto bands = rule.Bands();
    return std::all_of(bands.begin(), bands.end(), [](const Ref<Band>& band) { return band->Length() <= LongestBand; });
}

bool TracksAnything(const Band& band) {
    const auto& names = band.TrackedNames();
    return names && !Join(names->Snapshot(), L";").empty();
}

// Whether no code can be issued whatever the values of the fields are.
bool IsImpossible(const Finding& finding) {
    switch (finding.kind) {
    case FindingKind::FirstNumberLength: return TracksAnything(*finding.band);
    case FindingKind::LayerOfNoBand:
    case FindingKind::LayerNotBound:
    case FindingKind::BoundToNothing:
    case FindingKind::ItemGone:
    case FindingKind::NoRelations:
    case FindingKind::LayerEmpty: return true;
    default: return false;
    }
}

// A value that the band takes and, read back from a code, takes again; empty when there is none among those tried.
String FittingText(const Band& band) {
    const auto length = static_cast<std::size_t>(band.Length());
    for (const auto& value : {String(length, L'K'), L'1' + String(length - 1, L'0'), String(L"2026-01-05 01:02:03")}) {
        const String text = FormattedWith(band.Formate(), value);
        if (text.size() == length && FormattedWith(band.Formate(), text) == text) return value;
    }
    return {};
}

Ref<List> ItemOf(const Band& band) { return band.DataFields()->Item(band.BoundField()->Name()); }

bool IsConversion(const Band& band) { return band.SwapMode() != smNoneSwap; }

// Fields that several bands read take the value of the last of them, so a rule with such fields may not fit.
class Fitting {
  public:
    explicit Fitting(CodeClass& rule) : mvarRule(rule) {}

    // Whether every field and macro could be given a value that issuing takes.
    [[nodiscard]] bool Fits() {
        for (const auto& band : mvarRule.Bands()) {
            if (!band->IsBound() || band->SwapMode() == smLayersSwap) continue;
            const String value = IsConversion(*band) ? band->OwnRelations()->Node(1)->Tag() : FittingText(*band);
            if (!Give(*band, value)) return false;
        }
        Ref<cNode> node;
        for (const auto& layer : mvarRule.LayeredBands().Snapshot()) {
            node = node ? node->Child() : mvarRule.Relations().FirstWithParent(nullptr);
            if (!node || !Give(*mvarRule.Band(layer->Name()), node->Tag())) return false;
        }
        return true;
    }

  private:
    bool Give(const Band& band, const String& value) {
        const auto item = ItemOf(band);
        if (value.empty() || !mvarGiven.insert(item.Get()).second) return false;
        item->SetValue(value);
        return true;
    }

    CodeClass& mvarRule;
    std::set<const List*> mvarGiven;
};

void RequireThatItCirculates(CodeClass& rule) {
    String code;
    Require(Succeeds([&] { code = rule.GetCode(gsNewCode); }), "a rule without findings issues its first code");
    Require(code.size() == static_cast<std::size_t>(rule.Length()), "its code has the rule's length");
    Require(Succeeds([&] { rule.ExpCode(code); }), "the code can be taken apart");
    const auto host = rule.GetLastCode.Subscribe([&code](const String& filter, String& value) {
        Require(filter.size() == code.size(), "a pattern is as long as the code");
        value = code;
    });
    String again;
    Require(Succeeds([&] { again = rule.GetCode(gsCurrent); }), "what was taken apart can be issued again");
    Require(again == code, "and is the same code");
}

void CheckAgainstIssuing(CodeClass& rule, const std::vector<Finding>& findings) {
    const bool impossible = std::any_of(findings.begin(), findings.end(), IsImpossible);
    if (impossible)
        Require(!Succeeds([&] { static_cast<void>(rule.GetCode(gsNewCode)); }), "what is called impossible fails");
    else if (findings.empty() && rule.Count() > 0 && Fitting(rule).Fits())
        RequireThatItCirculates(rule);
}

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::test;
    const StandIns standIns;
    const auto rule = kestrel::Make<kestrel::CodeClass>();
    kestrel::String text = TextOf(data, size);
    std::replace(text.begin(), text.end(), L'\n', L'\r'); // so that inputs are readable lines
    rule->Load(text);
    if (!HasOnlyShortBands(*rule)) return 0;
    const auto tree = rule->ExistingRelations();
    const auto findings = kestrel::CheckRule(*rule);
    Require(rule->ExistingRelations() == tree, "a check makes no tree");
    const auto definition = rule->Definition();
    Require(rule->Check()->Count() == static_cast<std::int32_t>(findings.size()), "a check finds the same again");
    Require(rule->Definition() == definition, "a check changes nothing");
    CheckAgainstIssuing(*rule, findings);
    return 0;
}
