// Bands, as hosts use them. What each style allows is tested on the model; here every member passes the boundary.
#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class BandTest : public ComTest {
  protected:
    static ComPtr<_Band> OfStyle(::BandStyles style) {
        auto band = NewBand();
        Must(band->put_Style(style));
        return band;
    }
    ComPtr<_List> Field(StringView name) {
        ComPtr<_List> field;
        Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(name), nullptr, nullptr, nullptr, field.Out()));
        return field;
    }
    ComPtr<_Band> Add(StringView name, ::BandStyles style, StringView value, _List* field = nullptr) {
        ComPtr<_Band> band;
        Must(rule->Add(Arg(name), style, smNoneSwap, Arg(value), field, Missing(), nullptr, Missing(), Missing(),
                       band.Out()));
        return band;
    }

    const ComPtr<_CodeClass> rule = NewRule();
};

} // namespace

TEST_F(BandTest, BeginsAsItsFieldsSay) {
    const auto band = NewBand();
    EXPECT_EQ(Plain(band, &_Band::get_Style), bsUndefined);
    for (const auto getter : {&_Band::get_Formate, &_Band::get_Value, &_Band::get_Name, &_Band::get_Default,
                              &_Band::get_InitStart, &_Band::get_InitEnd})
        EXPECT_EQ(Text(band, getter), L"");
    EXPECT_EQ(Plain(band, &_Band::get_Length), 1);
    EXPECT_EQ(Plain(band, &_Band::get_Index), -1);
    EXPECT_EQ(Plain(band, &_Band::get_IncrMode), imNever);
    EXPECT_EQ(Plain(band, &_Band::get_SwapMode), smNoneSwap);
    EXPECT_EQ(Plain(band, &_Band::get_DateUpdated), 0.0);
    EXPECT_EQ(Plain(band, &_Band::get_AllowDroped), VARIANT_TRUE);
    EXPECT_EQ(Plain(band, &_Band::get_AllowModified), VARIANT_TRUE);
    EXPECT_FALSE(Object(band, &_Band::get_TrackBands));
    EXPECT_FALSE(Object(band, &_Band::get_Relations));
    EXPECT_FALSE(Object(band, &_Band::get_DataFields));
    EXPECT_FALSE(Object(band, &_Band::get_TrigerBand));
    EXPECT_FALSE(Object(band, &_Band::get_DataField));
}

TEST_F(BandTest, NeedsAStyleFirst) {
    const auto band = NewBand();
    EXPECT_FAILS(band->put_Formate(Arg(L"0")), StyleNotDefined);
    EXPECT_FAILS(band->put_Value(Arg(L"0")), StyleNotDefined);
    EXPECT_FAILS(band->put_Length(2), StyleNotDefined);
    EXPECT_FAILS(band->put_Default(Arg(L"0")), StyleNotDefined);
    EXPECT_FAILS(band->put_IncrMode(imIncrAuto), StyleNotDefined);
    EXPECT_FAILS(band->put_SwapMode(smSimpleSwap), StyleNotDefined);
    EXPECT_FAILS(band->put_InitStart(Arg(L"0")), StyleNotDefined);
    EXPECT_FAILS(band->put_InitEnd(Arg(L"0")), StyleNotDefined);
    EXPECT_TRUE(FAILED(band->put_InitEnd(Arg(L"0"))));
    EXPECT_EQ(TakenSource(), L"Kestrel.Band");
}

TEST_F(BandTest, StyleIsSetOnce) {
    const auto band = NewBand();
    EXPECT_FAILS(band->put_Style(bsUbound), InvalidCall);
    EXPECT_FAILS(band->put_Style(bsUndefined), InvalidCall);
    EXPECT_FAILS(band->put_Style(static_cast<::BandStyles>(7)), InvalidCall);
    EXPECT_DONE(band->put_Style(bsIncreaseAlpha));
    EXPECT_FAILS(band->put_Style(bsIncreaseAlpha), CantBeChanged);
    EXPECT_EQ(Plain(band, &_Band::get_IncrMode), imIncrAuto);
    EXPECT_EQ(Text(band, &_Band::get_InitStart), L"A");
    EXPECT_EQ(Text(band, &_Band::get_InitEnd), L"Z");
}

