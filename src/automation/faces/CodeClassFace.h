#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class CodeClassFace final : public Face<CodeClassFace, ::_CodeClass, CodeClass> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(CodeClass& model, ConnectionTable& table);

    STDMETHODIMP get_Name(BSTR* result) noexcept override;
    STDMETHODIMP put_Name(BSTR newValue) noexcept override;
    STDMETHODIMP get_Value(BSTR* result) noexcept override;
    STDMETHODIMP put_Value(BSTR newValue) noexcept override;
    STDMETHODIMP get_Style(::CodeStyles* result) noexcept override;
    STDMETHODIMP put_Style(::CodeStyles newValue) noexcept override;
    STDMETHODIMP get_ApplyMode(::ApplyModes* result) noexcept override;
    STDMETHODIMP put_ApplyMode(::ApplyModes newValue) noexcept override;
    STDMETHODIMP get_CodeUCased(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_CodeUCased(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP get_SeparaOfYear(LONG* result) noexcept override;
    STDMETHODIMP put_SeparaOfYear(LONG newValue) noexcept override;
    STDMETHODIMP get_SeparaOfMonth(LONG* result) noexcept override;
    STDMETHODIMP put_SeparaOfMonth(LONG newValue) noexcept override;
    STDMETHODIMP get_SeparaOfWeek(::WeekDays* result) noexcept override;
    STDMETHODIMP put_SeparaOfWeek(::WeekDays newValue) noexcept override;
    STDMETHODIMP get_SeparaOfDay(DATE* result) noexcept override;
    STDMETHODIMP put_SeparaOfDay(DATE newValue) noexcept override;
    STDMETHODIMP get_AllowAddBand(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowAddBand(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP get_AllowDropBand(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowDropBand(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP get_AllowFieldManage(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowFieldManage(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP get_AllowSimpleStyle(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_AllowSimpleStyle(VARIANT_BOOL newValue) noexcept override;
    STDMETHODIMP put_AllowSetup(VARIANT_BOOL newValue) noexcept override;

    STDMETHODIMP get_UsrFields(::_Lists** result) noexcept override;
    STDMETHODIMP get_UsrMacros(::_Lists** result) noexcept override;
    STDMETHODIMP get_LayeredBands(::_Lists** result) noexcept override;
    STDMETHODIMP get_UsedFields(::_Lists** result) noexcept override;
    STDMETHODIMP get_Relations(::_cNodes** result) noexcept override;

    STDMETHODIMP Add(BSTR Name, ::BandStyles Style, ::SwapModes SwapMode, BSTR Default, ::_List* DataField,
                     VARIANT Length, BSTR Formate, VARIANT Before, VARIANT After, ::_Band** result) noexcept override;
    STDMETHODIMP get_Band(VARIANT vntIndexKey, ::_Band** result) noexcept override;
    STDMETHODIMP get_Count(LONG* result) noexcept override;
    STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
    STDMETHODIMP Drag(VARIANT vntIndexKey, VARIANT Before, VARIANT After) noexcept override;
    STDMETHODIMP Cls() noexcept override;
    STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
    STDMETHODIMP get_Length(LONG* result) noexcept override;

    STDMETHODIMP get_Definition(BSTR* result) noexcept override;
    STDMETHODIMP Load(VARIANT Definitions, BSTR Values) noexcept override;
    STDMETHODIMP GetCode(::GetStyles Style, BSTR* result) noexcept override;
    STDMETHODIMP ExpCode(BSTR* Code) noexcept override;

    STDMETHODIMP Save(::SaveOptions Options) noexcept override;
    STDMETHODIMP ShowDesigner(BSTR sTitle, VARIANT AllowSetup) noexcept override;
    STDMETHODIMP ShowFieldManage(BSTR sTitle) noexcept override;
    STDMETHODIMP ShowOptions(BSTR sTitle) noexcept override;

    STDMETHODIMP Check(::_Names** result) noexcept override;
};

} // namespace kestrel
