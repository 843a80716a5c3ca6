#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class NamesFace final : public Face<NamesFace, ::_Names, Names> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(Names& model, ConnectionTable& table);

    STDMETHODIMP Add(BSTR Value, BSTR* result) noexcept override;
    STDMETHODIMP get_Item(VARIANT vntIndexKey, BSTR* result) noexcept override;
    STDMETHODIMP get_Count(LONG* result) noexcept override;
    STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
    STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
    STDMETHODIMP ImportNames(BSTR* Definitions) noexcept override;
};

} // namespace kestrel
