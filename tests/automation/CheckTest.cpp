// The check of a rule as hosts call it, with the platform's own formats. What is found is tested on the model; what
// only the platform's formatting shows is tested here.
#include "automation/support/Late.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

class CheckTest : public ComTest {
  protected:
    // P + a macro of that length and format + a number that tracks it.
    CheckTest() {
        AddBand(L"Prefix", bsFixed, L"P", {}, 1, {});
        AddBand(L"Number", bsIncreaseNumber, L"1", {}, 4, L"0000");
        Track(L"Prefix");
    }
    ComPtr<_Band> AddBand(StringView name, ::BandStyles style, StringView value, _List* field, LONG length,
                          StringView format) {
        ComPtr<_Band> band;
        Must(rule->Add(Arg(name), style, smNoneSwap, Arg(value), field, Number(length), Arg(format), Missing(),
                       Missing(), band.Out()));
        return band;
    }
    void Track(StringView name) {
        ComPtr<_Band> band;
        Must(rule->get_Band(Arg(L"Number"), band.Out()));
        Bstr added;
        Must(Object(band, &_Band::get_TrackBands)->Add(Arg(name), added.Out()));
    }
    void AddMacro(LONG length, StringView format) {
        ComPtr<_List> macro;
        Must(Object(rule, &_CodeClass::get_UsrMacros)->Add(Arg(L"Day"), nullptr, nullptr, nullptr, macro.Out()));
        AddBand(L"Macro", bsUsrMacro, {}, macro.Get(), length, format);
    }
    // Another number format, in a rule of its own.
    void NumberRule(LONG length, StringView start, StringView format) {
        Must(rule->Cls());
        AddBand(L"Prefix", bsFixed, L"P", {}, 1, {});
        AddBand(L"Number", bsIncreaseNumber, start, {}, length, format);
        Track(L"Prefix");
    }
    [[nodiscard]] std::vector<String> Sentences() const {
        const auto names = Object<_CodeClass, _Names>(rule, &_CodeClass::Check);
        std::vector<String> sentences;
        for (LONG position = 1; position <= Plain(names, &_Names::get_Count); ++position) {
            Bstr sentence;
            Must(names->get_Item(Number(position), sentence.Out()));
            sentences.push_back(sentence.Text());
        }
        return sentences;
    }
    // What issuing and taking apart does with the value of the macro.
    [[nodiscard]] String MacroAfterTakingApart(StringView value) const {
        ComPtr<_List> macro;
        Must(Object(rule, &_CodeClass::get_UsrMacros)->get_Item(Arg(L"Day"), macro.Out()));
        Must(macro->put_Value(Arg(value)));
        Bstr code;
        Must(rule->GetCode(gsNewCode, code.Out()));
        Must(rule->ExpCode(code.Out()));
        return Text(macro, &_List::get_Value);
    }

    const ComPtr<_CodeClass> rule = NewRule();
};

using Lines = std::vector<String>;

} // namespace

TEST_F(CheckTest, FindsNothingInAGoodRule) { EXPECT_EQ(Sentences(), Lines{}); }

TEST_F(CheckTest, GivesANewCollection) {
    Must(rule->put_Style(csSimple));
    const auto names = Object<_CodeClass, _Names>(rule, &_CodeClass::Check);
    EXPECT_FALSE(Same(names.Get(), Object<_CodeClass, _Names>(rule, &_CodeClass::Check).Get()));
    Must(names->Remove(Number(1)));
    EXPECT_EQ(Plain(names, &_Names::get_Count), 0);
    EXPECT_EQ(Sentences().size(), 1U) << "it is the caller's";
    EXPECT_EQ(rule->Check(nullptr), E_POINTER);
}

TEST_F(CheckTest, IsCalledLateBound) {
    AddBand(L"Letter", bsIncreaseAlpha, L"A", {}, 1, {});
    const auto result = Call(rule.Get(), L"Check");
    ASSERT_EQ(result.failure, Failure{});
    ASSERT_EQ(result.value.Type(), VT_DISPATCH);
    IDispatch* const names = V_DISPATCH(&result.value.Get());
    EXPECT_EQ(NumberIn(Call(names, L"Count")), 1);
    EXPECT_EQ(TextIn(Call(names, L"Item", {Number(1)})), Sentences().front());
    EXPECT_EQ(Call(rule.Get(), L"Check", {Number(1)}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(IdOf(rule.Get(), L"CHECK"), 34);
}

TEST_F(CheckTest, ChangesNothingAndRaisesNothing) {
    AddMacro(5, L"yymm");
    const String definition = Text(rule, &_CodeClass::get_Definition);
    int events = 0;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&events](const EventCall&) {
        ++events;
        return S_OK;
    });
    EXPECT_FALSE(Sentences().empty());
    EXPECT_EQ(Text(rule, &_CodeClass::get_Definition), definition);
    EXPECT_EQ(events, 0);
}

