// Any text as a definition: reading never fails, what was read is whole, and what a rule writes settles.
#include <algorithm>

#include "fuzz/Fuzz.h"
#include "support/Checks.h"

namespace kestrel::test {

namespace {

String DefinitionAfter(const String& definition) {
    const auto rule = Make<CodeClass>();
    rule->Load(definition);
    RequireWhole(FaultOf(*rule));
    RequireWhole(DanglingOf(*rule));
    return rule->Definition();
}

// Nothing is escaped, so names that hold a separator of the lists do not come back.
bool HasPlainNames(const CodeClass& rule) {
    const auto bands = rule.Bands();
    return std::all_of(bands.begin(), bands.end(),
                       [](const Ref<Band>& band) { return band->Name().find_first_of(L",;") == String::npos; });
}

// A text may hold what no rule writes (a value before the format that it does not fit, lists read twice, a style
// digit), and the first reading of what was written settles that. From then on writing and reading change nothing.
void CheckSettles(const CodeClass& rule) {
    const String settled = DefinitionAfter(rule.Definition());
    if (HasPlainNames(rule)) Require(DefinitionAfter(settled) == settled, "what a rule wrote reads back the same");
}

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::test;
    const StandIns standIns;
    const auto rule = kestrel::Make<kestrel::CodeClass>();
    kestrel::String text = TextOf(data, size);
    std::replace(text.begin(), text.end(), L'\n', L'\r'); // so that inputs are readable lines
    rule->Load(text);
    RequireWhole(FaultOf(*rule));
    RequireWhole(DanglingOf(*rule));
    Require(standIns.prompts.informed.empty() && standIns.prompts.asked.empty(), "loading shows nothing");
    CheckSettles(*rule);
    rule->Cls();
    Require(rule->Count() == 0 && rule->LayeredBands().Count() == 0, "a cleared rule has no bands and layers");
    return 0;
}
