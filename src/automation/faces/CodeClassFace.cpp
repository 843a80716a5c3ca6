#include "automation/faces/CodeClassFace.h"

namespace kestrel {

const ClassFacts& CodeClassFace::Facts() noexcept {
    static const ClassFacts facts{L"CodeClass",           L"Kestrel code rule",     __uuidof(::CodeClass),
                                  __uuidof(::_CodeClass), &__uuidof(::__CodeClass), &Create};
    return facts;
}

std::span<const Thunk> CodeClassFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Reads<&CodeClassFace::get_Name>(1),
        Puts<&CodeClassFace::put_Name>(1),
        Reads<&CodeClassFace::get_Value>(2),
        Puts<&CodeClassFace::put_Value>(2),
        Reads<&CodeClassFace::get_Style>(3),
        Puts<&CodeClassFace::put_Style>(3),
        Reads<&CodeClassFace::get_ApplyMode>(4),
        Puts<&CodeClassFace::put_ApplyMode>(4),
        Reads<&CodeClassFace::get_CodeUCased>(5),
        Puts<&CodeClassFace::put_CodeUCased>(5),
        Reads<&CodeClassFace::get_SeparaOfYear>(6),
        Puts<&CodeClassFace::put_SeparaOfYear>(6),
        Reads<&CodeClassFace::get_SeparaOfMonth>(7),
        Puts<&CodeClassFace::put_SeparaOfMonth>(7),
        Reads<&CodeClassFace::get_SeparaOfWeek>(8),
        Puts<&CodeClassFace::put_SeparaOfWeek>(8),
        Reads<&CodeClassFace::get_SeparaOfDay>(9),
        Puts<&CodeClassFace::put_SeparaOfDay>(9),
        Reads<&CodeClassFace::get_AllowAddBand>(10),
        Puts<&CodeClassFace::put_AllowAddBand>(10),
        Reads<&CodeClassFace::get_AllowDropBand>(11),
        Puts<&CodeClassFace::put_AllowDropBand>(11),
        Reads<&CodeClassFace::get_AllowFieldManage>(12),
        Puts<&CodeClassFace::put_AllowFieldManage>(12),
        Reads<&CodeClassFace::get_AllowSimpleStyle>(13),
        Puts<&CodeClassFace::put_AllowSimpleStyle>(13),
        Puts<&CodeClassFace::put_AllowSetup>(14),
        Reads<&CodeClassFace::get_UsrFields>(15),
        Reads<&CodeClassFace::get_UsrMacros>(16),
        Reads<&CodeClassFace::get_LayeredBands>(17),
        Reads<&CodeClassFace::get_UsedFields>(18),
        Reads<&CodeClassFace::get_Relations>(19),
        Answers<&CodeClassFace::Add>(20),
        Reads<&CodeClassFace::get_Band>(DISPID_VALUE),
        Reads<&CodeClassFace::get_Count>(21),
        Does<&CodeClassFace::Remove>(22),
        Does<&CodeClassFace::Drag>(23),
        Does<&CodeClassFace::Cls>(24),
        Reads<&CodeClassFace::get_NewEnum>(DISPID_NEWENUM),
        Reads<&CodeClassFace::get_Length>(25),
        Reads<&CodeClassFace::get_Definition>(26),
        Does<&CodeClassFace::Load>(27),
        Answers<&CodeClassFace::GetCode>(28),
        Does<&CodeClassFace::ExpCode>(29),
        Does<&CodeClassFace::Save>(30),
        Does<&CodeClassFace::ShowDesigner>(31),
        Does<&CodeClassFace::ShowFieldManage>(32),
        Does<&CodeClassFace::ShowOptions>(33),
        Answers<&CodeClassFace::Check>(34),
    };
    return thunks;
}

ComPtr<::_CodeClass> FaceOf(const Ref<CodeClass>& model) { return CodeClassFace::Of(model); }

