// Which menu items and buttons of the designer are enabled.
#pragma once

#include <cstdint>

#include "engine/CodeClass.h"

namespace kestrel::dialogs {

struct BandMenuRules {
    bool add = false; // and each of its three items, with the exception below
    bool beforeAndAfter = false;
    bool remove = false;
    bool removeAll = false;
};
// The selected index is 0-based, -1 for none.
[[nodiscard]] BandMenuRules BandMenuFor(const CodeClass& rule, int selected);

struct RelationRules {
    bool beforeAndAfter = false;
    bool append = false;
    bool child = false;
    bool modifyAndRemove = false;
    bool removeAll = false;
};
// The node is the one selected, or nothing; without a tree nothing is enabled.
[[nodiscard]] RelationRules RelationRulesFor(const CodeClass& rule, Band& band, const Ref<cNode>& node);

// Whether the node may have children: only in the tree of a layer-style band, and as long as its layer is below the
// number of layers of the rule.
[[nodiscard]] bool MayHaveChild(const CodeClass& rule, const Band& band, const cNode& node);

// Whether the position, 0-based, is that of a band.
[[nodiscard]] bool IsBandIndex(const CodeClass& rule, int index);

} // namespace kestrel::dialogs
