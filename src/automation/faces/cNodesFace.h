#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class cNodesFace final : public Face<cNodesFace, ::_cNodes, cNodes> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(cNodes& model, ConnectionTable& table);

    STDMETHODIMP Add(VARIANT Relative, ::tvwRelationships Relationship, BSTR Text, BSTR Tag,
                     ::_cNode** result) noexcept override;
    STDMETHODIMP get_Node(VARIANT vntIndexKey, ::_cNode** result) noexcept override;
    STDMETHODIMP get_Count(LONG* result) noexcept override;
    STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
    STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
    STDMETHODIMP Drag(VARIANT Relative, ::tvwRelationships Relationship, VARIANT vntIndexKey) noexcept override;
    STDMETHODIMP Cls() noexcept override;
    STDMETHODIMP get_Style(::tvwStyles* result) noexcept override;
    STDMETHODIMP Conversion(::ConvStyles* ConvStyle, BSTR* Value, VARIANT vntIndexKey, BSTR* result) noexcept override;
    STDMETHODIMP RemoveItem(VARIANT vntIndexKey) noexcept override;

  private:
    [[nodiscard]] IndexKey NodeIndexOf(const VARIANT& value) const;
};

} // namespace kestrel
