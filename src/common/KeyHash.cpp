#include "common/KeyHash.h"

#include "common/Draw.h"
#include "common/PlainText.h"

namespace kestrel {

namespace {

constexpr std::uint32_t Prime = 0x7FFFFFFF;
constexpr unsigned PrimeBits = 31;
constexpr std::size_t DigitsOfNeighbours = 3;

// The same number modulo the prime; done twice, a product below 2^63 comes to the prime plus 4 at most.
std::uint64_t Reduced(std::uint64_t number) noexcept { return (number & Prime) + (number >> PrimeBits); }

// Away from both ends, where one character could make up for another beside it.
std::uint32_t DrawnPoint() {
    constexpr std::uint32_t first = 0x10001;
    for (;;) {
        const std::uint32_t point = Draw() & Prime;
        if (point >= first && point <= Prime - first) return point;
    }
}

std::uint32_t PointOfProcess() {
    static const std::uint32_t point = DrawnPoint();
    return point;
}

std::size_t TextLength(const String& key) noexcept {
    std::size_t length = key.size();
    while (length > 0 && key.size() - length < DigitsOfNeighbours && IsDigit(key[length - 1]))
        --length;
    return length;
}

} // namespace

KeyHash::KeyHash() : mvarPoint(PointOfProcess()) {}

std::size_t KeyHash::operator()(const String& key) const {
    const std::size_t length = TextLength(key);
    std::uint32_t hash = 1; // the leading coefficient: texts of different lengths are different polynomials
    // Factors of 32 bits: wider ones are several multiplications on small machines.
    const auto append = [&](std::uint32_t coefficient) {
        hash = static_cast<std::uint32_t>(Reduced(Reduced(std::uint64_t{hash + coefficient} * mvarPoint)));
    };
    for (std::size_t i = 0; i < length; ++i)
        append(static_cast<std::uint32_t>(key[i]));
    append(static_cast<std::uint32_t>(key.size() - length));
    std::size_t number = 0;
    for (std::size_t i = length; i < key.size(); ++i)
        number = number * 10 + static_cast<std::size_t>(key[i] - L'0');
    return std::size_t{hash < Prime ? hash : hash - Prime} + number;
}

} // namespace kestrel
