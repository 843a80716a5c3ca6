// What a check of a rule has found: each finding tells of one band, or of the rule as a whole, what will go wrong or
// what is not as it looks. Findings are told to people; nothing is forbidden by them.
#pragma once

#include <unordered_map>
#include <vector>

#include "bands/Band.h"

namespace kestrel {

// The kinds of findings; each is the number of its text in the string table.
enum class FindingKind : int {
    // Numbers and letters.
    FirstNumberLength = 2101,
    EndLength = 2102,
    EndBelowBegin = 2103,
    FewNumbers = 2104,
    TracksNothing = 2105,
    TracksNothingEmpty = 2106,
    LetterStays = 2107,
    LetterEmpty = 2108,
    // Formats.
    FormatNeverFits = 2111,
    FormatUnstable = 2112,
    NumberUnreadable = 2113,
    NumberNotNumeric = 2114,
    // Tracked bands.
    TracksNoBand = 2121,
    TracksItself = 2122,
    TracksLater = 2123,
    TrackedNameNotSaved = 2124,
    TrackedNameSplit = 2125,
    // Where values come from.
    NoStyle = 2131,
    FixedTextMissing = 2132,
    BoundToNothing = 2133,
    ItemGone = 2134,
    BoundToNothingUnused = 2135, // issuing passes the band over
    ItemGoneUnused = 2136,
    // Relations of a band or of its layer.
    NoRelations = 2141,
    LayerEmpty = 2142,
    BranchEmpty = 2143,
    CodeLength = 2144,
    CodeReformatted = 2145,
    SameCodes = 2146,
    SameValues = 2147,
    CodeSmallLetters = 2148,
    RelationNotSaved = 2149,
    RelationsBelow = 2150,
    RelationsLost = 2151,
    // Layers.
    LayerMissing = 2161,
    LayerTwice = 2162,
    NotLayered = 2163,
    LayerNameNotSaved = 2164,
    LayerOfNoBand = 2165,
    LayerNotBound = 2166,
    // Texts that the definition string does not bring back.
    LineBreak = 2171,
    ItemNameNotSaved = 2172,
    ItemTextNotSaved = 2173,
    LayerTextNotSaved = 2174,
    // What issuing does not use.
    BeginUnused = 2181,
    EndUnused = 2182,
    TriggerUnused = 2183,
    SmallLetters = 2184,
    // The rule.
    NothingCounts = 2191,
    SimpleStyle = 2192
};

struct Finding {
    Ref<Band> band; // nothing: the finding is about the whole rule
    FindingKind kind;
    std::vector<String> arguments; // what stands for each "*" of the kind's text, in order
    String sentence;               // for people, in their language; about a band it begins with the name in brackets
};

// Collects findings and words their sentences.
class Findings {
  public:
    // From here on findings are about this band, or about the whole rule when it is nothing.
    void Of(Ref<Band> band) { mvarBand = std::move(band); }
    void Add(FindingKind kind, std::vector<String> arguments = {});
    [[nodiscard]] std::vector<Finding> Take() noexcept { return std::move(mvarFindings); }

  private:
    const String& TextOf(FindingKind kind);

    Ref<Band> mvarBand;
    std::vector<Finding> mvarFindings;
    std::unordered_map<int, String> mvarTexts; // a rule may have as many findings of a kind as it has bands
};

} // namespace kestrel