// A year read as a number of days is another year: such a code cannot be taken apart.
TEST_F(CheckTest, DatesThatChangeWhenTheyAreReadAgain) {
    AddMacro(4, L"yyyy");
    ASSERT_EQ(Sentences().size(), 1U);
    EXPECT_NE(Sentences().front().find(L"yyyy"), String::npos);
    EXPECT_EQ(Sentences().front().rfind(L"[Macro] ", 0), 0U);
    EXPECT_NE(MacroAfterTakingApart(L"2026-05-06"), L"2026");
}

TEST_F(CheckTest, DatesThatStay) {
    AddMacro(10, L"yyyy-mm-dd");
    EXPECT_EQ(Sentences(), Lines{});
    EXPECT_EQ(MacroAfterTakingApart(L"2026-05-06"), L"2026-05-06");
}

// Without a year of four digits a month and a year are read as a day of the current year, so that they stay in that
// year only.
TEST_F(CheckTest, DatesThatStayInOneYearOnly) {
    for (const wchar_t* format : {L"yy-mm", L"mm/yy", L"yy.mm"}) {
        NumberRule(4, L"1", L"0000");
        static_cast<void>(Object(rule, &_CodeClass::get_UsrMacros)->Remove(Arg(L"Day")));
        AddMacro(5, format);
        ASSERT_EQ(Sentences().size(), 1U) << testing::PrintToString(String(format));
        EXPECT_NE(Sentences().front().find(L"changes its own result"), String::npos)
            << testing::PrintToString(Sentences().front());
    }
}

TEST_F(CheckTest, DatesWithoutSeparatorsThatStay) {
    AddMacro(8, L"yyyymmdd");
    EXPECT_EQ(Sentences(), Lines{});
    EXPECT_EQ(MacroAfterTakingApart(L"2026-05-06"), L"20260506");
}

TEST_F(CheckTest, FormatsOfTextsAndNumbersThatStay) {
    for (const wchar_t* format : {L">", L"<", L"@@@@", L"0000", L"0.00", L"&&&&", L"General Number"}) {
        Must(rule->Cls());
        AddBand(L"Prefix", bsFixed, L"P", {}, 1, {});
        AddBand(L"Number", bsIncreaseNumber, L"1", {}, 4, L"0000");
        Track(L"Prefix");
        ComPtr<_List> macro;
        const auto macros = Object(rule, &_CodeClass::get_UsrMacros);
        static_cast<void>(macros->Remove(Arg(L"Day")));
        AddMacro(4, format);
        EXPECT_EQ(Sentences(), Lines{}) << testing::PrintToString(String(format));
    }
}

TEST_F(CheckTest, FormatsOfTheWrongLength) {
    AddMacro(4, L"yyyymm");
    EXPECT_EQ(Sentences().size(), 1U);
    EXPECT_NE(Sentences().front().find(L"yyyymm"), String::npos);
}

TEST_F(CheckTest, NumbersWithTextOrGroups) {
    for (const auto& [length, start, format, findings] :
         {std::tuple{4, L"1", L"0000", 0U}, std::tuple{4, L"1", L"\\N000", 1U}, std::tuple{5, L"1000", L"#,##0", 1U},
          std::tuple{3, L"100", L"#,##0", 0U}, std::tuple{4, L"1", L"000\\N", 1U},
          std::tuple{5, L"1", L"\"N-\"000", 1U}}) {
        NumberRule(length, start, format);
        EXPECT_EQ(Sentences().size(), findings) << testing::PrintToString(String(format));
    }
}

// The last number is lost in the text before it, and each code gets the first one again.
TEST_F(CheckTest, NumbersThatBeginAnewAreTold) {
    NumberRule(4, L"1", L"\\N000");
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [](const EventCall& call) {
        if (call.Id() == 11) call.SetText(1, L"PN041");
        return S_OK;
    });
    Bstr code;
    EXPECT_DONE(rule->GetCode(gsNewCode, code.Out()));
    EXPECT_EQ(code.Text(), L"PN001");
    EXPECT_EQ(Sentences().size(), 1U);
}

} // namespace kestrel::test
