// Any text as a relation tree: what was read is whole, and is written in a form that reads back the same.
#include "fuzz/Fuzz.h"
#include "support/Checks.h"
#include "support/Trees.h"

namespace kestrel::test {

namespace {

void CheckRoundTrip(const cNodes& tree) {
    const String written = tree.ExportNodes();
    const auto again = Make<cNodes>();
    Require(Succeeds([&] { again->ImportNodes(written); }), "what a tree wrote can be read");
    Require(again->ExportNodes() == written, "what a tree wrote reads back the same");
}

// Each code finds, in its layer, the first node that has it.
void CheckConversion(const cNodes& tree) {
    for (const auto& node : tree.Snapshot()) {
        if (node->Text().empty()) continue;
        String value = node->Text();
        const auto under = node->Parent() ? IndexKey(node->Parent()->Key()) : IndexKey();
        const auto found = tree.Node(tree.Conversion(csCodeToValue, value, under));
        Require(found->Parent() == node->Parent(), "a conversion stays in its layer");
        Require(found->Index() <= node->Index(), "a conversion finds the first match");
        Require(TheText().SameText(found->Text(), node->Text()), "a conversion finds its code");
        Require(value == found->Tag(), "a conversion gives the value of what it found");
    }
}

void CheckRemove(cNodes& tree, std::size_t seed) {
    const auto count = tree.Count();
    if (count == 0) return;
    const auto node = tree.Node(static_cast<std::int32_t>(seed % static_cast<std::size_t>(count)) + 1);
    const auto gone = node->Descendants() + 1;
    tree.Remove(node->Key());
    RequireWhole(FaultOf(tree));
    Require(tree.Count() == count - gone, "a node goes with all its descendants");
    for (const auto& left : tree.Snapshot())
        Require(left->Parent() != node, "no descendant stays");
}

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::test;
    const StandIns standIns;
    const auto tree = TreeOf(L"1;,1,old,OLD");
    Succeeds([&] { tree->ImportNodes(TextOf(data, size)); });
    RequireWhole(FaultOf(*tree));
    CheckRoundTrip(*tree);
    CheckConversion(*tree);
    CheckRemove(*tree, size);
    return 0;
}
