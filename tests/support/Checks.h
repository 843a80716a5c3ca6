// What must hold of a collection at any time, whatever was done to it.
#pragma once

#include <set>

#include <gtest/gtest.h>

#include "support/Trees.h"

namespace kestrel::test {

// Every node is found at its position and under its own key, and knows its place; chains of parents end.
inline void ExpectWhole(const cNodes& tree) {
    std::set<String> keys;
    for (std::int32_t position = 1; position <= tree.Count(); ++position) {
        const auto node = tree.Node(position);
        EXPECT_EQ(node->Index(), position);
        EXPECT_TRUE(keys.insert(node->Key()).second) << testing::PrintToString(node->Key());
        EXPECT_EQ(tree.Node(node->Key()), node);
        EXPECT_EQ(node->GetOwner().Get(), &tree);
        EXPECT_FALSE(node->Root()->Parent());
        EXPECT_LE(node->Descendants(), tree.Count());
    }
}

} // namespace kestrel::test
