// How a rule takes a code apart: each band receives its part, and the fields and macros that bands are bound to receive
// what the part stands for.

#include <algorithm>

#include "engine/BoundItem.h"
#include "engine/CodeClass.h"

namespace kestrel {

namespace {

void SpreadOverBands(const CodeClass& rule, const String& code) {
    std::uint64_t position = 0;
    for (const auto& band : rule.Bands()) {
        const auto length = static_cast<std::size_t>(band->Length());
        // In the simple style a rule with bands takes the empty code, and each band its empty part.
        const String part =
            code.substr(static_cast<std::size_t>(std::min<std::uint64_t>(position, code.size())), length);
        position += length;
        if (band->Style() != bsFixed)
            band->SetValue(part);
        else if (band->Value() != part)
            throw Error(Message::FixedValueError);
    }
}

// Each layer is looked up under the node found for the layer before it.
void BringBackLayers(CodeClass& rule) {
    IndexKey layerAbove;
    for (const auto& layer : rule.LayeredBands().Snapshot()) {
        const auto band = rule.Band(layer->Name());
        String value = band->Value();
        layerAbove = rule.Relations().Conversion(csCodeToValue, value, layerAbove);
        BoundItem(*band)->SetValue(value);
    }
}

void BringBackBoundValues(const CodeClass& rule) {
    for (const auto& band : rule.Bands()) {
        if (!band->IsBound() || band->SwapMode() == smLayersSwap) continue;
        String value = band->Value();
        if (band->SwapMode() == smSimpleSwap) band->Relations()->Conversion(csCodeToValue, value);
        BoundItem(*band)->SetValue(value);
    }
}

} // namespace

void CodeClass::ExpCode(const String& code) {
    const Ref<CodeClass> alive(this);
    if (code.size() != static_cast<std::size_t>(Length())) throw Error(Message::IllegalCodeLength);
    SpreadOverBands(*this, code);
    BringBackLayers(*this);
    BringBackBoundValues(*this);
}

} // namespace kestrel
