// The rules that the tests of checks start from.
#pragma once

#include <gtest/gtest.h>

#include "support/CheckedRules.h"
#include "support/StandIns.h"

namespace kestrel::test {

class RuleCheckFixture : public testing::Test {
  protected:
    [[nodiscard]] Lines Found(FindingKind kind) const { return SentencesOf(*rule, kind); }
    [[nodiscard]] Ref<Band> Named(const wchar_t* name) const { return rule->Band(name); }
    // A rule whose only band is a number that tracks a fixed band.
    Ref<Band> CountingRule(std::int32_t length, const String& start, const String& format) {
        rule = Make<CodeClass>();
        AddFixed(*rule, L"P", L"P");
        auto band = AddNumber(*rule, L"N", length, start);
        band->SetFormate(format);
        band->TrackBands()->Add(L"P");
        return band;
    }
    // A rule with a band bound to a macro.
    Ref<Band> MacroRule(std::int32_t length, const String& format) {
        rule = GoodRule();
        auto band = AddMacro(*rule, L"M", L"Any", length);
        band->SetFormate(format);
        return band;
    }
    // What the rule holds after it was stored and read again.
    [[nodiscard]] Ref<CodeClass> Reloaded() const {
        auto copy = Make<CodeClass>();
        copy->Load(rule->Definition());
        return copy;
    }

    StandIns standIns;
    Ref<CodeClass> rule = GoodRule();
};

} // namespace kestrel::test