TEST_F(BandTest, NameIsTrimmedAndSetOnce) {
    const auto band = NewBand();
    EXPECT_FAILS(band->put_Name(nullptr), InvalidParameter);
    EXPECT_DONE(band->put_Name(Arg(L" A ")));
    EXPECT_EQ(Text(band, &_Band::get_Name), L"A");
    EXPECT_FAILS(band->put_Name(Arg(L"B")), ReadOnly);
}

TEST_F(BandTest, PlainProperties) {
    const auto band = OfStyle(bsIncreaseNumber);
    EXPECT_DONE(band->put_DateUpdated(45000.25));
    EXPECT_EQ(Plain(band, &_Band::get_DateUpdated), 45000.25);
    EXPECT_DONE(band->put_AllowDroped(VARIANT_FALSE));
    EXPECT_DONE(band->put_AllowModified(VARIANT_FALSE));
    EXPECT_EQ(Plain(band, &_Band::get_AllowDroped), VARIANT_FALSE);
    EXPECT_EQ(Plain(band, &_Band::get_AllowModified), VARIANT_FALSE);
    EXPECT_DONE(band->put_AllowModified(1));
    EXPECT_EQ(Plain(band, &_Band::get_AllowModified), VARIANT_TRUE) << "any truth is a truth";
    EXPECT_DONE(band->put_IncrMode(imTrigered));
    EXPECT_EQ(Plain(band, &_Band::get_IncrMode), imTrigered);
    EXPECT_FAILS(band->put_IncrMode(imNever), InvalidCall);
}

