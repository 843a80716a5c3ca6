#include "automation/VariantValue.h"

#include "automation/Boundary.h"

namespace kestrel {

namespace {

constexpr LCID EnglishUnitedStates = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

Variant Copied(const VARIANT& value) {
    HRESULT result = S_OK;
    Variant copy = Variant::CopyOf(value, result);
    Require(result);
    return copy;
}

bool HasText(VARTYPE type) noexcept {
    return type != VT_NULL && type != VT_DISPATCH && type != VT_UNKNOWN && type != VT_ERROR && (type & VT_ARRAY) == 0;
}

} // namespace

VariantValue::VariantValue(const VARIANT& value) : mvarValue(Copied(value)) {}

String VariantValue::Text() const {
    if (!HasText(mvarValue.Type())) return {};
    Variant text = Copied(mvarValue.Get());
    const HRESULT result = VariantChangeTypeEx(text.Out(), text.Out(), EnglishUnitedStates,
                                               VARIANT_NOUSEROVERRIDE | VARIANT_ALPHABOOL, VT_BSTR);
    return SUCCEEDED(result) ? String(ViewOf(V_BSTR(&text.Get()))) : String();
}

Variant ToVariant(const Ref<FreeValue>& value) {
    if (!value) return {};
    const auto* given = dynamic_cast<const VariantValue*>(value.Get());
    return given != nullptr ? Copied(given->Value()) : Variant(value->Text());
}

} // namespace kestrel
