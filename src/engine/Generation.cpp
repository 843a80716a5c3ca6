// How a rule issues a code: every band gets its current value (the layers first, then what is bound, then the numbers,
// for which the host is asked for the last code issued), and the code is the values one after the other.
//
// The host's handlers run in between and may change the rule: a band that has left it is passed over.

#include <algorithm>
#include <new>

#include "common/CaseFolding.h"
#include "common/Numbers.h"
#include "engine/BoundItem.h"
#include "engine/CodeClass.h"

namespace kestrel {

namespace {

class Generation {
  public:
    Generation(CodeClass& rule, GetStyles style) noexcept : mvarRule(rule), mvarStyle(style) {}

    void SetLayeredValues() const;
    void SetBoundValues() const;
    void SetNumberValues() const;

  private:
    [[nodiscard]] String NextNumber(const Band& band, const String& trackList) const;
    [[nodiscard]] String NumberAfter(const Band& band, const String& lastCode) const;
    [[nodiscard]] String MakeFilter(const String& trackList) const;
    [[nodiscard]] String ExtractBandText(const String& bandName, const String& code) const;

    CodeClass& mvarRule;
    GetStyles mvarStyle;
};

// Each layer is looked up under the node found for the layer before it.
void Generation::SetLayeredValues() const {
    IndexKey layerAbove;
    for (const auto& layer : mvarRule.LayeredBands().Snapshot()) {
        const auto band = mvarRule.Band(layer->Name());
        String value = BoundItem(*band)->Value();
        layerAbove = mvarRule.Relations().Conversion(csValueToCode, value, layerAbove);
        band->SetValue(value);
    }
}

void Generation::SetBoundValues() const {
    for (const auto& band : mvarRule.Bands()) {
        if (!band->IsBound() || band->SwapMode() == smLayersSwap) continue;
        String value = BoundItem(*band)->Value();
        if (band->SwapMode() == smSimpleSwap) band->Relations()->Conversion(csValueToCode, value);
        band->SetValue(value);
    }
}

void Generation::SetNumberValues() const {
    for (const auto& band : mvarRule.Bands()) {
        if (band->Style() != bsIncreaseNumber || !mvarRule.Holds(*band)) continue;
        const String trackList = Join(band->TrackBands()->Snapshot(), L";");
        if (trackList.empty()) continue;
        const String number = NextNumber(*band, trackList);
        if (mvarRule.Holds(*band)) band->SetValue(number);
    }
}

String Generation::NextNumber(const Band& band, const String& trackList) const {
    const String filter = MakeFilter(trackList);
    String offered = filter;
    String lastCode;
    mvarRule.GetLastCode.Raise(offered, lastCode);
    String number;
    if (lastCode.empty()) {
        number = band.Default().empty() ? band.InitStart() : band.Default();
    } else {
        if (lastCode.size() != filter.size()) throw Error(Message::IncorrectPreviousCode);
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
String Generation::MakeFilter(const String& trackList) const {
    const auto tracked = Split(trackList, L';');
    const auto isLiteral = [&tracked](const Band& band) {
        return band.Style() == bsFixed || std::any_of(tracked.begin(), tracked.end(),
                                                      [&](StringView name) { return SameFolded(name, band.Name()); });
    };
    const auto bands = mvarRule.Bands();
    std::uint64_t length = 0;
    for (const auto& band : bands)
        length += isLiteral(*band) ? band->Value().size() : static_cast<std::uint64_t>(band->Length());
    if (length > LongestText) throw std::bad_alloc();
    String filter;
    filter.reserve(static_cast<std::size_t>(length));
    for (const auto& band : bands) {
        if (isLiteral(*band))
            filter += band->Value();
        else
            filter.append(static_cast<std::size_t>(band->Length()), L'?');
    }
    return filter;
}

String Generation::ExtractBandText(const String& bandName, const String& code) const {
    std::uint64_t position = 0; // the sum of lengths may be beyond any text
    for (const auto& band : mvarRule.Bands()) {
        const auto length = static_cast<std::size_t>(band->Length());
        if (band->Name() == bandName)
            return position < code.size() ? code.substr(static_cast<std::size_t>(position), length) : String();
        position += length;
    }
    return {};
}

} // namespace

String CodeClass::GetCode(int style) {
    if (style != gsCurrent && style != gsNewCode) throw Error(Message::InvalidParameter);
    const Ref<CodeClass> alive(this);
    const Generation generation(*this, static_cast<GetStyles>(style));
    generation.SetLayeredValues();
    generation.SetBoundValues();
    generation.SetNumberValues();
    String code;
    for (const auto& band : Bands())
        code += band->Value();
    return code;
}

} // namespace kestrel
