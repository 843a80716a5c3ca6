#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class ListsFace final : public Face<ListsFace, ::_Lists, Lists> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(Lists& model, ConnectionTable& table);

    STDMETHODIMP Add(BSTR Name, BSTR ForeignName, BSTR Value, BSTR Description, ::_List** result) noexcept override;
    STDMETHODIMP get_Item(VARIANT vntIndexKey, ::_List** result) noexcept override;
    STDMETHODIMP get_Count(LONG* result) noexcept override;
    STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
    STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
};

} // namespace kestrel
