// What the model answers, as hosts take it.
#pragma once

#include <type_traits>

#include "automation/Enumerator.h"
#include "automation/faces/Faces.h"
#include "platform/Variant.h"

namespace kestrel {

inline void ToHost(StringView text, BSTR* result) { *result = Bstr(text).Detach(); }
inline void ToHost(bool value, VARIANT_BOOL* result) noexcept { *result = value ? VARIANT_TRUE : VARIANT_FALSE; }
inline void ToHost(std::int32_t value, LONG* result) noexcept { *result = value; }
inline void ToHost(Date value, DATE* result) noexcept { *result = value; }
inline void ToHost(Variant value, VARIANT* result) noexcept { *result = value.Detach(); }

template <class Value, class Enumeration, class = std::enable_if_t<std::is_enum_v<Enumeration>>>
void ToHost(Value value, Enumeration* result) noexcept {
    *result = static_cast<Enumeration>(value);
}

template <class Model, class Interface>
void ToHost(const Ref<Model>& model, Interface** result) {
    *result = FaceOf(model).Detach();
}

// The enumerator of a collection of objects or texts, as variants.
template <class ItemType>
struct VariantPolicy {
    using Interface = IEnumVARIANT;
    using Element = VARIANT;
    using Item = ItemType;
    static void Give(const Item& item, Element& element) { element = ToVariant(item).Detach(); }
    static void Clear(Element& element) noexcept { VariantClear(&element); }

  private:
    static Variant ToVariant(const String& text) { return Variant(text); }
    template <class Model>
    static Variant ToVariant(const Ref<Model>& model) {
        Variant value;
        V_VT(value.Out()) = VT_DISPATCH;
        V_DISPATCH(value.Out()) = FaceOf(model).Detach();
        return value;
    }
};

template <class Item>
void ToHost(std::vector<Item> items, IUnknown** result) {
    *result = Enumerate<VariantPolicy<Item>>(std::move(items)).Detach();
}

} // namespace kestrel
