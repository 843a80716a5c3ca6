// Whether the process grows: a million codes issued and a definition loaded ten thousand times, through automation.
// usage: bench_soak [percent of the full count]

#include <windows.h>

#include <psapi.h>

#include <cstdlib>

#include "automation/support/Sink.h"
#include "bench/ComBenchmark.h"
#include "bench/SampleRule.h"

namespace kestrel::bench {
namespace {

constexpr int FullCodes = 1000000;
constexpr int FullLoads = 10000;
constexpr double MayGrowBy = 1024; // kilobytes, from a tenth of the way to the end

double UsedKilobytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) == 0)
        throw std::runtime_error("the process's memory cannot be read");
    return static_cast<double>(counters.PagefileUsage) / 1024;
}

// How much the process grew while the last nine tenths of the calls were made.
template <class Operation>
double Growth(const char* what, int count, const Operation& operation) {
    double early = 0;
    for (int i = 0; i < count; ++i) {
        operation();
        if (i == count / 10) early = UsedKilobytes();
        if (i % (count / 10) == 0) std::printf("  %-8s %8d  %10.0f KB\n", what, i, UsedKilobytes());
    }
    return UsedKilobytes() - early;
}

void Issue(_CodeClass& rule) {
    Bstr code;
    test::Must(rule.GetCode(gsNewCode, code.Out()));
    if (code.Text() != SampleNextCode) throw std::runtime_error("another code was issued");
}

void Load(_CodeClass& rule, const Variant& definition) {
    test::Must(rule.Load(definition.Get(), nullptr));
    if (test::Plain(ComPtr<_CodeClass>(&rule), &_CodeClass::get_Count) != 5)
        throw std::runtime_error("bands are missing");
}

int Run(int percent) {
    const SampleRule sample;
    _CodeClass& rule = *sample.rule.Get();
    const test::Advised advised(&rule, __uuidof(__CodeClass), [](const test::EventCall& call) {
        if (call.Id() == 11) call.SetText(1, SampleLastCode);
        return S_OK;
    });
    Verdicts verdicts;
    verdicts.AtMost("growth of the process over a million codes, to 1 MB",
                    Growth("codes", FullCodes / 100 * percent, [&] { Issue(rule); }) / MayGrowBy, 1);
    const Variant definition{StringView(test::Text(sample.rule, &_CodeClass::get_Definition))};
    verdicts.AtMost("growth of the process over 10,000 loads, to 1 MB",
                    Growth("loads", FullLoads / 100 * percent, [&] { Load(rule, definition); }) / MayGrowBy, 1);
    return verdicts.ExitCode();
}

} // namespace
} // namespace kestrel::bench

int main(int argc, char** argv) {
    const double percent = argc > 1 ? std::strtod(argv[1], nullptr) : 100;
    if (!(percent >= 1 && percent <= 100)) {
        static_cast<void>(std::fputs("usage: bench_soak [percent of the full count, 1 to 100]\n", stderr));
        return 2;
    }
    return kestrel::bench::RunComBenchmark([percent] { return kestrel::bench::Run(static_cast<int>(percent)); });
}
