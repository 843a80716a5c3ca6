// What issuing a code costs through the vtable and late-bound, beside the bare cost of one event round trip to the same
// sink in the same run. bench/issuing.vbs measures the same from a script.

#include "automation/support/Late.h"
#include "automation/support/Sink.h"
#include "bench/ComBenchmark.h"
#include "bench/SampleRule.h"

namespace kestrel::bench {
namespace {

// Many short runs: some of them fall into moments when nothing else runs.
constexpr int Runs = 500;
constexpr int Calls = 50;
constexpr DISPID GetLastCode = 11;
constexpr DISPID GetCodeByName = DISPID_UNKNOWN;

HRESULT AnswerLastCode(const test::EventCall& call) {
    if (call.Id() == GetLastCode) call.SetText(1, SampleLastCode);
    return S_OK;
}

// One event as the component raises it: two texts by reference, late-bound, answered, freed.
void RoundTrip(IDispatch& sink) {
    Bstr filter(L"INV2026????????????");
    Bstr value;
    VARIANT arguments[2]{};
    V_VT(&arguments[1]) = V_VT(&arguments[0]) = VT_BYREF | VT_BSTR;
    V_BSTRREF(&arguments[1]) = filter.Out();
    V_BSTRREF(&arguments[0]) = value.Out();
    DISPPARAMS params{arguments, nullptr, 2, 0};
    test::Must(
        sink.Invoke(GetLastCode, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr));
    if (value.Text() != SampleLastCode) throw std::runtime_error("the sink did not answer");
}

void IssueThroughVtable(_CodeClass& rule) {
    Bstr code;
    test::Must(rule.GetCode(gsNewCode, code.Out()));
    if (code.Text() != SampleNextCode) throw std::runtime_error("another code was issued");
}

void IssueLateBound(_CodeClass& rule, DISPID known) {
    const auto style = test::Number(gsNewCode);
    const auto result = known == GetCodeByName ? test::Call(&rule, L"GetCode", {style})
                                               : test::Call(&rule, known, test::AsValue, {style});
    if (test::TextIn(result) != SampleNextCode) throw std::runtime_error("another code was issued");
}

// The number keeps the value that it has, and no event asks for another.
void TrackNothing(const ComPtr<_CodeClass>& rule) {
    ComPtr<_Band> number;
    test::Must(rule->get_Band(test::Arg(L"Number"), number.Out()));
    test::Must(test::Object(number, &_Band::get_TrackBands)->Remove(test::Arg(L"Year")));
}

template <class Operation>
Microseconds PerCall(const Operation& operation) {
    return BestOf(Runs,
                  [&] {
                      for (int i = 0; i < Calls; ++i)
                          operation();
                  }) /
           Calls;
}

int Run() {
    const SampleRule sample;
    _CodeClass& rule = *sample.rule.Get();
    const ComPtr<IDispatch> sink(new test::Sink(__uuidof(__CodeClass), AnswerLastCode));
    const test::Advised advised(&rule, __uuidof(__CodeClass), AnswerLastCode);
    const DISPID getCode = test::IdOf(&rule, L"GetCode");
    const Microseconds roundTrip = PerCall([&] { RoundTrip(*sink.Get()); });
    const Microseconds vtable = PerCall([&] { IssueThroughVtable(rule); });
    const Microseconds byId = PerCall([&] { IssueLateBound(rule, getCode); });
    const Microseconds byName = PerCall([&] { IssueLateBound(rule, GetCodeByName); });
    TrackNothing(sample.rule);
    const Microseconds untracked = PerCall([&] { IssueThroughVtable(rule); });
    std::printf("GetCode of 5 bands, microseconds per call\n");
    std::printf("  one event round trip      %8.2f\n", roundTrip);
    std::printf("  through the vtable        %8.2f\n", vtable);
    std::printf("  late-bound, id known      %8.2f\n", byId);
    std::printf("  late-bound, by name       %8.2f\n", byName);
    std::printf("  without tracked number    %8.2f\n", untracked);
    Verdicts verdicts;
    verdicts.AtMost("GetCode through the vtable / event round trip", vtable / roundTrip, 8);
    verdicts.AtMost("GetCode late-bound, id known / event round trip", byId / roundTrip, 9);
    verdicts.AtMost("GetCode without a tracked number, to one microsecond", untracked, 1);
    return verdicts.ExitCode();
}

} // namespace
} // namespace kestrel::bench

int main() { return kestrel::bench::RunComBenchmark(kestrel::bench::Run); }
