// What a rule costs in the model: writing and reading the definition of a large one beside joining and splitting the
// same text, checking it beside writing its definition, and one GetCode beside the conversions that it cannot do
// without.
#include <utility>
#include <vector>

#include "bench/Measure.h"
#include "engine/RuleCheck.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::bench {

namespace {

using namespace kestrel::test;

constexpr int Bands = 20;
constexpr int Nodes = 10'000;
constexpr int Pairs = 1'000;

// The number of bands and nodes named above: two bands convert in layers, the others are of every kind.
Ref<CodeClass> LargeRule() {
    auto rule = Make<CodeClass>();
    AddField(*rule, L"Country", L"Land", 2, smLayersSwap);
    AddField(*rule, L"Region", L"Area", 3, smLayersSwap);
    while (rule->Count() < Bands) {
        const String number = ToText(rule->Count());
        AddFixed(*rule, L"Prefix " + number, L"P-" + number);
        AddMacro(*rule, L"Period " + number, L"Day", 4);
        AddNumber(*rule, L"Number " + number, 6)->TrackBands()->Add(L"Prefix " + number);
    }
    String text = ToText(Nodes);
    for (int node = 1; node <= Nodes; ++node) {
        const int parent = node <= 100 ? 0 : node % 100 + 1;
        text += L';' + (parent == 0 ? String() : ToText(parent)) + L',' + ToText(node) + L",C" + ToText(node) +
                L",value " + ToText(node);
    }
    rule->Relations().ImportNodes(text);
    return rule;
}

using Fields = std::vector<String>;
using Records = std::vector<Fields>;
using TextLines = std::vector<Records>;

// The text as lines, those as records and those as fields, each a text of its own.
TextLines SplitAll(const String& text) {
    TextLines lines;
    Splitter lineSplitter(text, L'\r');
    while (const auto line = lineSplitter.Next()) {
        auto& records = lines.emplace_back();
        Splitter recordSplitter(*line, L';');
        while (const auto record = recordSplitter.Next()) {
            auto& fields = records.emplace_back();
            Splitter fieldSplitter(*record, L',');
            while (const auto field = fieldSplitter.Next())
                fields.emplace_back(*field);
        }
    }
    return lines;
}

String JoinAll(const TextLines& lines) {
    std::vector<String> lineTexts;
    lineTexts.reserve(lines.size());
    for (const auto& records : lines) {
        std::vector<String> recordTexts;
        recordTexts.reserve(records.size());
        for (const auto& fields : records)
            recordTexts.push_back(Join(fields, L","));
        lineTexts.push_back(Join(recordTexts, L";"));
    }
    return Join(lineTexts, L"\r");
}

void MeasureDefinition(Verdicts& verdicts) {
    constexpr int runs = 15;
    const auto rule = LargeRule();
    const String text = rule->Definition();
    const auto lines = SplitAll(text);
    const auto write = BestOf(runs, [&] { Use(rule->Definition()); });
    const auto read = BestOf(
        runs, [] { return Make<CodeClass>(); }, [&](auto& target) { target->Load(text); });
    const auto split = BestOf(runs, [&] { Use(SplitAll(text)); });
    const auto join = BestOf(runs, [&] { Use(JoinAll(lines)); });
    std::printf("definition of %d bands and %d nodes, %zu characters, in microseconds:\n"
                "  Definition %.0f, joining the same text %.0f; Load %.0f, splitting the same text %.0f\n",
                Bands, Nodes, text.size(), write, join, read, split);
    verdicts.AtMost("Definition and Load to joining and splitting the same text", (write + read) / (join + split),
                    0.35);
}

// Read from a text, for that is the fastest way to make so many bands.
Ref<CodeClass> RuleOfBands(int groups) {
    String text = L"#####02\r0\r15\rDay,,";
    for (int group = 1; group <= groups; ++group) {
        const String number = ToText(group);
        text.append(L"\r16\r0=Prefix ").append(number).append(L"\r1=0\r3=P-").append(number).append(L"\r17");
        text += L"\r16\r0=Period " + number + L"\r1=1\r4=yymm\r5=4\r6=Day\r17";
        text += L"\r16\r0=Letter " + number + L"\r1=4\r12=B\r17";
        text.append(L"\r16\r0=Number ").append(number).append(L"\r1=3\r3=").append(number);
        text.append(L"\r4=000000\r5=6\r13=Prefix ").append(number).append(L"\r17");
    }
    auto rule = Make<CodeClass>();
    rule->Load(text);
    return rule;
}

// One layer-style band over a tree in which every hundredth node has the others below it.
Ref<CodeClass> RuleOfNodes(int nodes) {
    auto rule = Make<CodeClass>();
    AddField(*rule, L"Country", L"Land", 7, smLayersSwap);
    AddField(*rule, L"Region", L"Area", 7, smLayersSwap);
    String text = ToText(nodes);
    for (int node = 1; node <= nodes; ++node) {
        const int parent = node % 100 == 1 ? 0 : node - (node - 1) % 100;
        text += L';' + (parent == 0 ? String() : ToText(parent)) + L',' + ToText(node) + L",C" +
                ToText(100'000 + node) + L",value " + ToText(node);
    }
    rule->Relations().ImportNodes(text);
    return rule;
}

// One band with a tree of its own.
Ref<CodeClass> RuleOfPairs(int pairs) {
    auto rule = Make<CodeClass>();
    String text = ToText(pairs);
    for (int pair = 1; pair <= pairs; ++pair)
        text += L";," + ToText(pair) + L",C" + ToText(100'000 + pair) + L",value " + ToText(pair);
    AddField(*rule, L"Country", L"Land", 7, smSimpleSwap)->Relations()->ImportNodes(text);
    return rule;
}

double CheckToDefinition(const char* what, const CodeClass& rule) {
    constexpr int runs = 7;
    const auto write = BestOf(runs, [&] { Use(rule.Definition()); });
    const auto check = BestOf(runs, [&] { Use(CheckRule(rule)); });
    std::printf("  %s: Definition %.0f, Check %.0f, findings %zu\n", what, write, check, CheckRule(rule).size());
    return check / write;
}

void MeasureCheck(Verdicts& verdicts) {
    std::printf("\nCheck beside Definition, in microseconds:\n");
    const auto bands = CheckToDefinition("200,000 bands", *RuleOfBands(50'000));
    const auto nodes = CheckToDefinition("100,000 nodes in two layers", *RuleOfNodes(100'000));
    const auto pairs = CheckToDefinition("100,000 pairs of one band", *RuleOfPairs(100'000));
    verdicts.AtMost("Check to Definition of 200,000 bands", bands, 1);
    verdicts.AtMost("Check to Definition of 100,000 nodes in two layers", nodes, 1);
    verdicts.AtMost("Check to Definition of 100,000 pairs of one band", pairs, 1);
}

// A band of each kind that GetCode works for.
Ref<CodeClass> IssuingRule() {
    auto rule = Make<CodeClass>();
    AddFixed(*rule, L"Prefix", L"PO-");
    AddMacro(*rule, L"Period", L"Day", 4)->SetFormate(L"yymm");
    const auto customer = AddField(*rule, L"Customer", L"Customer", 6, smSimpleSwap);
    String text = ToText(Pairs);
    for (int pair = 1; pair <= Pairs; ++pair)
        text += L";," + ToText(pair) + L',' + ToText(100'000 + pair) + L",customer " + ToText(pair);
    customer->Relations()->ImportNodes(text);
    AddField(*rule, L"Region", L"Area", 2, smLayersSwap);
    rule->Relations().ImportNodes(L"2;,1,no,North;,2,so,South");
    const auto number = AddNumber(*rule, L"Number", 5);
    number->TrackBands()->Add(L"Period");
    rule->UsrMacros().Item(L"Day")->SetValue(L"2024-05-06");
    rule->UsrFields().Item(L"Customer")->SetValue(L"customer 500");
    rule->UsrFields().Item(L"Area")->SetValue(L"South");
    return rule;
}

void MeasureGetCode() {
    constexpr int calls = 1'000;
    const auto rule = IssuingRule();
    const auto host =
        rule->GetLastCode.Subscribe([](const String&, String& value) { value = L"PO-2405100500so00041"; });
    const auto perCall = [](Microseconds time) { return time / calls; };
    const auto code = perCall(BestOf(5, [&] {
        for (int call = 0; call < calls; ++call)
            Use(rule->GetCode(gsNewCode));
    }));
    const auto tree = rule->Band(L"Customer")->Relations();
    const auto conversion = perCall(BestOf(5, [&] {
        for (int call = 0; call < calls; ++call) {
            String value = L"customer 500";
            Use(tree->Conversion(csValueToCode, value));
        }
    }));
    const auto event = perCall(BestOf(5, [&] {
        for (int call = 0; call < calls; ++call) {
            String filter = L"??\?-2405?????????????";
            String value;
            rule->GetLastCode.Raise(filter, value);
            Use(value);
        }
    }));
    std::printf("\nGetCode of 5 bands: %.2f us; the conversion in it, among %d pairs: %.2f us; the event: %.2f us\n",
                code, Pairs, conversion, event);
}

int Run() {
    const test::StandIns standIns;
    Verdicts verdicts;
    MeasureDefinition(verdicts);
    MeasureCheck(verdicts);
    MeasureGetCode();
    return verdicts.ExitCode();
}

} // namespace

} // namespace kestrel::bench

int main() { return kestrel::bench::RunBenchmark(kestrel::bench::Run); }
