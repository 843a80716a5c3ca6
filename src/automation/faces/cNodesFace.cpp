#include "automation/faces/cNodesFace.h"

namespace kestrel {

const ClassFacts& cNodesFace::Facts() noexcept {
    static const ClassFacts facts{L"cNodes",           L"Kestrel relation tree", __uuidof(::cNodes),
                                  __uuidof(::_cNodes), &__uuidof(::__cNodes),    &Create};
    return facts;
}

std::span<const Thunk> cNodesFace::Thunks() noexcept {
    static constexpr std::array thunks{
        Answers<&cNodesFace::Add>(1),        Reads<&cNodesFace::get_Node>(DISPID_VALUE),
        Reads<&cNodesFace::get_Count>(2),    Does<&cNodesFace::Remove>(3),
        Reads<&cNodesFace::get_NewEnum>(4),  Does<&cNodesFace::Drag>(5),
        Does<&cNodesFace::Cls>(6),           Reads<&cNodesFace::get_Style>(7),
        Answers<&cNodesFace::Conversion>(8), Does<&cNodesFace::RemoveItem>(9),
    };
    return thunks;
}

ComPtr<::_cNodes> FaceOf(const Ref<cNodes>& model) { return cNodesFace::Of(model); }

std::vector<Subscription> cNodesFace::ForwardEvents(cNodes& model, ConnectionTable& table) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(table.Forward(model.NodesChanged, 1));
    return subscriptions;
}

// A node may stand for its key in this tree. Where it is looked up, one that is not in it is refused with 5, as an
// unknown key is, and a foreign object with 2003.
IndexKey cNodesFace::NodeIndexOf(const VARIANT& value) const {
    IUnknown* const object = ObjectOf(value);
    if (object == nullptr) return IndexOf(value);
    const Ref<cNode> node = KnownModelOf<cNode>(object);
    if (!node) return IndexKey::Unusable(Message::InvalidParameter);
    return Model().IndexOf(*node) <= Model().Count() ? node->Key() : IndexKey::Unusable(Message::InvalidCall);
}

STDMETHODIMP cNodesFace::Add(VARIANT Relative, ::tvwRelationships Relationship, BSTR Text, BSTR Tag,
                             ::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Add(NodeIndexOf(Relative), Relationship, TextOf(Text), TextOf(Tag)); });
}

STDMETHODIMP cNodesFace::get_Node(VARIANT vntIndexKey, ::_cNode** result) noexcept {
    return Get(result, [&] { return Model().Node(IndexOf(vntIndexKey)); });
}

STDMETHODIMP cNodesFace::get_Count(LONG* result) noexcept {
    return Get(result, [&] { return Model().Count(); });
}

STDMETHODIMP cNodesFace::Remove(VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().Remove(IndexOf(vntIndexKey)); });
}

STDMETHODIMP cNodesFace::get_NewEnum(IUnknown** result) noexcept {
    return Get(result, [&] { return Model().Snapshot(); });
}

STDMETHODIMP cNodesFace::Drag(VARIANT Relative, ::tvwRelationships Relationship, VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().Drag(NodeIndexOf(Relative), Relationship, NodeIndexOf(vntIndexKey)); });
}

STDMETHODIMP cNodesFace::Cls() noexcept {
    return Do([&] { Model().Cls(); });
}

STDMETHODIMP cNodesFace::get_Style(::tvwStyles* result) noexcept {
    return Get(result, [&] { return Model().Style(); });
}

STDMETHODIMP cNodesFace::Conversion(::ConvStyles* ConvStyle, BSTR* Value, VARIANT vntIndexKey, BSTR* result) noexcept {
    return Get(result, [&] {
        RequirePointer(ConvStyle);
        RequirePointer(Value);
        String value = TextOf(*Value);
        String key = Model().Conversion(*ConvStyle, value, IndexOf(vntIndexKey));
        Replace(*Value, value);
        return key;
    });
}

STDMETHODIMP cNodesFace::RemoveItem(VARIANT vntIndexKey) noexcept {
    return Do([&] { Model().RemoveItem(IndexOf(vntIndexKey)); });
}

} // namespace kestrel
