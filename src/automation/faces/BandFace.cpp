#include "automation/faces/BandFace.h"

namespace kestrel {

const ClassFacts& BandFace::Facts() noexcept {
    static const ClassFacts facts{
        L"Band", L"Kestrel segment of a code rule", __uuidof(::Band), __uuidof(::_Band), &__uuidof(::__Band), &Create};
    return facts;
}

std::span<const Thunk> BandFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Reads<&BandFace::get_Style>(1),
        Puts<&BandFace::put_Style>(1),
        Reads<&BandFace::get_Formate>(2),
        Puts<&BandFace::put_Formate>(2),
        Reads<&BandFace::get_Value>(DISPID_VALUE),
        Puts<&BandFace::put_Value>(DISPID_VALUE),
        Reads<&BandFace::get_Length>(3),
        Puts<&BandFace::put_Length>(3),
        Reads<&BandFace::get_Name>(4),
        Puts<&BandFace::put_Name>(4),
        Reads<&BandFace::get_Default>(5),
        Puts<&BandFace::put_Default>(5),
        Reads<&BandFace::get_IncrMode>(6),
        Puts<&BandFace::put_IncrMode>(6),
        Reads<&BandFace::get_DateUpdated>(7),
        Puts<&BandFace::put_DateUpdated>(7),
        Reads<&BandFace::get_SwapMode>(8),
        Puts<&BandFace::put_SwapMode>(8),
        Reads<&BandFace::get_InitStart>(9),
        Puts<&BandFace::put_InitStart>(9),
        Reads<&BandFace::get_InitEnd>(10),
        Puts<&BandFace::put_InitEnd>(10),
        Reads<&BandFace::get_TrackBands>(11),
        Reads<&BandFace::get_Relations>(12),
        Reads<&BandFace::get_DataFields>(13),
        Reads<&BandFace::get_TrigerBand>(14),
        Puts<&BandFace::put_TrigerBand>(14),
        PutsObject<&BandFace::putref_TrigerBand>(14),
        Reads<&BandFace::get_DataField>(15),
        Puts<&BandFace::put_DataField>(15),
        PutsObject<&BandFace::putref_DataField>(15),
        Reads<&BandFace::get_Index>(16),
        Reads<&BandFace::get_AllowDroped>(17),
        Puts<&BandFace::put_AllowDroped>(17),
        Reads<&BandFace::get_AllowModified>(18),
        Puts<&BandFace::put_AllowModified>(18),
    };
    return thunks;
}

ComPtr<::_Band> FaceOf(const Ref<Band>& model) { return BandFace::Of(model); }

std::vector<Subscription> BandFace::ForwardEvents(Band& model, ConnectionTable& table) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(table.Forward(model.RelationsChanged, 1));
    return subscriptions;
}

STDMETHODIMP BandFace::get_Style(::BandStyles* result) noexcept {
    return Get(result, [&] { return Model().Style(); });
}

STDMETHODIMP BandFace::put_Style(::BandStyles newValue) noexcept {
    return Do([&] { Model().SetStyle(newValue); });
}

STDMETHODIMP BandFace::get_Formate(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Formate(); });
}

STDMETHODIMP BandFace::put_Formate(BSTR newValue) noexcept {
    return Do([&] { Model().SetFormate(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_Value(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Value(); });
}

STDMETHODIMP BandFace::put_Value(BSTR newValue) noexcept {
    return Do([&] { Model().SetValue(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_Length(LONG* result) noexcept {
    return Get(result, [&] { return Model().Length(); });
}

STDMETHODIMP BandFace::put_Length(LONG newValue) noexcept {
    return Do([&] { Model().SetLength(newValue); });
}

STDMETHODIMP BandFace::get_Name(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Name(); });
}

STDMETHODIMP BandFace::put_Name(BSTR newValue) noexcept {
    return Do([&] { Model().SetName(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_Default(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Default(); });
}

STDMETHODIMP BandFace::put_Default(BSTR newValue) noexcept {
    return Do([&] { Model().SetDefault(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_IncrMode(::IncrModes* result) noexcept {
    return Get(result, [&] { return Model().IncrMode(); });
}

STDMETHODIMP BandFace::put_IncrMode(::IncrModes newValue) noexcept {
    return Do([&] { Model().SetIncrMode(newValue); });
}

STDMETHODIMP BandFace::get_DateUpdated(DATE* result) noexcept {
    return Get(result, [&] { return Model().DateUpdated(); });
}

STDMETHODIMP BandFace::put_DateUpdated(DATE newValue) noexcept {
    return Do([&] { Model().SetDateUpdated(newValue); });
}

STDMETHODIMP BandFace::get_SwapMode(::SwapModes* result) noexcept {
    return Get(result, [&] { return Model().SwapMode(); });
}

STDMETHODIMP BandFace::put_SwapMode(::SwapModes newValue) noexcept {
    return Do([&] { Model().SetSwapMode(newValue); });
}

STDMETHODIMP BandFace::get_InitStart(BSTR* result) noexcept {
    return Get(result, [&] { return Model().InitStart(); });
}

STDMETHODIMP BandFace::put_InitStart(BSTR newValue) noexcept {
    return Do([&] { Model().SetInitStart(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_InitEnd(BSTR* result) noexcept {
    return Get(result, [&] { return Model().InitEnd(); });
}

STDMETHODIMP BandFace::put_InitEnd(BSTR newValue) noexcept {
    return Do([&] { Model().SetInitEnd(TextOf(newValue)); });
}

STDMETHODIMP BandFace::get_TrackBands(::_Names** result) noexcept {
    return Get(result, [&] { return Model().TrackBands(); });
}

STDMETHODIMP BandFace::get_Relations(::_cNodes** result) noexcept {
    return Get(result, [&] { return Model().Relations(); });
}

STDMETHODIMP BandFace::get_DataFields(::_Lists** result) noexcept {
    return Get(result, [&] { return Model().DataFields(); });
}

STDMETHODIMP BandFace::get_TrigerBand(::_Band** result) noexcept {
    return Get(result, [&] { return Model().TrigerBand(); });
}

STDMETHODIMP BandFace::put_TrigerBand(::_Band* newValue) noexcept {
    return Do([&] { Model().SetTrigerBand(ModelOf<Band>(newValue)); });
}

STDMETHODIMP BandFace::putref_TrigerBand(::_Band* newValue) noexcept { return put_TrigerBand(newValue); }

STDMETHODIMP BandFace::get_DataField(::_List** result) noexcept {
    return Get(result, [&] { return Model().DataField(); });
}

STDMETHODIMP BandFace::put_DataField(::_List* newValue) noexcept {
    return Do([&] { Model().SetDataField(ModelOf<List>(newValue)); });
}

STDMETHODIMP BandFace::putref_DataField(::_List* newValue) noexcept { return put_DataField(newValue); }

STDMETHODIMP BandFace::get_Index(LONG* result) noexcept {
    return Get(result, [&] { return Model().Index(); });
}

STDMETHODIMP BandFace::get_AllowDroped(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowDroped(); });
}

STDMETHODIMP BandFace::put_AllowDroped(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowDroped(TruthOf(newValue)); });
}

STDMETHODIMP BandFace::get_AllowModified(VARIANT_BOOL* result) noexcept {
    return Get(result, [&] { return Model().AllowModified(); });
}

STDMETHODIMP BandFace::put_AllowModified(VARIANT_BOOL newValue) noexcept {
    return Do([&] { Model().SetAllowModified(TruthOf(newValue)); });
}

} // namespace kestrel