std::vector<Subscription> CodeClassFace::ForwardEvents(CodeClass& model, ConnectionTable& table) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(table.Forward(model.SaveRequested, 1));
    subscriptions.push_back(table.Forward(model.LoadRequested, 2));
    subscriptions.push_back(table.Forward(model.FieldsChanged, 3));
    subscriptions.push_back(table.Forward(model.BandsChanged, 4));
    subscriptions.push_back(table.Forward(model.AddField, 5));
    subscriptions.push_back(table.Forward(model.DropField, 6));
    subscriptions.push_back(table.Forward(model.BeforeDropField, 7));
    subscriptions.push_back(table.Forward(model.BeforeDropBand, 8));
    subscriptions.push_back(table.Forward(model.LayeredBandsChanged, 9));
    subscriptions.push_back(table.Forward(model.RelationsChanged, 10));
    subscriptions.push_back(table.Forward(model.GetLastCode, 11));
    subscriptions.push_back(table.Forward(model.GetSettings, 12));
    return subscriptions;
}

// --- Settings ---

STDMETHODIMP CodeClassFace::get_Name(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Name(); });
}

STDMETHODIMP CodeClassFace::put_Name(BSTR newValue) noexcept {
    return Do([&] { Model().SetName(TextOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_Value(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Value(); });
}

STDMETHODIMP CodeClassFace::put_Value(BSTR newValue) noexcept {
    return Do([&] { Model().SetValue(TextOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_Style(::CodeStyles* result) noexcept {
    return Get(result, [&] { return Model().Style(); });
}

STDMETHODIMP CodeClassFace::put_Style(::CodeStyles newValue) noexcept {
    return Do([&] { Model().SetStyle(newValue); });
}

STDMETHODIMP CodeClassFace::get_ApplyMode(::ApplyModes* result) noexcept {
    return Get(result, [&] { return Model().ApplyMode(); });
}

STDMETHODIMP CodeClassFace::put_ApplyMode(::ApplyModes newValue) noexcept {
    return Do([&] { Model().SetApplyMode(newValue); });
}

STDMETHODIMP CodeClassFace::get_CodeUCased(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().CodeUCased(); });
}

STDMETHODIMP CodeClassFace::put_CodeUCased(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetCodeUCased(TruthOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_SeparaOfYear(LONG* result) noexcept {
    return Get(result, [&] { return Model().SeparaOfYear(); });
}

STDMETHODIMP CodeClassFace::put_SeparaOfYear(LONG newValue) noexcept {
    return Do([&] { Model().SetSeparaOfYear(newValue); });
}

STDMETHODIMP CodeClassFace::get_SeparaOfMonth(LONG* result) noexcept {
    return Get(result, [&] { return Model().SeparaOfMonth(); });
}

STDMETHODIMP CodeClassFace::put_SeparaOfMonth(LONG newValue) noexcept {
    return Do([&] { Model().SetSeparaOfMonth(newValue); });
}

STDMETHODIMP CodeClassFace::get_SeparaOfWeek(::WeekDays* result) noexcept {
    return Get(result, [&] { return Model().SeparaOfWeek(); });
}

STDMETHODIMP CodeClassFace::put_SeparaOfWeek(::WeekDays newValue) noexcept {
    return Do([&] { Model().SetSeparaOfWeek(newValue); });
}

STDMETHODIMP CodeClassFace::get_SeparaOfDay(DATE* result) noexcept {
    return Get(result, [&] { return Model().SeparaOfDay(); });
}

STDMETHODIMP CodeClassFace::put_SeparaOfDay(DATE newValue) noexcept {
    return Do([&] { Model().SetSeparaOfDay(newValue); });
}

STDMETHODIMP CodeClassFace::get_AllowAddBand(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowAddBand(); });
}

STDMETHODIMP CodeClassFace::put_AllowAddBand(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowAddBand(TruthOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_AllowDropBand(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowDropBand(); });
}

STDMETHODIMP CodeClassFace::put_AllowDropBand(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowDropBand(TruthOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_AllowFieldManage(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowFieldManage(); });
}

STDMETHODIMP CodeClassFace::put_AllowFieldManage(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowFieldManage(TruthOf(newValue)); });
}

STDMETHODIMP CodeClassFace::get_AllowSimpleStyle(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowSimpleStyle(); });
}

STDMETHODIMP CodeClassFace::put_AllowSimpleStyle(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowSimpleStyle(TruthOf(newValue)); });
}

STDMETHODIMP CodeClassFace::put_AllowSetup(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowSetup(TruthOf(newValue)); });
}

// --- Lists and relations ---

STDMETHODIMP CodeClassFace::get_UsrFields(::_Lists** result) noexcept {
    return Get(result, [&] { return Ref<Lists>(&Model().UsrFields()); });
}

