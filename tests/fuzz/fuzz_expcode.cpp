// Any code for a rule of every kind of band: where it can be taken apart, its parts make it up again.
#include "common/Numbers.h"
#include "fuzz/Fuzz.h"
#include "support/Checks.h"
#include "support/Rules.h"

namespace kestrel::test {

namespace {

Ref<CodeClass> EveryKindOfBand() {
    auto rule = Make<CodeClass>();
    AddFixed(*rule, L"Fixed", L"PO");
    AddMacro(*rule, L"Macro", L"M", 2);
    const auto simple = AddField(*rule, L"Simple", L"F", 2, smSimpleSwap);
    simple->Relations()->ImportNodes(L"3;,1,01,North;,2,aB,South;,3,\u00e9\u00e9,West");
    AddField(*rule, L"Upper", L"G", 1, smLayersSwap);
    AddField(*rule, L"Lower", L"H", 1, smLayersSwap);
    rule->Relations().ImportNodes(L"4;,1,a,A;1,2,b,B;,3,c,C;3,4,b,D");
    AddNumber(*rule, L"Number", 3)->TrackBands()->Add(L"Macro");
    AddLetter(*rule, L"Letter");
    return rule;
}

// Where the number is plain digits; any other number is formatted into what the band takes.
bool HasPlainNumber(const String& code) {
    const String number = code.substr(8, 3);
    return number.find_first_not_of(L"0123456789") == String::npos;
}

void CheckParts(const CodeClass& rule, const String& code) {
    String whole;
    for (const auto& band : rule.Bands()) {
        Require(band->Value().size() == static_cast<std::size_t>(band->Length()), "a part has its band's length");
        whole += band->Value();
    }
    // The letter is raised.
    Require(!HasPlainNumber(code) || TheText().SameText(whole, code), "the parts make up the code");
}

// The fields now hold what the code says, so issuing the current code gives it back, up to the case of what is
// converted.
void CheckIssuedAgain(CodeClass& rule, const String& code) {
    const auto answer = rule.GetLastCode.Subscribe([&code](const String& filter, String& value) {
        Require(filter.size() == code.size(), "a pattern is as long as the code");
        value = code;
    });
    String issued;
    Require(Succeeds([&] { issued = rule.GetCode(gsCurrent); }), "what was taken apart can be issued");
    Require(issued.size() == code.size(), "codes have one length");
    const bool belowDefault = NumericallyLess(code.substr(8, 3), L"1");
    Require(belowDefault || !HasPlainNumber(code) || TheText().SameText(issued, code),
            "what was taken apart is issued the same");
}

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::test;
    const StandIns standIns;
    const auto rule = EveryKindOfBand();
    const auto code = TextOf(data, size);
    const bool taken = Succeeds([&] { rule->ExpCode(code); });
    RequireWhole(FaultOf(*rule));
    Require(!taken || code.size() == static_cast<std::size_t>(rule->Length()), "only codes of the rule's length");
    if (taken) {
        CheckParts(*rule, code);
        CheckIssuedAgain(*rule, code);
    }
    return 0;
}
