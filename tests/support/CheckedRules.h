// A rule of business with which all is well, for tests of what a check of rules finds.
//
// INV- + year and month as the application gives them (four digits would be read as a number of days, were they
// formatted as a date) + the customer's code + country and region in two layers + a number for each year and month.
#pragma once

#include "engine/RuleCheck.h"
#include "support/Rules.h"

namespace kestrel::test {

inline Ref<CodeClass> GoodRule() {
    auto rule = Make<CodeClass>();
    AddFixed(*rule, L"Prefix", L"INV-");
    AddMacro(*rule, L"Period", L"Day", 4);
    const auto customer = AddField(*rule, L"Customer", L"Client", 2, smSimpleSwap);
    customer->Relations()->ImportNodes(L"2;,1,01,Acme;,2,02,Widgets & Co");
    AddField(*rule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*rule, L"Region", L"Area", 1, smLayersSwap);
    rule->Relations().ImportNodes(L"4;,1,DE,Germany;1,2,N,North;,3,FR,France;3,4,N,North");
    AddNumber(*rule, L"Number", 4)->TrackBands()->Add(L"Period");
    return rule;
}

// The sentences of all findings, in order.
[[nodiscard]] inline Lines SentencesOf(const CodeClass& rule) {
    Lines sentences;
    for (const auto& finding : CheckRule(rule))
        sentences.push_back(finding.sentence);
    return sentences;
}

// Those of one kind.
[[nodiscard]] inline Lines SentencesOf(const CodeClass& rule, FindingKind kind) {
    Lines sentences;
    for (const auto& finding : CheckRule(rule))
        if (finding.kind == kind) sentences.push_back(finding.sentence);
    return sentences;
}

} // namespace kestrel::test
