// What is compared without regard to case, through the component: full-width letters and soft hyphens, which the user's
// locale takes for the plain ones or for nothing, are characters of their own everywhere but in Conversion.
#include "common/CaseFolding.h"
#include "automation/support/Late.h"
#include "automation/support/Sink.h"
#include "common/Ports.h"
#include "platform/WindowsText.h"

namespace kestrel::test {

namespace {

constexpr const wchar_t* Wide = L"\uFF21"; // "A" in full width
constexpr const wchar_t* Hyphened = L"B\u00ADB";

class CaseFoldingTest : public ComTest {
  protected:
    CaseFoldingTest() {
        for (const wchar_t* name : {L"A", Wide, L"BB", Hyphened})
            Add(name, bsFixed);
        Tracker = Object(Add(L"Number", bsIncreaseNumber), &_Band::get_TrackBands);
    }

    ComPtr<_Band> Add(StringView name, ::BandStyles style) {
        ComPtr<_Band> band;
        Must(rule->Add(Arg(name), style, smNoneSwap, Arg(L"1"), nullptr, Missing(), nullptr, Missing(), Missing(),
                       band.Out()));
        return band;
    }
    [[nodiscard]] String Tracked() const {
        String names;
        for (LONG i = 1; i <= Plain(Tracker, &_Names::get_Count); ++i) {
            Bstr name;
            Must(Tracker->get_Item(Number(i), name.Out()));
            names += name.Text() + L";";
        }
        return names;
    }

    const ComPtr<_CodeClass> rule = NewRule();
    ComPtr<_Names> Tracker;
};

} // namespace

TEST_F(CaseFoldingTest, TheLocaleTakesTheTextsForTheSame) {
    const WindowsText text;
    EXPECT_TRUE(text.SameText(L"a", Wide));
    EXPECT_TRUE(text.SameText(L"bb", Hyphened));
}

TEST_F(CaseFoldingTest, TheFoldingDoesNot) {
    const WindowsText text;
    const PortSet before = InstallPorts({nullptr, &text, nullptr, nullptr});
    EXPECT_TRUE(SameFolded(L"\u00C4 bb", L"\u00E4 BB"));
    EXPECT_FALSE(SameFolded(L"A", Wide));
    EXPECT_FALSE(SameFolded(L"BB", Hyphened));
    EXPECT_FALSE(SameFolded(L"Strasse", L"Stra\u00DFe"));
    EXPECT_NE(CaseFolded(L"A\u00E4"), CaseFolded(String(Wide) + L"\u00E4"));
    InstallPorts(before);
}

// Letters that are compared as they stand are the same as when the whole text is folded, whichever two they are; and
// what was folded stays as it is.
TEST_F(CaseFoldingTest, ComparesEveryTwoLettersAsTheirFoldings) {
    const WindowsText text;
    const PortSet before = InstallPorts({nullptr, &text, nullptr, nullptr});
    for (int letter = 1; letter < 0xD800; ++letter) {
        const String one(1, static_cast<wchar_t>(letter));
        const String small = CaseFolded(one);
        ASSERT_EQ(CaseFolded(small), small) << letter;
        ASSERT_TRUE(SameFolded(small, one)) << letter;
        for (const wchar_t other : {L'K', L'k', L'i', L'I', L's', L'\u212A', L'\u0130', L'\u017F', L'\u00E5'}) {
            const String two = L"x" + String(1, other);
            ASSERT_EQ(SameFolded(L"X" + one, two), CaseFolded(L"X" + one) == CaseFolded(two)) << letter;
        }
    }
    InstallPorts(before);
}

TEST_F(CaseFoldingTest, BandsThatALocaleTakesForOneAreTrackedAndRemovedEachByItself) {
    for (const wchar_t* name : {Wide, Hyphened})
        EXPECT_DONE(Tracker->Add(Arg(name), Bstr().Out()));
    // Neither asks: only the other one is tracked.
    EXPECT_DONE(rule->Remove(Arg(L"a")));
    EXPECT_DONE(rule->Remove(Arg(L"bb")));
    EXPECT_EQ(Tracked(), String(Wide) + L";" + Hyphened + L";");
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 3);
}

TEST_F(CaseFoldingTest, ABandMayTrackOneWhoseNameALocaleTakesForItsOwn) {
    Add(L"Num\u00ADber", bsIncreaseNumber);
    EXPECT_DONE(Tracker->Add(Arg(L"NUM\u00ADBER"), Bstr().Out()));
    EXPECT_EQ(FailureOf(Tracker->Add(Arg(L"NUMBER"), Bstr().Out())), AddFailed.Followed(L"No sense to track itself."));
}

TEST_F(CaseFoldingTest, ThePatternHoldsTheTrackedBandOnly) {
    const auto wide = Add(L"\uFF34", bsIncreaseNumber);
    Must(wide->put_Value(Arg(L"7")));
    Must(Add(L"T", bsIncreaseNumber)->put_Value(Arg(L"8")));
    Must(Tracker->Add(Arg(L"t"), Bstr().Out()));
    String pattern;
    const Advised host(rule.Get(), __uuidof(__CodeClass), [&pattern](const EventCall& call) {
        if (call.Id() == 11) pattern = call.Text(0);
        return S_OK;
    });
    EXPECT_DONE(rule->GetCode(gsCurrent, Bstr().Out()));
    EXPECT_EQ(pattern, L"1111??8");
}

TEST_F(CaseFoldingTest, ADefinitionInAnotherCaseIsTheSame) {
    const String held = WindowsText().Lower(Text(rule, &_CodeClass::get_Definition));
    ASSERT_NE(held, Text(rule, &_CodeClass::get_Definition));
    const Advised host(rule.Get(), __uuidof(__CodeClass), [&held](const EventCall& call) {
        if (call.Id() == 12) call.SetText(1, held);
        return S_OK;
    });
    EXPECT_DONE(rule->Save(soDefault)) << "nothing to save, so no box";
}

TEST_F(CaseFoldingTest, AForeignNameThatALocaleTakesForTheNameIsWritten) {
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    Must(fields->Add(Arg(L"A"), Arg(Wide), nullptr, nullptr, ComPtr<_List>().Out()));
    Must(fields->Add(Arg(L"BB"), Arg(Hyphened), nullptr, nullptr, ComPtr<_List>().Out()));
    Must(fields->Add(Arg(L"CC"), Arg(L"cc"), nullptr, nullptr, ComPtr<_List>().Out()));
    const String definition = Text(rule, &_CodeClass::get_Definition);
    EXPECT_NE(definition.find(String(L"A,") + Wide + L",;BB," + Hyphened + L",;CC,,"), String::npos)
        << testing::PrintToString(definition);
}

TEST_F(CaseFoldingTest, ConversionComparesAsTheLocaleDoes) {
    const auto tree = NewNodes();
    Must(tree->Add(Missing(), tvwFirst, Arg(L"A"), Arg(Hyphened), ComPtr<_cNode>().Out()));
    ::ConvStyles direction = ::csCodeToValue;
    Bstr value(Wide);
    Bstr key;
    EXPECT_DONE(tree->Conversion(&direction, value.Out(), Missing(), key.Out()));
    EXPECT_EQ(value.Text(), Hyphened);
}

} // namespace kestrel::test