STDMETHODIMP CodeClassFace::get_UsrMacros(::_Lists** result) noexcept {
    return Get(result, [&] { return Ref<Lists>(&Model().UsrMacros()); });
}

STDMETHODIMP CodeClassFace::get_LayeredBands(::_Lists** result) noexcept {
    return Get(result, [&] { return Ref<Lists>(&Model().LayeredBands()); });
}

STDMETHODIMP CodeClassFace::get_UsedFields(::_Lists** result) noexcept {
    return Get(result, [&] { return Ref<Lists>(&Model().UsedFields()); });
}

STDMETHODIMP CodeClassFace::get_Relations(::_cNodes** result) noexcept {
    return Get(result, [&] { return Ref<cNodes>(&Model().Relations()); });
}

// --- Bands ---

STDMETHODIMP CodeClassFace::Add(BSTR Name, ::BandStyles Style, ::SwapModes SwapMode, BSTR Default, ::_List* DataField,
                                VARIANT Length, BSTR Formate, VARIANT Before, VARIANT After,
                                ::_Band** result) noexcept {
    return Get(result, [&] {
        // A new band holds smNoneSwap and empty texts, so that giving one of these is the same as leaving it out.
        return Model().Add({TextOf(Name), Style, SwapMode, TextOf(Default), ModelOf<List>(DataField),
                            OptionalNumber(Length), TextOf(Formate), IndexOf(Before), IndexOf(After)});
    });
}

STDMETHODIMP CodeClassFace::get_Band(VARIANT vntIndexKey, ::_Band** result) noexcept {
    return Get(result, [&] { return Model().Band(IndexOf(vntIndexKey)); });
}

STDMETHODIMP CodeClassFace::get_Count(LONG* result) noexcept {
    return Get(result, [&] { return Model().Count(); });
}

STDMETHODIMP CodeClassFace::Remove(VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().Remove(IndexOf(vntIndexKey)); });
}

STDMETHODIMP CodeClassFace::Drag(VARIANT vntIndexKey, VARIANT Before, VARIANT After) noexcept {
    return Do([&] { Model().Drag(IndexOf(vntIndexKey), IndexOf(Before), IndexOf(After)); });
}

STDMETHODIMP CodeClassFace::Cls() noexcept {
    return Do([&] { Model().Cls(); });
}

STDMETHODIMP CodeClassFace::get_NewEnum(IUnknown** result) noexcept {
    return Get(result, [&] { return Model().Bands(); });
}

STDMETHODIMP CodeClassFace::get_Length(LONG* result) noexcept {
    return Get(result, [&] { return Model().Length(); });
}

// --- Definition and codes ---

STDMETHODIMP CodeClassFace::get_Definition(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Definition(); });
}

STDMETHODIMP CodeClassFace::Load(VARIANT Definitions, BSTR) noexcept {
    return Do([&] { Model().Load(OptionalText(Definitions)); });
}

STDMETHODIMP CodeClassFace::GetCode(::GetStyles Style, BSTR* result) noexcept {
    return Get(result, [&] { return Model().GetCode(Style); });
}

STDMETHODIMP CodeClassFace::ExpCode(BSTR* Code) noexcept {
    return Do([&] {
        RequirePointer(Code);
        Model().ExpCode(TextOf(*Code));
    });
}

// --- The host ---

STDMETHODIMP CodeClassFace::Save(::SaveOptions Options) noexcept {
    return Do([&] { Model().Save(Options); });
}

STDMETHODIMP CodeClassFace::ShowDesigner(BSTR sTitle, VARIANT AllowSetup) noexcept {
    // Left out, it leaves what the AllowSetup property says.
    return Do([&] { Model().ShowDesigner(TextOf(sTitle), OptionalTruth(AllowSetup).value_or(Model().AllowSetup())); });
}

STDMETHODIMP CodeClassFace::ShowFieldManage(BSTR sTitle) noexcept {
    return Do([&] { Model().ShowFieldManage(TextOf(sTitle)); });
}

STDMETHODIMP CodeClassFace::ShowOptions(BSTR sTitle) noexcept {
    return Do([&] { Model().ShowOptions(TextOf(sTitle)); });
}

STDMETHODIMP CodeClassFace::Check(::_Names** result) noexcept {
    return Get(result, [&] { return Model().Check(); });
}

} // namespace kestrel
