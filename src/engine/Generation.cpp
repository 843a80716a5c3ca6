// How a rule issues a code: every band gets its current value (the layers first, then what is bound, then the numbers,
// for which the host is asked for the last code issued), and the code is the values one after the other.
//
// The host's handlers run in between and may change the rule: a band that has left it is passed over.

#include <new>

#include "common/CaseFolding.h"
#include "common/Numbers.h"
#include "engine/BoundItem.h"
#include "engine/CodeClass.h"

namespace kestrel {

namespace {

// Whether a band of that name is tracked: each of the names is as many as ";" separates.
bool Contains(const Names& names, StringView bandName) {
    for (std::int32_t position = 1; position <= names.Count(); ++position) {
        Splitter pieces(names[position], L';');
        while (const auto piece = pieces.Next())
            if (SameFolded(*piece, bandName)) return true;
    }
    return false;
}

class Generation {
  public:
    Generation(CodeClass& rule, GetStyles style) noexcept : mvarRule(rule), mvarStyle(style) {}

    void SetLayeredValues() const;
    void SetBoundValues() const;
    void SetNumberValues() const;
    [[nodiscard]] String Code() const;

  private:
    [[nodiscard]] String NextNumber(const Band& band) const;
    [[nodiscard]] String NumberAfter(const Band& band, const String& lastCode) const;
    [[nodiscard]] String MakeFilter(const Names& tracked) const;
    [[nodiscard]] String ExtractBandText(const String& bandName, const String& code) const;

    // Each band in order; what visits them runs nothing of the host, so that none comes or goes meanwhile.
    template <class Visit>
    void ForEachBand(Visit visit) const {
        for (std::int32_t position = 1; position <= mvarRule.Count(); ++position)
            visit(mvarRule.BandAt(position));
    }

    CodeClass& mvarRule;
    GetStyles mvarStyle;
};

// Each layer is looked up under the node found for the layer before it.
void Generation::SetLayeredValues() const {
    const auto& layers = mvarRule.LayeredBands();
    IndexKey layerAbove;
    for (std::int32_t position = 1; position <= layers.Count(); ++position) {
        const auto band = mvarRule.FindBand(layers.Item(position)->Name());
        if (!band) throw Error(Message::InvalidCall);
        const cNode& node = mvarRule.Relations().Converting(csValueToCode, BoundItem(*band)->Value(), layerAbove);
        layerAbove = node.Key();
        band->SetValue(node.Text());
    }
}

void Generation::SetBoundValues() const {
    ForEachBand([](Band& band) {
        if (!band.IsBound() || band.SwapMode() == smLayersSwap) return;
        const auto item = BoundItem(band);
        const auto relations = band.SwapMode() == smSimpleSwap ? band.Relations() : nullptr;
        band.SetValue(relations ? relations->Converting(csValueToCode, item->Value()).Text() : item->Value());
    });
}

void Generation::SetNumberValues() const {
    std::vector<Ref<Band>> numbers;
    ForEachBand([&numbers](Band& band) {
        if (band.Style() == bsIncreaseNumber) numbers.emplace_back(&band);
    });
    for (const auto& band : numbers) {
        if (!mvarRule.Holds(*band) || !band->TracksAnything()) continue;
        String number = NextNumber(*band);
        if (mvarRule.Holds(*band)) band->SetValue(std::move(number));
    }
}

String Generation::NextNumber(const Band& band) const {
    String filter = MakeFilter(*band.TrackedNames());
    const auto length = filter.size();
    String lastCode;
    mvarRule.GetLastCode.Raise(filter, lastCode);
    String number;
    if (lastCode.empty()) {
        number = band.Default().empty() ? band.InitStart() : band.Default();
    } else {
        if (lastCode.size() != length) throw Error(Message::IncorrectPreviousCode);
        number = NumberAfter(band, lastCode);
    }
    const bool belowDefault = !band.Default().empty() && NumericallyLess(number, band.Default());
    return belowDefault ? band.Default() : number;
}

String Generation::NumberAfter(const Band& band, const String& lastCode) const {
    String number = ExtractBandText(band.Name(), lastCode);
    return mvarStyle == gsNewCode ? Increased(number) : number;
}

// As long as the code: fixed and tracked bands stand with their values, the others as a "?" for each character.
String Generation::MakeFilter(const Names& tracked) const {
    constexpr std::size_t usualLength = 64;
    String filter;
    filter.reserve(usualLength);
    ForEachBand([&](const Band& band) {
        const bool isLiteral = band.Style() == bsFixed || Contains(tracked, band.Name());
        const std::size_t length = isLiteral ? band.Value().size() : static_cast<std::size_t>(band.Length());
        if (length > LongestText - filter.size()) throw std::bad_alloc();
        if (isLiteral)
            filter += band.Value();
        else
            filter.append(length, L'?');
    });
    return filter;
}

String Generation::ExtractBandText(const String& bandName, const String& code) const {
    std::uint64_t begin = 0; // the sum of lengths may be beyond any text
    for (std::int32_t position = 1; position <= mvarRule.Count(); ++position) {
        const Band& band = mvarRule.BandAt(position);
        const auto length = static_cast<std::size_t>(band.Length());
        if (band.Name() == bandName)
            return begin < code.size() ? code.substr(static_cast<std::size_t>(begin), length) : String();
        begin += length;
    }
    return {};
}

String Generation::Code() const {
    std::size_t length = 0;
    ForEachBand([&length](const Band& band) { length += band.Value().size(); });
    String code;
    code.reserve(length);
    ForEachBand([&code](const Band& band) { code += band.Value(); });
    return code;
}

} // namespace

String CodeClass::GetCode(int style) {
    if (style != gsCurrent && style != gsNewCode) throw Error(Message::InvalidParameter);
    const Ref<CodeClass> alive(this);
    const Generation generation(*this, static_cast<GetStyles>(style));
    generation.SetLayeredValues();
    generation.SetBoundValues();
    generation.SetNumberValues();
    return generation.Code();
}

} // namespace kestrel
