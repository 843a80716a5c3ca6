// What must hold of a collection at any time, whatever was done to it. Each check tells the first fault that it finds,
// in words, and is empty when there is none, so that tests and fuzzers share it.
#pragma once

#include <set>
#include <string>

#include "lists/Lists.h"
#include "relations/cNodes.h"

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

} // namespace kestrel::test
