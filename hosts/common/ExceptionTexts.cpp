#include "hosts/common/ExceptionTexts.h"

#include <oleauto.h>

#include <array>
#include <cwchar>

#include "hosts/common/Variant.h"

namespace hosts {

std::wstring CodeText(HRESULT code) {
    std::array<wchar_t, 16> text{};
    std::swprintf(text.data(), text.size(), L"0x%08lX", static_cast<unsigned long>(code));
    return text.data();
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
