// A check reads a rule and nothing else, and asks the platform as often as the rule is large; bench/rule.cpp measures
// how long it takes.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/CheckedRules.h"
#include "support/Orders.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

// Counts what is asked of the platform.
class CountingText final : public TextPort {
  public:
    explicit CountingText(const TextPort& text) : mvarText(text) {}

    [[nodiscard]] String Format(const String& value, const String& format) const override {
        ++calls;
        return mvarText.Format(value, format);
    }
    [[nodiscard]] std::optional<double> Number(const String& text) const override {
        ++calls;
        return mvarText.Number(text);
    }
    [[nodiscard]] std::optional<Date> ParseDate(const String& text) const override {
        ++calls;
        return mvarText.ParseDate(text);
    }
    [[nodiscard]] bool SameText(StringView left, StringView right) const override {
        ++calls;
        return mvarText.SameText(left, right);
    }
    [[nodiscard]] String SortKey(const String& text) const override {
        ++calls;
        return mvarText.SortKey(text);
    }
    [[nodiscard]] String Upper(const String& text) const override {
        ++calls;
        return mvarText.Upper(text);
    }
    [[nodiscard]] String Lower(const String& text) const override {
        ++calls;
        return mvarText.Lower(text);
    }

    mutable std::int64_t calls = 0;

  private:
    const TextPort& mvarText;
};

// Takes the place of the text port for as long as it lives.
class CountingScope {
  public:
    CountingScope() : text(TheText()) {
        mvarBefore = InstallPorts({});
        InstallPorts({mvarBefore.strings, &text, mvarBefore.prompts, mvarBefore.dialogs});
    }
    ~CountingScope() { InstallPorts(mvarBefore); }
    // Installed once, taken back once.
    CountingScope(const CountingScope&) = delete;
    CountingScope& operator=(const CountingScope&) = delete;

    CountingText text;

  private:
    PortSet mvarBefore;
};

std::int64_t CallsFor(const CodeClass& rule) {
    const CountingScope counted;
    static_cast<void>(CheckRule(rule));
    return counted.text.calls;
}

// So many groups of bands, each with every kind of finding that costs anything, and with names of its own. (Reading a
// definition takes a large rule faster than adding band by band.)
Ref<CodeClass> RuleOfGroups(int groups) {
    String text = L"#####02\r0\r15\rDay,,";
    for (int group = 1; group <= groups; ++group) {
        const String number = ToText(group);
        text += L"\r16\r0=Prefix " + number + L"\r1=0\r3=inv\r17";
        text += L"\r16\r0=Period " + number + L"\r1=1\r4=yymm\r5=5\r6=Day\r17";
        text.append(L"\r16\r0=Number ").append(number).append(L"\r1=3\r3=").append(number);
        text += L"\r4=00\r5=2\r9=0\r17";
    }
    auto rule = Make<CodeClass>();
    rule->Load(text);
    for (int group = 1; group <= groups; ++group) {
        const String number = ToText(group);
        const String tracked = String(L"Prefix ").append(number).append(L";Gone ").append(number);
        rule->Band(L"Number " + number)->TrackBands()->ImportNames(tracked);
    }
    return rule;
}

// A tree of so many nodes in chains, every one behind its children, all with the same code.
Ref<CodeClass> RuleOfChains(int nodes) {
    auto rule = Make<CodeClass>();
    AddField(*rule, L"A", L"F", 2, smLayersSwap);
    AddField(*rule, L"B", L"G", 2, smLayersSwap);
    auto& tree = rule->Relations();
    String text = ToText(nodes);
    for (int node = 1; node <= nodes; ++node)
        text += L';' + (node % 100 == 1 ? String() : ToText(node - 1)) + L',' + ToText(node) + L",c,\u00e9";
    tree.ImportNodes(text);
    return rule;
}

} // namespace

class RuleCheckPurityTest : public testing::Test {
  protected:
    StandIns standIns;
};

TEST_F(RuleCheckPurityTest, MakesNothingOnFirstUse) {
    const auto rule = Make<CodeClass>();
    rule->Load(L"#####02\r0\r16\r0=F\r1=2\r2=1\r6=\r17\r16\r0=N\r1=3\r17\r16\r0=L\r1=2\r2=2\r6=\r17");
    EXPECT_FALSE(CheckRule(*rule).empty());
    EXPECT_FALSE(rule->ExistingRelations());
    EXPECT_FALSE(rule->Band(L"N")->TrackedNames());
    EXPECT_FALSE(rule->Band(L"F")->OwnRelations());
    EXPECT_FALSE(rule->Band(L"F")->BoundField());
}

TEST_F(RuleCheckPurityTest, LeavesTheRuleAsItWas) {
    for (const auto& rule : {GoodRule(), OrdersRule(), RuleOfGroups(3), RuleOfChains(250)}) {
        const String definition = rule->Definition();
        const auto tree = rule->ExistingRelations();
        const auto names = rule->Band(rule->Count())->TrackedNames();
        static_cast<void>(rule->Check());
        EXPECT_EQ(rule->Definition(), definition);
        EXPECT_EQ(rule->ExistingRelations(), tree);
        EXPECT_EQ(rule->Band(rule->Count())->TrackedNames(), names);
    }
}

TEST_F(RuleCheckPurityTest, RaisesNoEventAndAsksNobody) {
    const auto rule = RuleOfGroups(2);
    const RuleRecorder recorder(*rule);
    const ListsRecorder fields(rule->UsrMacros());
    bool asked = false;
    const auto lastCode = rule->GetLastCode.Subscribe([&asked](const String&, const String&) { asked = true; });
    const auto settings = rule->GetSettings.Subscribe([&asked](const String&, const String&) { asked = true; });
    EXPECT_GT(rule->Check()->Count(), 0);
    EXPECT_EQ(recorder.lines, Lines{});
    EXPECT_EQ(fields.lines, Lines{});
    EXPECT_FALSE(asked);
    EXPECT_TRUE(standIns.prompts.asked.empty() && standIns.prompts.informed.empty() && standIns.prompts.warned.empty());
}

TEST_F(RuleCheckPurityTest, AsksThePlatformTwiceAsMuchForTwiceTheBands) {
    const auto small = CallsFor(*RuleOfGroups(100));
    const auto large = CallsFor(*RuleOfGroups(200));
    EXPECT_GT(small, 100);
    EXPECT_LE(large, small * 2);
}

TEST_F(RuleCheckPurityTest, AsksThePlatformTwiceAsMuchForTwiceTheRelations) {
    const auto small = CallsFor(*RuleOfChains(1'000));
    const auto large = CallsFor(*RuleOfChains(2'000));
    EXPECT_GT(small, 20);
    EXPECT_LE(large, small * 2 + 10);
}

} // namespace kestrel::test
