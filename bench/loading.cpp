// What reading a definition costs as it grows: many bands that are each bound to a field of its own, and keys that were
// made to fall together, beside as many harmless ones.
#include <stdexcept>
#include <vector>

#include "bench/Measure.h"
#include "support/Keys.h"
#include "support/Rules.h"
#include "support/StandIns.h"

namespace kestrel::bench {

namespace {

using namespace kestrel::test;

constexpr int Runs = 15;

using Counting = std::int32_t (*)(const CodeClass& rule);

// The definition has so many of what is counted.
Microseconds TimeToLoad(const String& definition, Counting counted, std::int32_t count) {
    const auto time = BestOf(
        Runs, [] { return Make<CodeClass>(); }, [&](auto& rule) { rule->Load(definition); });
    const auto rule = Make<CodeClass>();
    rule->Load(definition);
    if (counted(*rule) != count) throw std::runtime_error("the definition was not read as a whole");
    return time;
}

// --- Many bands ---

String BoundBands(int count) {
    String fields;
    String bands;
    for (int number = 1; number <= count; ++number) {
        const String name = ToText(number);
        fields += (number > 1 ? L";F" : L"F") + name;
        bands.append(L"\r16\r0=B").append(name).append(L"\r1=2\r5=3\r6=F").append(name).append(L"\r17");
    }
    return L"#####14\r" + fields + bands;
}

void MeasureBands(Verdicts& verdicts) {
    const Counting used = [](const CodeClass& rule) { return rule.UsedFields().Count(); };
    constexpr int few = 1'000;
    constexpr int many = 8'000;
    const auto small = TimeToLoad(BoundBands(few), used, few);
    const auto large = TimeToLoad(BoundBands(many), used, many);
    std::printf("bands, each bound to a field of its own: %d in %.0f us, %d in %.0f us\n", few, small, many, large);
    verdicts.AtMost("Load of many bound bands, growth exponent", Exponent(few, small, many, large), 1.2);
}

// --- Hostile keys ---

String Fields(const std::vector<String>& keys) { return L"#####14\r" + Join(keys, L";"); }

String Nodes(const std::vector<String>& keys) {
    String text = L"#####9\r1";
    for (const auto& key : keys)
        text += L";," + key + L",c,v";
    return text;
}

String Bands(const std::vector<String>& keys) {
    String text = L"#####";
    for (const auto& key : keys)
        text += L"16\r0=" + key + L"\r17\r";
    text.pop_back();
    return text;
}

struct Collection {
    const char* name;
    String (*definition)(const std::vector<String>& keys);
    Counting counted;
};

void MeasureHostileKeys(Verdicts& verdicts) {
    constexpr int keys = 8'192;
    const Collection collections[] = {
        {"fields", Fields, [](const CodeClass& rule) { return rule.UsrFields().Count(); }},
        {"relations", Nodes, [](const CodeClass& rule) { return rule.ExistingRelations()->Count(); }},
        {"bands", Bands, [](const CodeClass& rule) { return rule.Count(); }},
    };
    for (const auto& [name, definition, counted] : collections) {
        const auto harmless = TimeToLoad(definition(HarmlessKeys(keys)), counted, keys);
        std::printf("\n%d %s: harmless keys %.0f us\n", keys, name, harmless);
        for (const auto& [aim, hostile] : HostileKeys(keys)) {
            const auto time = TimeToLoad(definition(hostile), counted, keys);
            std::printf("  against %s: %.0f us\n", aim.c_str(), time);
            verdicts.AtMost("Load of hostile to harmless keys (" + std::string(name) + " against " + aim + ")",
                            time / harmless, 3);
        }
    }
}

int Run() {
    const test::StandIns standIns;
    Verdicts verdicts;
    MeasureBands(verdicts);
    MeasureHostileKeys(verdicts);
    return verdicts.ExitCode();
}

} // namespace

} // namespace kestrel::bench

int main() { return kestrel::bench::RunBenchmark(kestrel::bench::Run); }
