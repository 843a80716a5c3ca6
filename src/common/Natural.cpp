#include "common/Natural.h"

#include <algorithm>

namespace kestrel {

namespace {

constexpr std::size_t PartBits = 32;

} // namespace

Natural::Natural(std::uint64_t number) {
    for (; number != 0; number >>= PartBits)
        mvarParts.push_back(static_cast<std::uint32_t>(number));
}

void Natural::MultiplyAdd(std::uint32_t factor, std::uint32_t summand) {
    std::uint64_t carry = summand;
    for (auto& part : mvarParts) {
        carry += static_cast<std::uint64_t>(part) * factor;
        part = static_cast<std::uint32_t>(carry);
        carry >>= PartBits;
    }
    if (carry != 0) mvarParts.push_back(static_cast<std::uint32_t>(carry));
    DropLeadingZeros();
}

void Natural::MultiplyByPowerOfTen(std::size_t exponent) {
    constexpr std::size_t digits = 9; // of the largest power that a part holds
    for (; exponent >= digits; exponent -= digits)
        MultiplyAdd(1'000'000'000);
    for (; exponent > 0; --exponent)
        MultiplyAdd(10);
}

void Natural::ShiftLeft(std::size_t bits) {
    if (mvarParts.empty()) return;
    MultiplyAdd(1U << bits % PartBits);
    mvarParts.insert(mvarParts.begin(), bits / PartBits, 0);
}

void Natural::Subtract(const Natural& other) {
    std::uint64_t borrow = 0;
    for (std::size_t i = 0; i < mvarParts.size(); ++i) {
        const std::uint64_t taken = borrow + (i < other.mvarParts.size() ? other.mvarParts[i] : 0);
        borrow = mvarParts[i] < taken ? 1 : 0;
        mvarParts[i] = static_cast<std::uint32_t>(mvarParts[i] - taken);
    }
    DropLeadingZeros();
}

Natural Natural::Plus(const Natural& other) const {
    Natural sum;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < std::max(mvarParts.size(), other.mvarParts.size()); ++i) {
        if (i < mvarParts.size()) carry += mvarParts[i];
        if (i < other.mvarParts.size()) carry += other.mvarParts[i];
        sum.mvarParts.push_back(static_cast<std::uint32_t>(carry));
        carry >>= PartBits;
    }
    if (carry != 0) sum.mvarParts.push_back(static_cast<std::uint32_t>(carry));
    return sum;
}

std::size_t Natural::BitLength() const noexcept {
    if (mvarParts.empty()) return 0;
    std::size_t bits = (mvarParts.size() - 1) * PartBits;
    for (auto part = mvarParts.back(); part != 0; part >>= 1)
        ++bits;
    return bits;
}

int Natural::Compare(const Natural& other) const noexcept {
    if (mvarParts.size() != other.mvarParts.size()) return mvarParts.size() < other.mvarParts.size() ? -1 : 1;
    for (auto i = mvarParts.size(); i-- > 0;)
        if (mvarParts[i] != other.mvarParts[i]) return mvarParts[i] < other.mvarParts[i] ? -1 : 1;
    return 0;
}

void Natural::DropLeadingZeros() noexcept {
    while (!mvarParts.empty() && mvarParts.back() == 0)
        mvarParts.pop_back();
}

} // namespace kestrel
