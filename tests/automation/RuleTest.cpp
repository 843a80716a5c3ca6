// Code rules, as hosts use them. What the rule decides is tested on the model; here every member passes the boundary.
#include "automation/support/Late.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

class RuleTest : public ComTest {
  protected:
    Failure FailureOfAdd(StringView name, int style, int swapMode, StringView value, _List* field = nullptr,
                         const VARIANT& length = Missing(), StringView formate = {}, const VARIANT& before = Missing(),
                         const VARIANT& after = Missing()) {
        return FailureOf(rule->Add(Arg(name), static_cast<::BandStyles>(style), static_cast<::SwapModes>(swapMode),
                                   Arg(value), field, length, Arg(formate), before, after, last.Out()));
    }
    void AddFixed(StringView name, const VARIANT& before = Missing(), const VARIANT& after = Missing()) {
        last = {};
        ASSERT_EQ(FailureOfAdd(name, bsFixed, smNoneSwap, name, nullptr, Missing(), {}, before, after), Failure{});
    }
    [[nodiscard]] String Order() const {
        String names;
        for (LONG i = 1; i <= Plain(rule, &_CodeClass::get_Count); ++i) {
            ComPtr<_Band> band;
            Must(rule->get_Band(Number(i), band.Out()));
            names += Text(band, &_Band::get_Name);
        }
        return names;
    }
    ComPtr<_List> Field(StringView name, StringView value) {
        ComPtr<_List> field;
        Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(name), nullptr, Arg(value), nullptr, field.Out()));
        return field;
    }
    Failure Code(::GetStyles style, String& code) {
        Bstr text;
        Failure failure = FailureOf(rule->GetCode(style, text.Out()));
        code = text.Text();
        return failure;
    }

    const ComPtr<_CodeClass> rule = NewRule();
    ComPtr<_Band> last;
};

} // namespace

TEST_F(RuleTest, SettingsBegin) {
    EXPECT_EQ(Text(rule, &_CodeClass::get_Name), L"");
    EXPECT_EQ(Text(rule, &_CodeClass::get_Value), L"");
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Style), csNormal);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_ApplyMode), amOverAgain);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_CodeUCased), VARIANT_TRUE);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfYear), 1);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfMonth), 1);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfWeek), wdMonday);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfDay), 0.0);
    for (const auto getter : {&_CodeClass::get_AllowAddBand, &_CodeClass::get_AllowDropBand,
                              &_CodeClass::get_AllowFieldManage, &_CodeClass::get_AllowSimpleStyle})
        EXPECT_EQ(Plain(rule, getter), VARIANT_FALSE);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 0);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Length), 0);
}

TEST_F(RuleTest, SettingsAreKept) {
    EXPECT_DONE(rule->put_Name(Arg(L" R ")));
    EXPECT_EQ(Text(rule, &_CodeClass::get_Name), L"R");
    EXPECT_DONE(rule->put_Value(Arg(L" v ")));
    EXPECT_EQ(Text(rule, &_CodeClass::get_Value), L" v ");
    EXPECT_DONE(rule->put_Style(csSimple));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Style), csSimple);
    EXPECT_DONE(rule->put_ApplyMode(amSuccessive));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_ApplyMode), amSuccessive);
    EXPECT_DONE(rule->put_CodeUCased(VARIANT_FALSE));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_CodeUCased), VARIANT_FALSE);
    EXPECT_DONE(rule->put_SeparaOfYear(12));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfYear), 12);
    EXPECT_DONE(rule->put_SeparaOfMonth(28));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfMonth), 28);
    EXPECT_DONE(rule->put_SeparaOfWeek(wdSaturday));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfWeek), wdSaturday);
    EXPECT_DONE(rule->put_SeparaOfDay(45000.25));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_SeparaOfDay), 0.25);
}

TEST_F(RuleTest, PermissionsAreKept) {
    EXPECT_DONE(rule->put_AllowAddBand(VARIANT_TRUE));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_AllowAddBand), VARIANT_TRUE);
    EXPECT_EQ(Plain(rule, &_CodeClass::get_AllowDropBand), VARIANT_FALSE);
    EXPECT_DONE(rule->put_AllowDropBand(VARIANT_TRUE));
    EXPECT_DONE(rule->put_AllowFieldManage(VARIANT_TRUE));
    EXPECT_DONE(rule->put_AllowSimpleStyle(VARIANT_TRUE));
    EXPECT_DONE(rule->put_AllowSetup(VARIANT_TRUE));
    EXPECT_NE(Text(rule, &_CodeClass::get_Definition).find(L"3\r1\r4\r1\r5\r1\r6\r1\r7\r1\r"), String::npos);
    EXPECT_EQ(Call(rule.Get(), L"AllowSetup").result, DISP_E_MEMBERNOTFOUND) << "it is set only";
}