TEST_F(BandTest, ANumberBand) {
    const auto band = OfStyle(bsIncreaseNumber);
    EXPECT_FAILS(band->put_Length(0), InvalidParameter.WithDetail(L"Length"));
    EXPECT_DONE(band->put_Length(5));
    EXPECT_DONE(band->put_Formate(Arg(L"00000")));
    EXPECT_DONE(band->put_Default(Arg(L"0012")));
    EXPECT_EQ(Text(band, &_Band::get_Default), L"12");
    EXPECT_DONE(band->put_InitStart(Arg(L" 7")));
    EXPECT_EQ(Text(band, &_Band::get_InitStart), L"7");
    EXPECT_DONE(band->put_InitEnd(Arg(L"0099")));
    EXPECT_EQ(Text(band, &_Band::get_InitEnd), L"0099");
    EXPECT_DONE(band->put_Value(Arg(L"42")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"00042");
    EXPECT_FAILS(band->put_Value(Arg(L"abc")), InvalidParameter);
    Must(band->put_Name(Arg(L"N")));
    EXPECT_FAILS(band->put_Value(Arg(L"123456")), IncorrectValueLength.WithDetail(L"N"));
    EXPECT_FAILS(band->put_SwapMode(smSimpleSwap), ReadOnly);
}

TEST_F(BandTest, ANumberBandKeepsEveryDigit) {
    const auto band = OfStyle(bsIncreaseNumber);
    Must(band->put_Length(20));
    Must(band->put_Formate(Arg(L"00000000000000000000")));
    EXPECT_DONE(band->put_Value(Arg(L"123456789012345679")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"00123456789012345679");
    EXPECT_DONE(band->put_Value(Arg(L"99999999999999999999")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"99999999999999999999");
}

TEST_F(BandTest, FormatsOfTextAndDates) {
    const auto band = OfStyle(bsUsrField);
    Must(band->put_Length(4));
    Must(band->put_Formate(Arg(L"yymm")));
    EXPECT_DONE(band->put_Value(Arg(L"2024-05-06")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"2405");
    Must(band->put_Formate(Arg(L">")));
    EXPECT_DONE(band->put_Value(Arg(L"abcd")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"ABCD");
    Must(band->put_Formate(Arg(L"0000")));
    EXPECT_DONE(band->put_Value(Arg(L"abcd")));
    EXPECT_EQ(Text(band, &_Band::get_Value), L"abcd") << "a format that does not apply";
}

TEST_F(BandTest, TrackBands) {
    const auto number = Add(L"N", bsIncreaseNumber, L"1");
    Add(L"P", bsFixed, L"x");
    const auto tracked = Object(number, &_Band::get_TrackBands);
    EXPECT_TRUE(Same(tracked.Get(), Object(number, &_Band::get_TrackBands).Get()));
    Bstr name;
    EXPECT_FAILS(tracked->Add(Arg(L"n"), name.Out()), AddFailed.Followed(L"No sense to track itself."));
    EXPECT_FAILS(tracked->Add(Arg(L"Q"), name.Out()), AddFailed.Followed(L"Invalid parametre(s) or value."));
    EXPECT_DONE(tracked->Add(Arg(L"p"), name.Out()));
}

TEST_F(BandTest, TrigerBand) {
    const auto number = Add(L"N", bsIncreaseNumber, L"1");
    const auto fixed = Add(L"P", bsFixed, L"x");
    EXPECT_DONE(number->putref_TrigerBand(fixed.Get()));
    EXPECT_TRUE(Same(Object(number, &_Band::get_TrigerBand).Get(), fixed.Get()));
    EXPECT_DONE(number->put_TrigerBand(nullptr));
    EXPECT_FALSE(Object(number, &_Band::get_TrigerBand));
    EXPECT_FAILS(number->put_TrigerBand(number.Get()), TriggersItself);
    const auto stranger = NewBand();
    EXPECT_DONE(number->put_TrigerBand(stranger.Get())) << "one without a name is none";
    Must(stranger->put_Name(Arg(L"Q")));
    EXPECT_FAILS(number->put_TrigerBand(stranger.Get()), InvalidParameter.WithDetail(L"Trigger Band"));
    EXPECT_FAILS(NewBand()->put_TrigerBand(fixed.Get()), InvalidParameter);
}

TEST_F(BandTest, DataField) {
    const auto first = Field(L"F1");
    const auto second = Field(L"F2");
    const auto band = Add(L"B", bsUsrField, {}, first.Get());
    EXPECT_TRUE(Same(Object(band, &_Band::get_DataFields).Get(), Object(rule, &_CodeClass::get_UsrFields).Get()));
    EXPECT_TRUE(Same(Object(band, &_Band::get_DataField).Get(), first.Get()));
    EXPECT_DONE(band->putref_DataField(second.Get()));
    EXPECT_TRUE(Same(Object(band, &_Band::get_DataField).Get(), second.Get()));
    EXPECT_FAILS(band->put_DataField(NewList().Get()), InvalidParameter.WithDetail(L"Field/Macro"));
    EXPECT_FAILS(band->put_DataField(nullptr), InvalidParameter.WithDetail(L"Field/Macro"));
    EXPECT_FAILS(Add(L"P", bsFixed, L"x")->put_DataField(first.Get()), ReadOnly);
}

TEST_F(BandTest, ForeignObjectsAreRefused) {
    const auto band = Add(L"B", bsUsrField, {}, Field(L"F").Get());
    // A host in C++ can pass what it likes.
    auto* const noList = reinterpret_cast<_List*>(rule.Get());
    auto* const noBand = reinterpret_cast<_Band*>(rule.Get());
    EXPECT_FAILS(band->put_DataField(noList), InvalidParameter);
    EXPECT_FAILS(band->putref_DataField(noList), InvalidParameter);
    EXPECT_FAILS(band->put_TrigerBand(noBand), InvalidParameter);
}

TEST_F(BandTest, Relations) {
    const auto band = Add(L"B", bsUsrField, {}, Field(L"F").Get());
    EXPECT_FALSE(Object(band, &_Band::get_Relations));
    Must(band->put_SwapMode(smSimpleSwap));
    const auto own = Object(band, &_Band::get_Relations);
    EXPECT_EQ(Plain(own, &_cNodes::get_Style), tsSimplified);
    EXPECT_TRUE(Same(own.Get(), Object(band, &_Band::get_Relations).Get()));
    Must(band->put_SwapMode(smLayersSwap));
    EXPECT_TRUE(Same(Object(band, &_Band::get_Relations).Get(), Object(rule, &_CodeClass::get_Relations).Get()));
    EXPECT_FAILS(band->put_SwapMode(smUbound), InvalidCall);
    EXPECT_EQ(Plain(band, &_Band::get_Index), 1);
}

TEST_F(BandTest, TheDefaultMemberIsTheValue) {
    const auto band = OfStyle(bsUsrMacro);
    Must(band->put_Length(3));
    DISPID target = DISPID_PROPERTYPUT;
    Variant value(L"abc");
    VARIANT argument = value.Get();
    DISPPARAMS params{&argument, &target, 1, 1};
    EXPECT_EQ(band->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(TextIn(Call(band.Get(), DISPID_VALUE, AsValue)), L"abc");
}

} // namespace kestrel::test
