#pragma once

#include "automation/faces/Face.h"

namespace kestrel {

class cNodeFace final : public Face<cNodeFace, ::_cNode, cNode> {
  public:
    using Face::Face;
    [[nodiscard]] static const ClassFacts& Facts() noexcept;
    [[nodiscard]] static std::span<const Thunk> Thunks() noexcept;

    STDMETHODIMP get_LastSibling(::_cNode** result) noexcept override;
    STDMETHODIMP get_FirstSibling(::_cNode** result) noexcept override;
    STDMETHODIMP get_Child(::_cNode** result) noexcept override;
    STDMETHODIMP get_Root(::_cNode** result) noexcept override;
    STDMETHODIMP get_Parent(::_cNode** result) noexcept override;
    STDMETHODIMP get_Children(LONG* result) noexcept override;
    STDMETHODIMP get_Key(BSTR* result) noexcept override;
    STDMETHODIMP get_Previous(::_cNode** result) noexcept override;
    STDMETHODIMP get_Nexts(::_cNode** result) noexcept override;
    STDMETHODIMP get_Index(LONG* result) noexcept override;
    STDMETHODIMP get_Layer(LONG* result) noexcept override;
    STDMETHODIMP get_Text(BSTR* result) noexcept override;
    STDMETHODIMP put_Text(BSTR newValue) noexcept override;
    STDMETHODIMP get_Tag(BSTR* result) noexcept override;
    STDMETHODIMP put_Tag(BSTR newValue) noexcept override;
    STDMETHODIMP get_PreviousSibling(::_cNode** result) noexcept override;
    STDMETHODIMP get_Descendants(LONG* result) noexcept override;
};

} // namespace kestrel
