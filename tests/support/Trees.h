// Relation trees for tests.
#pragma once

#include "relations/cNodes.h"

namespace kestrel::test {

// The tree that the text form describes.
[[nodiscard]] inline Ref<cNodes> TreeOf(const String& text) {
    auto tree = Make<cNodes>();
    tree->ImportNodes(text);
    return tree;
}

// The keys of all nodes in order, joined with blanks.
[[nodiscard]] inline String KeysOf(const cNodes& tree) {
    std::vector<String> keys;
    for (const auto& node : tree.Snapshot())
        keys.push_back(node->Key());
    return Join(keys, L" ");
}

// The node's key; "-" for nothing.
[[nodiscard]] inline String KeyOf(const Ref<cNode>& node) { return node ? node->Key() : L"-"; }

// The text of a tree whose nodes form one chain: each the only child of the one before.
[[nodiscard]] inline String ChainText(int count) {
    String text = ToText(count);
    for (int i = 1; i <= count; ++i) {
        text += L';';
        if (i > 1) text += ToText(i - 1);
        text += L',' + ToText(i) + L",c" + ToText(i) + L",v" + ToText(i);
    }
    return text;
}

// The text of a tree of one layer.
[[nodiscard]] inline String FlatText(int count) {
    String text = ToText(count);
    for (int i = 1; i <= count; ++i)
        text += L";," + ToText(i) + L",c" + ToText(i) + L",v" + ToText(i);
    return text;
}

} // namespace kestrel::test
