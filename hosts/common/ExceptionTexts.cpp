#include "hosts/common/ExceptionTexts.h"

#include <oleauto.h>

#include <string_view>

#include "hosts/common/Variant.h"

namespace hosts {

std::wstring CodeText(HRESULT code) {
    constexpr std::wstring_view digits = L"0123456789ABCDEF";
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        text += digits[static_cast<std::size_t>(code >> shift) & 0xF];
    return text;
}

ExceptionTexts::~ExceptionTexts() {
    SysFreeString(mvarInfo.bstrSource);
    SysFreeString(mvarInfo.bstrDescription);
    SysFreeString(mvarInfo.bstrHelpFile);
}

void ExceptionTexts::FillIn() noexcept {
    if (mvarInfo.pfnDeferredFillIn != nullptr) mvarInfo.pfnDeferredFillIn(&mvarInfo);
}

std::wstring ExceptionTexts::Source() const { return FromBstr(mvarInfo.bstrSource); }

std::wstring ExceptionTexts::Description() const { return FromBstr(mvarInfo.bstrDescription); }

HRESULT ExceptionTexts::Code() const noexcept {
    // A number of 16 bits counts as one of the run-time library's own errors.
    return mvarInfo.wCode == 0 ? mvarInfo.scode : MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, mvarInfo.wCode);
}

} // namespace hosts
