#include "automation/faces/ListFace.h"

#include "automation/VariantValue.h"

namespace kestrel {

const ClassFacts& ListFace::Facts() noexcept {
    static const ClassFacts facts{L"List", L"Kestrel named item", __uuidof(::List), __uuidof(::_List), nullptr,
                                  &Create};
    return facts;
}

std::span<const Thunk> ListFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Reads<&ListFace::get_Name>(1),        Puts<&ListFace::put_Name>(1),         Reads<&ListFace::get_Value>(2),
        Puts<&ListFace::put_Value>(2),        Reads<&ListFace::get_Description>(3), Puts<&ListFace::put_Description>(3),
        Reads<&ListFace::get_ForeignName>(4), Puts<&ListFace::put_ForeignName>(4),  Reads<&ListFace::get_Style>(5),
    };
    return thunks;
}

ComPtr<::_List> FaceOf(const Ref<List>& model) { return ListFace::Of(model); }

STDMETHODIMP ListFace::get_Name(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Name(); });
}

STDMETHODIMP ListFace::put_Name(BSTR newValue) noexcept {
    return Do([&] { Model().SetName(TextOf(newValue)); });
}

STDMETHODIMP ListFace::get_Value(BSTR* result) noexcept {
    return Get(result, [&] { return Model().Value(); });
}

STDMETHODIMP ListFace::put_Value(BSTR newValue) noexcept {
    return Do([&] { Model().SetValue(TextOf(newValue)); });
}

STDMETHODIMP ListFace::get_Description(VARIANT* result) noexcept {
    return Get(result, [&] { return ToVariant(Model().Description()); });
}

STDMETHODIMP ListFace::put_Description(VARIANT newValue) noexcept {
    return Do([&] { Model().SetDescription(Make<VariantValue>(newValue)); });
}

STDMETHODIMP ListFace::get_ForeignName(BSTR* result) noexcept {
    return Get(result, [&] { return Model().ForeignName(); });
}

STDMETHODIMP ListFace::put_ForeignName(BSTR newValue) noexcept {
    return Do([&] { Model().SetForeignName(TextOf(newValue)); });
}

STDMETHODIMP ListFace::get_Style(::ListStyles* result) noexcept {
    return Get(result, [&] { return Model().Style(); });
}

} // namespace kestrel
