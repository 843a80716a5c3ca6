#include "ledger/core/Seal.h"

#include "hosts/common/Utf8.h"

namespace ledger {

SealText& SealText::Add(const std::wstring& part) {
    const std::string bytes = hosts::ToUtf8(part);
    mvarText += std::to_string(bytes.size());
    mvarText += ':';
    mvarText += bytes;
    return *this;
}

SealText& SealText::Add(std::int64_t number) { return Add(std::to_wstring(number)); }

void SealSum::Add(const std::wstring& seal) {
    ++mvarCount;
    const Sha256Sum added = Sha256Of(hosts::ToUtf8(seal));
    unsigned carry = 0;
    for (std::size_t at = mvarSum.size(); at-- > 0;) {
        carry += static_cast<unsigned>(mvarSum[at]) + added[at];
        mvarSum[at] = static_cast<std::uint8_t>(carry);
        carry >>= 8U;
    }
}

std::wstring SealSum::Text() const { return std::to_wstring(mvarCount) + L" rows " + HexOf(mvarSum); }

} // namespace ledger
