// A program that brings the component along: portable.exe.manifest names it, the library lies in the same folder, and
// nothing is registered. Copy the folder anywhere and run portable.exe; it prints the codes of four requests, one of
// which was made before, and where the library was found. It keeps its codes for as long as it runs; one that keeps
// them for good is in the sample hosting.
#include <cstdio>
#include <map>

#include "Kestrel.h"

namespace {

using namespace kestrel;

Object<_Band> AddBand(const Object<_CodeClass>& rule, const wchar_t* name, BandStyles style, const wchar_t* value,
                      VARIANT length, const wchar_t* format) {
    Object<_Band> band;
    Check(rule->Add(Text(name).Get(), style, smNoneSwap, Text(value).Get(), nullptr, length, Text(format).Get(),
                    Missing(), Missing(), band.Out()));
    return band;
}

// A number that goes on as long as the text in front stays the same.
void PrepareRule(const Object<_CodeClass>& rule) {
    AddBand(rule, L"Prefix", bsFixed, L"INV-", Missing(), L"");
    const auto number = AddBand(rule, L"Number", bsIncreaseNumber, L"1", Number(4), L"0000");
    Object<_Names> tracked;
    Check(number->get_TrackBands(tracked.Out()));
    Text key;
    Check(tracked->Add(Text(L"Prefix").Get(), key.Out()));
}

constexpr DISPID getLastCode = 11;

void Run() {
    const Apartment apartment;
    const auto rule = Create<_CodeClass>(L"Kestrel.CodeClass");
    PrepareRule(rule);
    std::wstring last;
    Events events(rule.Get(), __uuidof(__CodeClass));
    events.On(getLastCode, [&last](const Arguments& arguments) { arguments.SetTextAt(1, last); });
    std::map<std::wstring, std::wstring> issued; // the code of each request
    for (const wchar_t* ticket : {L"order 1", L"order 2", L"order 3", L"order 2"}) {
        std::wstring& code = issued[ticket];
        if (code.empty()) {
            Text next;
            Check(rule->GetCode(gsNewCode, next.Out()));
            code = last = next.Value();
        }
        std::printf("%ls\n", code.c_str());
    }
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"Kestrel.dll"), path, MAX_PATH);
    std::printf("%ls\n", path);
}

} // namespace

int main() {
    try {
        Run();
        return 0;
    } catch (const kestrel::Failure& failure) {
        static_cast<void>(std::fprintf(stderr, "%ls (0x%08lX)\n", failure.description.c_str(),
                                       static_cast<unsigned long>(failure.result)));
        return 1;
    }
}