TEST_F(RuleTest, SettingsOutOfRange) {
    EXPECT_FAILS(rule->put_Style(csUbound), InvalidParameter);
    EXPECT_FAILS(rule->put_ApplyMode(amUbound), InvalidParameter);
    EXPECT_FAILS(rule->put_SeparaOfYear(0), InvalidParameter);
    EXPECT_FAILS(rule->put_SeparaOfYear(13), InvalidParameter);
    EXPECT_FAILS(rule->put_SeparaOfMonth(29), InvalidParameter);
    EXPECT_FAILS(rule->put_SeparaOfWeek(wdUbound), InvalidParameter);
    EXPECT_TRUE(FAILED(rule->put_SeparaOfWeek(wdUbound)));
    EXPECT_EQ(TakenSource(), L"Kestrel.CodeClass");
}

TEST_F(RuleTest, AddFixedBands) {
    AddFixed(L"B");
    AddFixed(L"A", Arg(L"b"));
    AddFixed(L"C", Missing(), Number(2));
    AddFixed(L"D", Reference(nullptr), Missing());
    EXPECT_EQ(Order(), L"ABCD");
    EXPECT_EQ(Plain(rule, &_CodeClass::get_Length), 4);
}

TEST_F(RuleTest, AddRefusals) {
    AddFixed(L"A");
    EXPECT_EQ(FailureOfAdd(L"a", bsFixed, 0, L"x"), BandNameExists);
    EXPECT_EQ(FailureOfAdd(L" ", bsFixed, 0, L"x"), InvalidParameter);
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L""), InvalidParameter) << "no Default";
    EXPECT_EQ(FailureOfAdd(L"B", bsUsrField, 0, L""), InvalidParameter) << "no DataField";
    EXPECT_EQ(FailureOfAdd(L"B", bsUbound, 0, L"x"), InvalidCall);
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 1, L"x"), ReadOnly) << "fixed bands are not converted";
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L"x", nullptr, Missing(), L"", Number(1), Number(1)), InvalidParameter);
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L"x", nullptr, Missing(), L"", Arg(L"Q")),
              IncorrectReferBand.WithDetail(L"Q"));
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L"x", nullptr, Missing(), L"", Number(9)),
              IncorrectReferBand.WithDetail(L"9"));
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L"x", nullptr, Missing(), L"", Null()), InvalidCall);
    EXPECT_FAILS(rule->Add(Arg(L"B"), bsFixed, smNoneSwap, Arg(L"x"), nullptr, Missing(), nullptr, Missing(), Missing(),
                           nullptr),
                 Bare(E_POINTER));
    EXPECT_EQ(Order(), L"A");
    EXPECT_FALSE(last);
}

TEST_F(RuleTest, DragThatMovesNothingDoesNotFail) {
    EXPECT_DONE(rule->Drag(Null(), Null(), Null()));
    AddFixed(L"A");
    EXPECT_DONE(rule->Drag(Null(), Null(), Null()));
    AddFixed(L"B");
    EXPECT_FAILS(rule->Drag(Null(), Missing(), Arg(L"B")), InvalidCall);
    EXPECT_FAILS(rule->Drag(Arg(L"A"), Missing(), Null()), InvalidParameter) << "an unknown target";
}

TEST_F(RuleTest, TextBeforeTheDigitsEndsTheCounting) {
    AddFixed(L"A");
    EXPECT_EQ(FailureOfAdd(L"N", bsIncreaseNumber, 0, L"1", nullptr, Number(4), L"\\N000"), Failure{});
    Must(Object(last, &_Band::get_TrackBands)->Add(Arg(L"A"), Bstr().Out()));
    const Advised host(rule.Get(), __uuidof(__CodeClass), [](const EventCall& call) {
        if (call.Id() == 11) call.SetText(1, L"AN041");
        return S_OK;
    });
    String code;
    EXPECT_EQ(Code(gsNewCode, code), Failure{});
    EXPECT_EQ(code, L"AN001");
}

