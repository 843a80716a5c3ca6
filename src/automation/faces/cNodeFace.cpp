#include "automation/faces/cNodeFace.h"

namespace kestrel {

const ClassFacts& cNodeFace::Facts() noexcept {
    static const ClassFacts facts{L"cNode", L"Kestrel relation", __uuidof(::cNode), __uuidof(::_cNode), nullptr,
                                  &Create};
    return facts;
}

std::span<const Thunk> cNodeFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Reads<&cNodeFace::get_LastSibling>(1),  Reads<&cNodeFace::get_FirstSibling>(2),
        Reads<&cNodeFace::get_Child>(3),        Reads<&cNodeFace::get_Root>(4),
        Reads<&cNodeFace::get_Parent>(5),       Reads<&cNodeFace::get_Children>(6),
        Reads<&cNodeFace::get_Key>(7),          Reads<&cNodeFace::get_Previous>(8),
        Reads<&cNodeFace::get_Nexts>(9),        Reads<&cNodeFace::get_Index>(10),
        Reads<&cNodeFace::get_Layer>(11),       Reads<&cNodeFace::get_Text>(12),
        Puts<&cNodeFace::put_Text>(12),         Reads<&cNodeFace::get_Tag>(13),
        Puts<&cNodeFace::put_Tag>(13),          Reads<&cNodeFace::get_PreviousSibling>(14),
        Reads<&cNodeFace::get_Descendants>(15),
    };
    return thunks;
}

ComPtr<::_cNode> FaceOf(const Ref<cNode>& model) { return cNodeFace::Of(model); }

STDMETHODIMP cNodeFace::get_LastSibling(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().LastSibling(); });
}

STDMETHODIMP cNodeFace::get_FirstSibling(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().FirstSibling(); });
}

STDMETHODIMP cNodeFace::get_Child(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Child(); });
}

STDMETHODIMP cNodeFace::get_Root(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Root(); });
}

STDMETHODIMP cNodeFace::get_Parent(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Parent(); });
}

STDMETHODIMP cNodeFace::get_Children(LONG* result) noexcept {
    return Get(result, [&] { return Model().Children(); });
}

STDMETHODIMP cNodeFace::get_Key(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Key(); });
}

STDMETHODIMP cNodeFace::get_Previous(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Previous(); });
}

STDMETHODIMP cNodeFace::get_Nexts(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Nexts(); });
}

STDMETHODIMP cNodeFace::get_Index(LONG* result) noexcept {
    return Get(result, [&] { return Model().Index(); });
}

STDMETHODIMP cNodeFace::get_Layer(LONG* result) noexcept {
    return Get(result, [&] { return Model().Layer(); });
}

STDMETHODIMP cNodeFace::get_Text(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Text(); });
}

STDMETHODIMP cNodeFace::put_Text(BSTR newValue) noexcept {
    return Do([&] { Model().SetText(TextOf(newValue)); });
}

STDMETHODIMP cNodeFace::get_Tag(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Tag(); });
}

STDMETHODIMP cNodeFace::put_Tag(BSTR newValue) noexcept {
    return Do([&] { Model().SetTag(TextOf(newValue)); });
}

STDMETHODIMP cNodeFace::get_PreviousSibling(::_cNode** result) noexcept {
    return Get(result, [&] { return Model().PreviousSibling(); });
}

STDMETHODIMP cNodeFace::get_Descendants(LONG* result) noexcept {
    return Get(result, [&] { return Model().Descendants(); });
}

} // namespace kestrel
