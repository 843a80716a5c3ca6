#include "ledger/core/Refusals.h"

#include <algorithm>

#include "hosts/common/Nearest.h"
#include "hosts/common/Text.h"

namespace ledger {

namespace {

using hosts::Dispatch;
using hosts::Variant;

// Which way a relation is gone; the numbers are the component's.
enum class Direction : long { CodeToValue = 0, ValueToCode = 1 };

// In a larger layer nobody waits for the nearest name.
constexpr std::size_t MostCandidates = 2000;

using hosts::Quoted;

// The texts that the layer below a node, or the first one, can convert.
std::vector<std::wstring> CandidatesIn(const Dispatch& tree, const std::wstring& key, Direction direction) {
    std::vector<std::wstring> candidates;
    if (tree.Get(L"Count").Number() == 0) return candidates;
    Dispatch node = key.empty() ? tree.Item(Variant(1L), L"Node").Object(L"Root")
                                : tree.Item(Variant(key), L"Node").Object(L"Child");
    for (; node.Raw() != nullptr && candidates.size() < MostCandidates; node = node.Object(L"Nexts"))
        candidates.push_back(node.Get(direction == Direction::ValueToCode ? L"Tag" : L"Text").Text());
    return candidates;
}

// Follows the layers of one tree.
class Conversions {
  public:
    Conversions(Dispatch tree, Direction direction) : mvarTree(std::move(tree)), mvarDirection(direction) {}

    // Why the text has no counterpart in the next layer, or one that does not fit; empty when it has one that does.
    std::wstring Refusal(const BoundBand& band, const std::wstring& text) {
        const bool toCode = mvarDirection == Direction::ValueToCode;
        try {
            const Variant direction(static_cast<long>(mvarDirection));
            const Variant value(text);
            const Variant key(mvarKey);
            mvarKey = (mvarKey.empty() ? mvarTree.Call(L"Conversion", {&direction, &value})
                                       : mvarTree.Call(L"Conversion", {&direction, &value, &key}))
                          .Text();
            return toCode ? CodeRefusal(band) : std::wstring();
        } catch (const hosts::DispatchError&) {
            return L"band " + band.name + (toCode ? L": no code for " : L": no value for ") + Quoted(text) +
                   hosts::NearestHint(text, CandidatesIn(mvarTree, mvarKey, mvarDirection));
        }
    }

  private:
    [[nodiscard]] std::wstring CodeRefusal(const BoundBand& band) const {
        const std::wstring code = mvarTree.Item(Variant(mvarKey), L"Node").Get(L"Text").Text();
        const std::wstring shown = Formatted(code, band.format);
        return shown.size() == band.length ? std::wstring() : LengthRefusal(band.name, shown, band.length);
    }

    Dispatch mvarTree;
    Direction mvarDirection;
    std::wstring mvarKey; // of the node that the layer before led to
};

const BoundBand* FindBand(const std::vector<BoundBand>& bound, const std::wstring& name) {
    const auto found = std::ranges::find(bound, name, &BoundBand::name);
    return found == bound.end() ? nullptr : &*found;
}

// The layered bands in the order of their layers.
std::vector<BoundBand> Layers(const hosts::Rule& rule, const std::vector<BoundBand>& bound) {
    std::vector<BoundBand> layers;
    const Dispatch names = rule.Component().Object(L"LayeredBands");
    const long count = names.Get(L"Count").Number();
    for (long position = 1; position <= count; ++position)
        if (const BoundBand* band = FindBand(bound, names.Item(Variant(position)).Get(L"Name").Text()))
            layers.push_back(*band);
    return layers;
}

// The texts of the bands are the values of their items, or their parts of a code.
template <class TextOfBand>
std::wstring WhyNotConverted(const hosts::Rule& rule, const std::vector<BoundBand>& bound, Direction direction,
                             const TextOfBand& textOf) {
    Conversions layers(rule.Component().Object(L"Relations"), direction);
    for (const BoundBand& band : Layers(rule, bound))
        if (std::wstring refusal = layers.Refusal(band, textOf(band)); !refusal.empty()) return refusal;
    for (const BoundBand& band : bound) {
        if (band.swap != Swap::Simple) continue;
        Conversions own(rule.Component().Item(Variant(band.name), L"Band").Object(L"Relations"), direction);
        if (std::wstring refusal = own.Refusal(band, textOf(band)); !refusal.empty()) return refusal;
    }
    return {};
}

} // namespace

std::wstring LengthRefusal(const std::wstring& band, const std::wstring& text, std::size_t expected) {
    return L"band " + band + L": " + hosts::Counted(text.size(), L"character") + L", " + std::to_wstring(expected) +
           L" expected: " + Quoted(text);
}

std::wstring WhyValuesAreRefused(const hosts::Rule& rule, const std::vector<BoundBand>& bound) {
    const auto valueOf = [&rule](const BoundBand& band) { return rule.Value(band.item); };
    if (std::wstring refusal = WhyNotConverted(rule, bound, Direction::ValueToCode, valueOf); !refusal.empty())
        return refusal;
    for (const BoundBand& band : bound) {
        const std::wstring shown = Formatted(valueOf(band), band.format);
        if (band.swap == Swap::None && shown.size() != band.length) return LengthRefusal(band.name, shown, band.length);
    }
    return {};
}

std::wstring WhyNotTakenApart(const hosts::Rule& rule, const std::vector<hosts::Band>& bands,
                              const std::vector<BoundBand>& bound, const std::wstring& code) {
    const std::size_t length = rule.CodeLength();
    if (code.size() != length)
        return L"code " + Quoted(code) + L": " + hosts::Counted(code.size(), L"character") + L", " +
               std::to_wstring(length) + L" expected";
    const auto partOf = [&code](const auto& band) { return code.substr(band.position, band.length); };
    for (const hosts::Band& band : bands) {
        if (band.style != hosts::BandStyle::Fixed) continue;
        const std::wstring expected = rule.BandValue(band.name);
        if (partOf(band) != expected)
            return L"band " + band.name + L": " + Quoted(partOf(band)) + L", " + Quoted(expected) + L" expected";
    }
    return WhyNotConverted(rule, bound, Direction::CodeToValue, partOf);
}

} // namespace ledger