TEST_F(RuleTest, AddTellsALengthGivenFromOneLeftOut) {
    EXPECT_EQ(FailureOfAdd(L"A", bsIncreaseNumber, 0, L"1", nullptr, Number(0)),
              InvalidParameter.WithDetail(L"Length"));
    EXPECT_EQ(FailureOfAdd(L"A", bsIncreaseNumber, 0, L"1", nullptr, Number(-1)),
              InvalidParameter.WithDetail(L"Length"));
    EXPECT_EQ(FailureOfAdd(L"A", bsIncreaseNumber, 0, L"1", nullptr, Arg(L"4"), L"0000"), Failure{});
    EXPECT_EQ(Plain(last, &_Band::get_Length), 4);
    EXPECT_EQ(Text(last, &_Band::get_Formate), L"0000");
    EXPECT_EQ(FailureOfAdd(L"B", bsFixed, 0, L"abc"), Failure{}) << "a fixed band's own length stays";
    EXPECT_EQ(Plain(last, &_Band::get_Length), 3);
    EXPECT_EQ(FailureOfAdd(L"C", bsFixed, 0, L"abc", nullptr, Number(3)), Failure{}) << "as it is already";
    EXPECT_EQ(FailureOfAdd(L"D", bsFixed, 0, L"abc", nullptr, Number(4)), ReadOnly);
    EXPECT_EQ(FailureOfAdd(L"E", bsFixed, 0, L"abc", nullptr, Arg(L"four")), Bare(DISP_E_TYPEMISMATCH));
    EXPECT_EQ(FailureOfAdd(L"E", bsFixed, 0, L"abc", nullptr, Variant().Get()), Failure{}) << "an empty variable";
}

TEST_F(RuleTest, AddOfAForeignField) {
    auto* const noList = reinterpret_cast<_List*>(rule.Get()); // a host in C++ can pass what it likes
    EXPECT_EQ(FailureOfAdd(L"A", bsUsrField, 0, L"", noList), InvalidParameter);
    EXPECT_EQ(FailureOfAdd(L"A", bsUsrField, 0, L"", NewList().Get()), InvalidParameter.WithDetail(L"Field/Macro"));
}

TEST_F(RuleTest, Band) {
    AddFixed(L"A");
    ComPtr<_Band> band;
    EXPECT_DONE(rule->get_Band(Arg(L"a"), band.Out()));
    EXPECT_TRUE(Same(band.Get(), last.Get()));
    for (const LONG outside : {0L, -1L, 2L})
        EXPECT_FAILS(rule->get_Band(Number(outside), ComPtr<_Band>().Out()), OutOfRange);
    EXPECT_FAILS(rule->get_Band(Arg(L"Q"), ComPtr<_Band>().Out()), InvalidCall);
    EXPECT_FAILS(rule->get_Band(Reference(last.Get()), ComPtr<_Band>().Out()), InvalidCall);
    EXPECT_FAILS(rule->get_Band(Number(1), nullptr), Bare(E_POINTER));
}

TEST_F(RuleTest, RemoveDragAndCls) {
    for (const wchar_t* name : {L"A", L"B", L"C"})
        AddFixed(name);
    EXPECT_DONE(rule->Drag(Arg(L"C"), Arg(L"A"), Missing()));
    EXPECT_EQ(Order(), L"CAB");
    EXPECT_DONE(rule->Drag(Number(1), Missing(), Number(3)));
    EXPECT_EQ(Order(), L"ABC");
    EXPECT_FAILS(rule->Drag(Arg(L"A"), Arg(L"B"), Missing()), NoDragNeeded);
    EXPECT_FAILS(rule->Drag(Arg(L"A"), Missing(), Missing()), InvalidParameter);
    EXPECT_FAILS(rule->Drag(Arg(L"A"), Arg(L"Q"), Missing()), InvalidParameter);
    EXPECT_DONE(rule->Remove(Arg(L"b")));
    EXPECT_FAILS(rule->Remove(Arg(L"b")), InvalidCall);
    EXPECT_FAILS(rule->Remove(Number(3)), OutOfRange);
    EXPECT_EQ(Order(), L"AC");
    EXPECT_DONE(rule->Cls());
    EXPECT_EQ(Order(), L"");
}

