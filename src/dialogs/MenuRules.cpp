#include "dialogs/MenuRules.h"

namespace kestrel::dialogs {

bool IsBandIndex(const CodeClass& rule, int index) { return index >= 0 && index < rule.Count(); }

BandMenuRules BandMenuFor(const CodeClass& rule, int selected) {
    BandMenuRules rules;
    rules.add = rule.AllowAddBand();
    rules.beforeAndAfter = rules.add && rule.Count() > 0;
    rules.remove = rule.AllowDropBand() && IsBandIndex(rule, selected) && rule.Band(selected + 1)->AllowDroped();
    rules.removeAll = rule.AllowDropBand() && rule.Count() > 0;
    return rules;
}

RelationRules RelationRulesFor(const CodeClass& rule, Band& band, const Ref<cNode>& node) {
    RelationRules rules;
    const auto tree = band.Relations();
    if (!tree) return rules;
    rules.append = true;
    rules.removeAll = tree->Count() > 0;
    if (!node) return rules;
    rules.beforeAndAfter = true;
    rules.modifyAndRemove = true;
    rules.child = MayHaveChild(rule, band, *node);
    return rules;
}

bool MayHaveChild(const CodeClass& rule, const Band& band, const cNode& node) {
    return band.SwapMode() == smLayersSwap && node.Layer() < rule.LayeredBands().Count();
}

} // namespace kestrel::dialogs
