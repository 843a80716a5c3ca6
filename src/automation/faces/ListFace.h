#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class ListFace final : public Face<ListFace, ::_List, List> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;

    STDMETHODIMP get_Name(BSTR* result) noexcept override;
    STDMETHODIMP put_Name(BSTR newValue) noexcept override;
    STDMETHODIMP get_Value(BSTR* result) noexcept override;
    STDMETHODIMP put_Value(BSTR newValue) noexcept override;
    STDMETHODIMP get_Description(VARIANT* result) noexcept override;
    STDMETHODIMP put_Description(VARIANT newValue) noexcept override;
    STDMETHODIMP get_ForeignName(BSTR* result) noexcept override;
    STDMETHODIMP put_ForeignName(BSTR newValue) noexcept override;
    STDMETHODIMP get_Style(::ListStyles* result) noexcept override;
};

} // namespace kestrel