TEST_F(RuleTest, CodesAndBack) {
    AddFixed(L"P");
    const auto field = Field(L"F", L"ab");
    ASSERT_EQ(FailureOfAdd(L"B", bsUsrField, smNoneSwap, L"", field.Get(), Number(2)), Failure{});
    String code;
    EXPECT_EQ(Code(gsCurrent, code), Failure{});
    EXPECT_EQ(code, L"Pab");
    EXPECT_EQ(Code(gsUbound, code), InvalidParameter);
    EXPECT_FAILS(rule->GetCode(gsCurrent, nullptr), Bare(E_POINTER));
    Bstr given(L"Pxy");
    EXPECT_DONE(rule->ExpCode(given.Out()));
    EXPECT_EQ(given.Text(), L"Pxy");
    EXPECT_EQ(Text(field, &_List::get_Value), L"xy");
    given = Bstr(L"Px");
    EXPECT_FAILS(rule->ExpCode(given.Out()), IllegalCodeLength);
    given = Bstr(L"pxy");
    EXPECT_FAILS(rule->ExpCode(given.Out()), FixedValueError);
    EXPECT_FAILS(rule->ExpCode(nullptr), Bare(E_POINTER));
}

TEST_F(RuleTest, DefinitionAndLoad) {
    AddFixed(L"P");
    Field(L"F", L"1");
    const String definition = Text(rule, &_CodeClass::get_Definition);
    const auto copy = NewRule();
    Variant text{StringView(definition)};
    for (const VARIANT& given : {text.Get(), ReferenceTo(*text.Out())}) {
        EXPECT_DONE(copy->Load(given, Arg(L"not used")));
        EXPECT_EQ(Text(copy, &_CodeClass::get_Definition), definition);
    }
    for (const VARIANT& none :
         {Missing(), Variant().Get(), Null(), Reference(nullptr), Reference(rule.Get()), Number(12)}) {
        EXPECT_DONE(copy->Load(text.Get(), nullptr));
        EXPECT_DONE(copy->Load(none, nullptr));
        EXPECT_EQ(Plain(copy, &_CodeClass::get_Count), 0) << V_VT(&none);
    }
}

TEST_F(RuleTest, LoadOfAMillionCharacters) {
    const String definition = L"#####" + String(1'000'000, L'\r');
    EXPECT_DONE(rule->Load(Arg(definition), nullptr));
    const String withNuls = String(L"#####0\r") + L'\0' + L"x\r2\r1";
    EXPECT_DONE(rule->Load(Arg(withNuls), nullptr));
    EXPECT_EQ(Text(rule, &_CodeClass::get_Name), String(L"\0x", 2));
    EXPECT_EQ(Plain(rule, &_CodeClass::get_ApplyMode), amSuccessive);
}

TEST_F(RuleTest, SaveAsksNothingWhenTheHostHasIt) {
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [this](const EventCall& call) {
        EXPECT_EQ(call.Id(), 12);
        EXPECT_EQ(call.Text(0), L"R");
        String definition = Text(rule, &_CodeClass::get_Definition);
        call.SetText(1, definition);
        return S_OK;
    });
    Must(rule->put_Name(Arg(L"R")));
    EXPECT_DONE(rule->Save(soDefault));
}

TEST_F(RuleTest, ListsOfTheRule) {
    EXPECT_EQ(Plain(Object(rule, &_CodeClass::get_UsrFields), &_Lists::get_Count), 0);
    const auto macros = Object(rule, &_CodeClass::get_UsrMacros);
    ComPtr<_List> macro;
    Must(macros->Add(Arg(L"M"), nullptr, Arg(L"m"), nullptr, macro.Out()));
    EXPECT_EQ(Plain(macro, &_List::get_Style), lsMacros);
    ASSERT_EQ(FailureOfAdd(L"B", bsUsrMacro, smLayersSwap, L"", macro.Get()), Failure{});
    ComPtr<_List> item;
    EXPECT_DONE(Object(rule, &_CodeClass::get_UsedFields)->get_Item(Number(1), item.Out()));
    EXPECT_TRUE(Same(item.Get(), macro.Get()));
    EXPECT_DONE(Object(rule, &_CodeClass::get_LayeredBands)->get_Item(Arg(L"B"), ComPtr<_List>().Out()));
}

} // namespace kestrel::test
