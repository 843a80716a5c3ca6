// What the designer costs on large rules, in the processor's time of this program: opening it, selecting a band, adding
// one. The real dialogs are worked by the messages that a person's keys and clicks become. The rest of a large tree
// comes while the designer waits for the next of them, which is told beside.
#include <windows.h>

#include <map>
#include <stdexcept>
#include <utility>

#include "bench/Measure.h"
#include "common/Ports.h"
#include "dialogs/WindowsDialogs.h"
#include "dialogs/support/ProcessorTime.h"
#include "dialogs/support/SampleRule.h"
#include "dialogs/support/Screen.h"
#include "platform/PlatformPorts.h"
#include "resources/dialogids.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::bench {

namespace {

using namespace kestrel::test;

enum class Tree { Layered, Flat };

constexpr int Rounds = 8;

double ProcessorMilliseconds() { return ProcessorSeconds() * 1000; }

String TreeText(int nodes, Tree shape) {
    constexpr int branching = 200;
    String text = ToText(nodes);
    for (int node = 1; node <= nodes; ++node) {
        const bool isFirst = shape == Tree::Flat || node <= branching;
        text += L';' + (isFirst ? String() : ToText((node - 1) % branching + 1)) + L',' + ToText(node) + L",C" +
                ToText(100'000 + node) + L",value " + ToText(node);
    }
    return text;
}

void Append(String& text, StringView before, StringView number, StringView behind) {
    text += before;
    text += number;
    text += behind;
}

// Bands of every kind; the first and the second convert in the layers of the rule's tree.
Ref<CodeClass> RuleOf(int bands, int nodes, Tree shape) {
    String text = L"#####02\r0\r15\rDay,,";
    for (int band = 3; band <= bands; ++band) {
        const String number = ToText(band);
        switch (band % 4) {
        case 0:
            Append(text, L"\r16\r0=Prefix ", number, L"\r1=0\r3=P-");
            Append(text, {}, number, L"\r17");
            break;
        case 1: Append(text, L"\r16\r0=Period ", number, L"\r1=1\r4=yymm\r5=4\r6=Day\r17"); break;
        case 2: Append(text, L"\r16\r0=Letter ", number, L"\r1=4\r12=B\r17"); break;
        default: Append(text, L"\r16\r0=Number ", number, L"\r1=3\r3=1\r4=000000\r5=6\r13=Prefix 4\r17"); break;
        }
    }
    auto rule = EmptyRule();
    rule->Load(text);
    AddField(*rule, L"Country", L"Land", 7, smLayersSwap);
    AddField(*rule, L"Region", L"Area", 7, smLayersSwap);
    rule->Drag(L"Region", 1, {});
    rule->Drag(L"Country", 1, {});
    rule->Relations().ImportNodes(TreeText(nodes, shape));
    return rule;
}

class Acts {
  public:
    Acts(int bands, int nodes, Tree shape) : mvarRule(RuleOf(bands, nodes, shape)), mvarBands(bands) {}

    // Opens the designer so often and works it each time.
    void Run() {
        for (int round = 0; round < Rounds; ++round)
            OpenAndWork();
        if (mvarRule->Count() != mvarBands + Rounds) throw std::runtime_error("not every band was added");
    }

    // Of one act; the clock of the processor's time ticks too slowly for a single one to be measured.
    [[nodiscard]] double Mean(const String& act) const {
        const auto& [total, count] = mvarTimes.at(act);
        return total / count;
    }

  private:
    template <class Step>
    void Measure(const String& act, Step step, int count = 1) {
        const double start = ProcessorMilliseconds();
        step();
        RunPendingMessages();
        Note(act, ProcessorMilliseconds() - start, count);
    }

    void Note(const String& act, double time, int count) {
        auto& [total, times] = mvarTimes[act];
        total += time;
        times += count;
    }

    void OpenAndWork() {
        Visitor visitor;
        const double start = ProcessorMilliseconds();
        visitor
            .Then([&](const Screen& designer) {
                RunPendingMessages();
                Note(L"open", ProcessorMilliseconds() - start, 1);
                Measure(L"rest of the tree", [&] { WaitForTree(designer); });
                Work(designer);
            })
            .Then([](const Screen& band) {
                band.Type(ID_txtName, L"Added " + ToText(GetTickCount()));
                band.Pick(ID_cboStyle, bsIncreaseNumber);
                band.Type(ID_txtDefault, L"1");
                band.Click(ID_cmdOK);
            });
        mvarRule->ShowDesigner();
        if (!visitor.Finished()) throw std::runtime_error("a dialog did not open");
    }

    void WaitForTree(const Screen& designer) {
        const auto count = [&] { return SendMessageW(designer.Control(ID_tvwAvailable), TVM_GETCOUNT, 0, 0); };
        while (count() < mvarRule->Relations().Count()) {
            RunPendingMessages();
            Sleep(1);
        }
    }

    void Work(const Screen& designer) {
        const auto press = [&designer](unsigned key) { designer.Key(ID_picBand, key); };
        Measure(L"band of the same tree", [&] { press(VK_RIGHT); });
        Measure(L"band without relations", [&] { press(VK_END); });
        constexpr int steps = 4;
        Measure(
            L"next band",
            [&] {
                for (int step = 0; step < steps; ++step)
                    press(VK_LEFT);
            },
            steps);
        Measure(L"band with the relations", [&] { press(VK_HOME); });
        Measure(L"add", [&] { designer.Click(ID_imgButton); });
    }

    Ref<CodeClass> mvarRule;
    int mvarBands;
    std::map<String, std::pair<double, int>> mvarTimes;
};

// The windows themselves take most of it: so much is the rule's.
void JudgeBeside(const Acts& small, const char* what, const Acts& acts, Verdicts& verdicts) {
    constexpr double most = 1.5;
    for (const auto& [act, name] : {std::pair{L"open", "opening"}, {L"add", "adding a band"}})
        verdicts.AtMost("designer: " + std::string(name) + ", to that in a rule of 10 bands (" + what + ")",
                        acts.Mean(act) / small.Mean(act), most);
}

void Print(const char* what, const Acts& acts, Verdicts* verdicts) {
    const auto of = [&acts](const wchar_t* act) { return acts.Mean(act); };
    std::printf("%s, milliseconds of processor time:\n  opening %.1f, and the rest of the tree %.1f; selecting a band "
                "of the same tree %.1f, one without relations %.1f, its neighbour %.1f, back to the relations %.1f; "
                "adding a band %.1f\n",
                what, of(L"open"), of(L"rest of the tree"), of(L"band of the same tree"), of(L"band without relations"),
                of(L"next band"), of(L"band with the relations"), of(L"add"));
    if (verdicts == nullptr) return;
    constexpr double most = 100;
    const auto judge = [&](const std::string& act, const std::string& how, double milliseconds) {
        verdicts->AtMost(act + ", to 100 ms (" + what + how + ")", milliseconds / most, 1);
    };
    judge("designer: opening", "", of(L"open"));
    judge("designer: selecting a band", ", of the same tree", of(L"band of the same tree"));
    judge("designer: selecting a band", ", without relations", of(L"band without relations"));
    judge("designer: selecting a band", ", the next", of(L"next band"));
    judge("designer: selecting a band", ", back to the relations", of(L"band with the relations"));
    judge("designer: adding a band", "", of(L"add"));
}

struct Rule {
    const char* what;
    int bands;
    Tree shape;
    bool isJudged;
};

int Run() {
    InstallPlatformPorts();
    dialogs::WindowsDialogs windows;
    ScriptedPrompts prompts;
    prompts.answer = false; // closing asks whether to save
    InstallPorts({&TheStrings(), &TheText(), &prompts, &windows});
    Verdicts verdicts;
    Acts(10, 10, Tree::Flat).Run(); // what a program does once is not the rule's
    Acts small(10, 10, Tree::Flat);
    small.Run();
    Print("10 bands, 10 nodes", small, nullptr);
    for (const auto& [what, bands, shape, isJudged] :
         {Rule{"300 bands, 20,000 nodes, 2 layers", 300, Tree::Layered, true},
          Rule{"300 bands, 20,000 nodes, 1 layer", 300, Tree::Flat, true},
          Rule{"2,000 bands, 20,000 nodes, 2 layers", 2'000, Tree::Layered, false}}) {
        Acts acts(bands, 20'000, shape);
        acts.Run();
        Print(what, acts, isJudged ? &verdicts : nullptr);
        if (isJudged) JudgeBeside(small, what, acts, verdicts);
    }
    return verdicts.ExitCode();
}

} // namespace

} // namespace kestrel::bench

int main() { return kestrel::bench::RunBenchmark(kestrel::bench::Run); }
