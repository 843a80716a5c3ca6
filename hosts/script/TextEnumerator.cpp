#include "hosts/script/TextEnumerator.h"

#include <oleauto.h>

#include <algorithm>
#include <new>

#include "hosts/common/ComPtr.h"

namespace hosts::script {

TextEnumerator::TextEnumerator(std::vector<std::wstring> texts, std::size_t position)
    : mvarTexts(std::move(texts)), mvarPosition(position) {}

HRESULT TextEnumerator::QueryInterface(REFIID iid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IEnumVARIANT) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IEnumVARIANT*>(this);
    return S_OK;
}

ULONG TextEnumerator::Release() noexcept {
    const ULONG left = --mvarReferences;
    if (left == 0) delete this;
    return left;
}

HRESULT TextEnumerator::Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept {
    if (values == nullptr) return E_POINTER;
    ULONG given = 0;
    for (; given < count && mvarPosition < mvarTexts.size(); ++given, ++mvarPosition) {
        values[given].vt = VT_BSTR;
        values[given].bstrVal = SysAllocString(mvarTexts[mvarPosition].c_str());
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT TextEnumerator::Skip(ULONG count) noexcept {
    const std::size_t left = mvarTexts.size() - mvarPosition;
    mvarPosition += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
}

HRESULT TextEnumerator::Reset() noexcept {
    mvarPosition = 0;
    return S_OK;
}

HRESULT TextEnumerator::Clone(IEnumVARIANT** copy) noexcept {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    try {
        *copy = ComPtr<TextEnumerator>(new TextEnumerator(mvarTexts, mvarPosition)).Detach();
        return S_OK;
    } catch (...) { // only memory can be missing
        return E_OUTOFMEMORY;
    }
}

} // namespace hosts::script
