#include "hosts/script/ArgumentList.h"

#include <oleauto.h>

#include "hosts/common/ComPtr.h"
#include "hosts/common/Dispatch.h"
#include "hosts/script/TextEnumerator.h"

namespace hosts::script {

namespace {

// Subscript out of range, as the script engines number it.
constexpr HRESULT NoSuchItem = static_cast<HRESULT>(0x800A0009);

} // namespace

ArgumentList::ArgumentList(std::vector<std::wstring> texts) : mvarTexts(std::move(texts)) {
    DefineAs(DISPID_VALUE, L"Item", [this](const CallArguments& arguments) { return Item(arguments); });
    DefineAs(DISPID_NEWENUM, L"_NewEnum", [this](const CallArguments&) { return NewEnum(); });
    Define(L"Count", [this](const CallArguments&) { return Count(); });
    Define(L"length", [this](const CallArguments&) { return Count(); });
}

Variant ArgumentList::Item(const CallArguments& arguments) const {
    const long position = arguments.Number(0);
    if (position < 0 || static_cast<std::size_t>(position) >= mvarTexts.size())
        throw DispatchError(NoSuchItem, L"there is no argument " + std::to_wstring(position));
    return Variant(mvarTexts[static_cast<std::size_t>(position)]);
}

Variant ArgumentList::NewEnum() const {
    Variant enumerator;
    VARIANT* out = enumerator.Out();
    ComPtr<TextEnumerator> made(new TextEnumerator(mvarTexts, 0));
    out->punkVal = made.Detach();
    out->vt = VT_UNKNOWN;
    return enumerator;
}

} // namespace hosts::script
