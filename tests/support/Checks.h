// What must hold of a collection at any time, whatever was done to it. Each check tells the first fault that it finds,
// in words, and is empty when there is none, so that tests and fuzzers share it.
#pragma once

#include <set>
#include <string>

#include "common/Ports.h"
#include "engine/CodeClass.h"

namespace kestrel::test {

// Every node is found at its position and under its own key, and knows its tree; chains of parents end.
[[nodiscard]] inline std::string FaultOf(const cNodes& tree) {
    std::set<String> keys;
    for (std::int32_t position = 1; position <= tree.Count(); ++position) {
        const auto node = tree.Node(position);
        const auto fault = [position](const char* what) { return what + std::to_string(position); };
        if (!keys.insert(node->Key()).second) return fault("a key occurs again at ");
        if (node->Index() != position) return fault("the index is wrong at ");
        if (tree.Node(node->Key()) != node) return fault("the key finds another node than ");
        if (node->GetOwner().Get() != &tree) return fault("another tree owns the node at ");
        if (node->Root()->Parent()) return fault("the root has a parent at ");
        if (node->Descendants() >= tree.Count()) return fault("too many descendants at ");
    }
    return {};
}

// Every item that has a name is found under it, at its position.
[[nodiscard]] inline std::string FaultOf(const Lists& list) {
    std::set<String> names;
    for (std::int32_t position = 1; position <= list.Count(); ++position) {
        const auto item = list.Item(position);
        const auto fault = [position](const char* what) { return what + std::to_string(position); };
        if (list.FindItemPosition(item) != position) return fault("the item stands twice at ");
        if (item->Name().empty()) continue;
        if (!names.insert(item->Name()).second) return fault("a name occurs again at ");
        if (list.Item(item->Name()) != item) return fault("the name finds another item than ");
    }
    return {};
}

// The bands are found by name in any case and by position, and the fields in use are those that bands are bound to.
[[nodiscard]] inline std::string FaultOf(const CodeClass& rule) {
    std::set<const List*> used;
    for (std::int32_t position = 1; position <= rule.Count(); ++position) {
        const auto band = rule.Band(position);
        const auto fault = [position](const char* what) { return what + std::to_string(position); };
        if (band->Name().empty()) return fault("no name at ");
        if (rule.FindBand(TheText().Upper(band->Name())) != band) return fault("the name finds another band than ");
        if (band->Index() != position) return fault("the index is wrong at ");
        if (band->ParentRule() != &rule) return fault("the band belongs to no or another rule at ");
        if (band->BoundField() && !band->BoundField()->Name().empty()) used.insert(band->BoundField().Get());
    }
    for (const auto& field : rule.UsedFields().Snapshot())
        if (used.erase(field.Get()) == 0) return "a field in use is not bound";
    return used.empty() ? std::string() : "a bound field is not in use";
}

// What bands track, what triggers them and what the layers name are bands of the rule. (A handler that takes a band
// away while a list asks whether to add its name can break this, and nothing else.)
[[nodiscard]] inline std::string DanglingOf(const CodeClass& rule) {
    const auto isBand = [&rule](const String& name) { return static_cast<bool>(rule.FindBand(name)); };
    for (const auto& band : rule.Bands()) {
        if (band->TrigerBand() && !rule.Holds(*band->TrigerBand())) return "a trigger is no band of the rule";
        if (const auto tracked = band->TrackBands())
            for (const auto& name : tracked->Snapshot())
                if (!isBand(name)) return "what is tracked is no band of the rule";
    }
    for (const auto& layer : rule.LayeredBands().Snapshot())
        if (!isBand(layer->Name())) return "a layer is no band of the rule";
    return {};
}

} // namespace kestrel::test
