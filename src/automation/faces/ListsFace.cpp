#include "automation/faces/ListsFace.h"

namespace kestrel {

const ClassFacts& ListsFace::Facts() noexcept {
    static const ClassFacts facts{
        L"Lists", L"Kestrel collection of named items", __uuidof(::Lists), __uuidof(::_Lists), &__uuidof(::__Lists),
        nullptr};
    return facts;
}

std::span<const Thunk> ListsFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Answers<&ListsFace::Add>(1), Reads<&ListsFace::get_Item>(DISPID_VALUE),      Reads<&ListsFace::get_Count>(2),
        Does<&ListsFace::Remove>(3), Reads<&ListsFace::get_NewEnum>(DISPID_NEWENUM),
    };
    return thunks;
}

ComPtr<::_Lists> FaceOf(const Ref<Lists>& model) { return ListsFace::Of(model); }

std::vector<Subscription> ListsFace::ForwardEvents(Lists& model, ConnectionTable& table) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(table.Forward(model.CollectionChanged, 1));
    subscriptions.push_back(table.Forward(model.BeforeRemove, 2));
    subscriptions.push_back(table.Forward(model.BeforeAdd, 3));
    return subscriptions;
}

STDMETHODIMP ListsFace::Add(BSTR Name, BSTR ForeignName, BSTR Value, BSTR Description, ::_List** result) noexcept {
    return Get(result,
               [&] { return Model().Add(TextOf(Name), TextOf(ForeignName), TextOf(Value), TextOf(Description)); });
}

STDMETHODIMP ListsFace::get_Item(VARIANT vntIndexKey, ::_List** result) noexcept {
    return Get(result, [&] { return Model().Item(IndexOf(vntIndexKey)); });
}

STDMETHODIMP ListsFace::get_Count(LONG* result) noexcept {
    return Get(result, [&] { return Model().Count(); });
}

STDMETHODIMP ListsFace::Remove(VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().Remove(IndexOf(vntIndexKey)); });
}

STDMETHODIMP ListsFace::get_NewEnum(IUnknown** result) noexcept {
    return Get(result, [&] { return Model().Snapshot(); });
}

} // namespace kestrel
