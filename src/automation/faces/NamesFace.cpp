#include "automation/faces/NamesFace.h"

namespace kestrel {

const ClassFacts& NamesFace::Facts() noexcept {
    static const ClassFacts facts{L"Names",           L"Kestrel collection of names", __uuidof(::Names),
                                  __uuidof(::_Names), &__uuidof(::__Names),           &Create};
    return facts;
}

std::span<const Thunk> NamesFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Answers<&NamesFace::Add>(1), Reads<&NamesFace::get_Item>(DISPID_VALUE),      Reads<&NamesFace::get_Count>(2),
        Does<&NamesFace::Remove>(3), Reads<&NamesFace::get_NewEnum>(DISPID_NEWENUM), Does<&NamesFace::ImportNames>(4),
    };
    return thunks;
}

ComPtr<::_Names> FaceOf(const Ref<Names>& model) { return NamesFace::Of(model); }

std::vector<Subscription> NamesFace::ForwardEvents(Names& model, ConnectionTable& table) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(table.Forward(model.GetEnums, 1));
    subscriptions.push_back(model.BeforeAdd.Subscribe([&table](const String& name, bool& cancel, String& description) {
        table.Raise(2, ByValue{name}, cancel, description);
    }));
    return subscriptions;
}

STDMETHODIMP NamesFace::Add(BSTR Value, BSTR* result) noexcept {
    return Get(result, [&] { return Model().Add(TextOf(Value)); });
}

STDMETHODIMP NamesFace::get_Item(VARIANT vntIndexKey, BSTR* result) noexcept {
    return Get(result, [&] { return Model().Item(IndexOf(vntIndexKey)); });
}

STDMETHODIMP NamesFace::get_Count(LONG* result) noexcept {
    return Get(result, [&] { return Model().Count(); });
}

STDMETHODIMP NamesFace::Remove(VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().Remove(IndexOf(vntIndexKey)); });
}

STDMETHODIMP NamesFace::get_NewEnum(IUnknown** result) noexcept {
    return Get(result, [&] { return Model().Snapshot(); });
}

STDMETHODIMP NamesFace::ImportNames(BSTR* Definitions) noexcept {
    return Do([&] {
        RequirePointer(Definitions);
        Model().ImportNames(TextOf(*Definitions));
    });
}

} // namespace kestrel
