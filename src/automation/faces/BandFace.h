#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class BandFace final : public Face<BandFace, ::_Band, Band> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(Band& model, ConnectionTable& table);

    STDMETHODIMP get_Style(::BandStyles* result) noexcept override;
    STDMETHODIMP put_Style(::BandStyles newValue) noexcept override;
    STDMETHODIMP get_Formate(BSTR* result) noexcept override;
    STDMETHODIMP put_Formate(BSTR newValue) noexcept override;
    STDMETHODIMP get_Value(BSTR* result) noexcept override;
    STDMETHODIMP put_Value(BSTR newValue) noexcept override;
    STDMETHODIMP get_Length(LONG* result) noexcept override;
    STDMETHODIMP put_Length(LONG newValue) noexcept override;
    STDMETHODIMP get_Name(BSTR* result) noexcept override;
    STDMETHODIMP put_Name(BSTR newValue) noexcept override;
    STDMETHODIMP get_Default(BSTR* result) noexcept override;
    STDMETHODIMP put_Default(BSTR newValue) noexcept override;
    STDMETHODIMP get_IncrMode(::IncrModes* result) noexcept override;
    STDMETHODIMP put_IncrMode(::IncrModes newValue) noexcept override;
    STDMETHODIMP get_DateUpdated(DATE* result) noexcept override;
    STDMETHODIMP put_DateUpdated(DATE newValue) noexcept override;
    STDMETHODIMP get_SwapMode(::SwapModes* result) noexcept override;
    STDMETHODIMP put_SwapMode(::SwapModes newValue) noexcept override;
    STDMETHODIMP get_InitStart(BSTR* result) noexcept override;
    STDMETHODIMP put_InitStart(BSTR newValue) noexcept override;
    STDMETHODIMP get_InitEnd(BSTR* result) noexcept override;
    STDMETHODIMP put_InitEnd(BSTR newValue) noexcept override;
    STDMETHODIMP get_TrackBands(::_Names** result) noexcept override;
    STDMETHODIMP get_Relations(::_cNodes** result) noexcept override;
    STDMETHODIMP get_DataFields(::_Lists** result) noexcept override;
    STDMETHODIMP get_TrigerBand(::_Band** result) noexcept override;
    STDMETHODIMP put_TrigerBand(::_Band* newValue) noexcept override;
    STDMETHODIMP putref_TrigerBand(::_Band* newValue) noexcept override;
    STDMETHODIMP get_DataField(::_List** result) noexcept override;
    STDMETHODIMP put_DataField(::_List* newValue) noexcept override;
    STDMETHODIMP putref_DataField(::_List* newValue) noexcept override;
    STDMETHODIMP get_Index(LONG* result) noexcept override;
    STDMETHODIMP get_AllowDroped(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowDroped(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP get_AllowModified(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowModified(VARIANT_BOOL newValue) noexcept override;
};

} // namespace kestrel
